#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolButton>
#include <QWheelEvent>
#include <QtTest>
#include <set>

#include "dialog_answers.h"
#include "live_fixture.h"
#include "number_text.h"

/// The panels beside the plate, the menus, and what of both the keyboard reaches.
class PanelTest : public QObject {
    Q_OBJECT

private slots:
    void volumeAndPenaltyAreEdits() {
        LiveFixture live(LiveFixture::smallScene());
        auto& slider = live.named<QSlider>("Volume of material in percent");
        auto& box = live.named<QDoubleSpinBox>("Volume of material in percent");
        QCOMPARE(slider.value(), 100);
        QTest::keyClick(&slider, Qt::Key_PageUp);
        QVERIFY(live.scene().volumeFraction > 0.5);
        QCOMPARE(box.value(), 100 * live.scene().volumeFraction);
        // A drag of the slider is one step of the history.
        const int steps = live.bench().document.undoStack().count();
        slider.setSliderDown(true);
        for (int value = 120; value <= 150; value += 5) slider.setSliderPosition(value);
        slider.setSliderDown(false);
        QCOMPARE(live.scene().volumeFraction, 0.75);
        QCOMPARE(live.bench().document.undoStack().count(), steps + 1);
        live.named<QDoubleSpinBox>("Penalty").setValue(2);
        QCOMPARE(live.scene().penalty, 2.0);
        QVERIFY(live.runFor(60));
        QVERIFY(live.run().frame().numbers.volume > 0.7);
        QUndoStack& history = live.bench().document.undoStack();
        while (history.canUndo()) history.undo();
        QCOMPARE(slider.value(), 100);
        QVERIFY(live.scene() == LiveFixture::smallScene());
    }

    void pointsAndCommasAreDecimalSigns() {
        const QLocale usual;
        for (const QLocale& locale : {QLocale("en_US"), QLocale("de_DE")}) {
            QLocale::setDefault(locale);
            LiveFixture live(LiveFixture::smallScene());
            const auto type = [](QAbstractSpinBox& box, const char* text) {
                box.setFocus();
                box.selectAll();
                QTest::keyClicks(&box, text);
                box.interpretText();
            };
            auto& volume = live.named<QDoubleSpinBox>("Volume of material in percent");
            live.bench().select(std::size_t{0});
            auto& magnitude = live.named<QDoubleSpinBox>("Magnitude of the force");
            for (const char* text : {"12,5", "12.5"}) {
                for (auto* box : {&volume, &magnitude}) {
                    box->setValue(50);
                    type(*box, text);
                    QCOMPARE(box->value(), 12.5);
                }
                auto& width = live.named<QSpinBox>("Elements in x");
                type(width, text);
                QVERIFY(width.value() != 125);
            }
            QApplication::clipboard()->setText("1.012,25");
            magnitude.selectAll();
            magnitude.findChild<QLineEdit*>()->paste();
            magnitude.interpretText();
            QCOMPARE(magnitude.value(), 1012.25);
        }
        QLocale::setDefault(usual);
    }

    void aGridIsAppliedWarnedOfOrRefused() {
        LiveFixture live(LiveFixture::smallScene());
        auto& width = live.named<QSpinBox>("Elements in x");
        auto& height = live.named<QSpinBox>("Elements in y");
        auto& detail = live.named<QSpinBox>("Detail of the design");
        auto& apply = button(live, "Apply and start &afresh");
        QVERIFY(!apply.isEnabled());
        width.setValue(48);
        height.setValue(24);
        detail.setValue(5);
        QVERIFY(hasLabel(live, "dots that carry nothing"));
        QVERIFY(apply.isEnabled());
        detail.setValue(1);
        QVERIFY(!hasLabel(live, "dots that carry nothing"));
        QTest::mouseClick(&apply, Qt::LeftButton);
        QCOMPARE(live.scene().width, 48);
        QCOMPARE(live.scene().loads[0].y, (Range{12, 12}));
        QVERIFY(live.runFor(1));
        QCOMPARE(live.run().frame().material.width, 48);
        // Enter applies, Esc and leaving show what is in force.
        width.setValue(40);
        QTest::keyClick(&width, Qt::Key_Escape);
        QCOMPARE(width.value(), 48);
        width.setFocus();
        width.setValue(40);
        live.view().setFocus();
        QCOMPARE(width.value(), 48);
        width.setFocus();
        width.setValue(36);
        QTest::keyClick(&width, Qt::Key_Return);
        QCOMPARE(live.scene().width, 36);
        QVERIFY(live.view().hasFocus());
        live.bench().document.undoStack().undo();
        // More kept elements than a scene can hold.
        live.bench().edit("Fill", [](Scene& scene) {
            for (int x = 0; x < scene.width; ++x)
                for (int y = 0; y < scene.height; ++y) scene.passive.solids.cells.push_back({x, y});
        });
        width.setValue(1000);
        height.setValue(1000);
        QTest::mouseClick(&apply, Qt::LeftButton);
        QVERIFY(hasLabel(live, "Too many elements are kept solid: "));
        QCOMPARE(live.scene().width, 48);
        detail.setValue(16);
        live.named<QSpinBox>("Detail of the picture").setValue(16);
        QVERIFY(hasLabel(live, "cells; the limits are "));
        QVERIFY(!apply.isEnabled());
    }

    void noEditMakesASceneThatCannotBeOpened() {
        LiveFixture live(LiveFixture::smallScene());
        QString reason;
        connect(&live.bench(), &Workbench::refused, this,
                [&](const QString& why) { reason = why; });
        const auto setDetail = [](int design, int picture) {
            return [=](Scene& scene) {
                scene.subdivision = design;
                scene.meshFactor = picture;
            };
        };
        const auto keepVoid = [](Scene& scene) { scene.passive.voids.cells = {{3, 3}}; };
        QVERIFY(live.bench().editWhole("Detail", setDetail(2, 1)));
        QVERIFY(!live.bench().edit("Keep void", keepVoid));
        QVERIFY2(
            reason.startsWith("The detail of the design (2) and the detail of the picture (1)"),
            qPrintable(reason));
        QVERIFY(live.scene().passive.empty());
        // The text of the hand does not replace the reason.
        const auto message = [&] { return live.window.statusBar()->currentMessage(); };
        QVERIFY(live.takeTool("O"));
        live.drag(live.at(12.5, 3.5), live.at(14.5, 3.5));
        QVERIFY(live.scene().passive.empty());
        QVERIFY2(message().endsWith("set the detail of the picture to 2."), qPrintable(message()));
        QVERIFY(live.bench().editWhole("Detail", setDetail(1, 1)));
        QVERIFY(message().isEmpty());
        QVERIFY(hasLabel(live, "Element x 14, y 3"));
        QVERIFY(live.bench().edit("Keep void", keepVoid));
        QVERIFY(!live.bench().editWhole("Detail", setDetail(2, 1)));
        live.bench().document.undoStack().undo();
        // A blob that the timeline brings later.
        Scene later = LiveFixture::smallScene();
        later.timeline.push_back({1000, {}, {"blob"}, std::nullopt});
        later.timeline.back().settings.blob.cells = {{2, 2}};
        live.bench().document.open(later, {});
        QVERIFY(!live.bench().editWhole("Detail", setDetail(2, 1)));
        QVERIFY2(reason.startsWith("From iteration 1000 on, the detail of "), qPrintable(reason));
        live.named<QSpinBox>("Detail of the picture").setValue(2);
        QVERIFY(hasLabel(live, "set the detail of the picture to 1."));
        QVERIFY(!button(live, "Apply and start &afresh").isEnabled());
    }

    void aRefusalIsShownUntilTheNextChangeFixesIt() {
        Scene scene = LiveFixture::smallScene();
        Change unheld{4, {}, {"supports"}, std::nullopt};
        Change held{9, {}, {"supports"}, std::nullopt};
        held.settings.supports = scene.supports;
        scene.timeline = {unheld, held};
        LiveFixture live(scene);
        const auto& banner = live.window.plateStage().banner();
        QTRY_VERIFY_WITH_TIMEOUT(banner.text().contains("resumes with the change at iteration 9"),
                                 60000);
        QVERIFY(live.scene().supports.empty());
        QVERIFY(live.reach(9));
        QTRY_VERIFY(banner.text().isEmpty());
        QCOMPARE(live.scene().supports.size(), std::size_t{1});
    }

    void loadsAreMovedAndTurnedAsNumbers() {
        LiveFixture live(LiveFixture::smallScene());
        auto& x = live.named<QSpinBox>("Node of the load in x");
        QVERIFY(!x.isEnabled());
        live.named<QListWidget>("Loads").setCurrentRow(0);
        QCOMPARE(live.bench().selectedLoad(), std::optional<std::size_t>(0));
        QVERIFY(x.isEnabled());
        x.setValue(20);
        live.named<QSpinBox>("Node of the load in y").setValue(12);
        live.named<QDoubleSpinBox>("Force in x, to the right").setValue(0.25);
        live.named<QDoubleSpinBox>("Force in y, downwards").setValue(-2);
        const Load expected = {{20, 20}, {12, 12}, 0.25, -2, 0};
        QVERIFY(live.scene().loads[0] == expected);
        // Without a force it is told and marked, and can still be taken hold of.
        live.named<QDoubleSpinBox>("Force in x, to the right").setValue(0);
        live.named<QDoubleSpinBox>("Force in y, downwards").setValue(0);
        QVERIFY(live.window.plateStage().banner().text().contains("no force"));
        const LoadArrow handle = live.handle(0);
        live.drag(toQt(handle.freeEnd()).toPoint(), toQt(handle.foot()).toPoint() - QPoint(50, 0));
        QVERIFY(live.scene().loads[0].fx > 0.5);
        QVERIFY(live.runFor(1));
    }

    void loadCasesComeGoAndRest() {
        LiveFixture live(LiveFixture::smallScene());
        auto& cases = live.named<QListWidget>("Load cases; those that are ticked are in use");
        button(live, "Add &case").click();
        QCOMPARE(live.scene().loadCaseCount(), 2);
        QCOMPARE(live.bench().loadCase(), 1);
        QVERIFY(live.takeTool("L"));
        live.drag(live.at(24, 0), live.at(24, 0) + QPoint(60, 0));
        QCOMPARE(live.scene().loads[1].loadCase, 1);
        cases.item(0)->setCheckState(Qt::Unchecked);
        QCOMPARE(live.scene().loadCasesInUse, std::vector<int>{1});
        // One has to remain in use.
        cases.item(1)->setCheckState(Qt::Unchecked);
        QCOMPARE(live.scene().loadCasesInUse, std::vector<int>{1});
        QCOMPARE(cases.item(1)->checkState(), Qt::Checked);
        QVERIFY(live.runFor(2));
        auto& name = live.named<QLineEdit>("Name of the load case");
        QTest::keyClicks(&name, "  wind & snow ");
        QTest::keyClick(&name, Qt::Key_Return);
        live.named<QDoubleSpinBox>("Weight of the load case").setValue(2.5);
        QVERIFY(live.scene().loadCases[1] == (LoadCase{"wind & snow", 2.5}));
        QCOMPARE(cases.item(1)->text(), QString("Case 1 (wind & snow), weight 2.5"));
        QVERIFY(live.runFor(2));
        cases.setCurrentRow(0);
        QVERIFY(name.text().isEmpty());
        button(live, "Delete case").click();
        QCOMPARE(live.scene().loadCaseCount(), 1);
        QCOMPARE(live.scene().loads.size(), std::size_t{1});
        QCOMPARE(live.scene().loads[0].fx > 0, true);
        QVERIFY(!button(live, "Delete case").isEnabled());
        QVERIFY(live.runFor(2));
    }

    void theNumbersAreThoseOfTheRun() {
        LiveFixture live(LiveFixture::smallScene());
        QVERIFY(live.reach(10));
        live.run().setPlaying(false);
        QTest::qWait(300);
        const IterationNumbers& numbers = live.run().frame().numbers;
        const auto told = [&](const QString& name) {
            const QLabel* label = live.window.findChild<QLabel*>(name);
            // Screen readers tell the name with the value.
            return label->accessibleName() == name + " " + label->text() ? label->text() : "";
        };
        QCOMPARE(told("Iteration"), QString::number(numbers.iteration));
        QCOMPARE(told("Compliance"), numberText(numbers.compliance, 6));
        QCOMPARE(told("Volume"), percentText(numbers.volume));
        QVERIFY(told("One iteration").endsWith(" ms"));
        // After an edit in a pause, they are those of no present problem.
        const ResultLine& line = live.window.plateStage().resultLine();
        QVERIFY(line.text().contains("Compliance so far"));
        live.drag(live.at(24, 6), live.at(24, 3));
        QCOMPARE(line.text(), QString("Paused: Not computed yet"));
        live.run().step();
        QTRY_VERIFY_WITH_TIMEOUT(line.text().contains("Compliance so far"), 60000);
    }

    void thePlotMarksEdits() {
        LiveFixture live(LiveFixture::smallScene());
        live.run().setPlaying(false);
        live.run().startAfresh();
        const auto& plot = *live.window.findChild<PlotPanel*>();
        for (int i = 1; i <= 6; ++i) {
            if (i == 3 || i == 5)
                live.bench().edit("Edit", [&](Scene& scene) { scene.volumeFraction += 0.01; });
            live.run().step();
            QVERIFY(live.reach(i));
        }
        QCOMPARE(plot.marks(), (std::vector<std::size_t>{3, 5}));
        QVERIFY(plot.accessibleDescription().contains("2 edits"));
        // A drag is one.
        QVERIFY(live.takeTool("O"));
        live.press(live.at(4, 4));
        for (int x = 5; x < 10; ++x) {
            live.moveTo(live.at(x, 4));
            live.run().step();
            QVERIFY(live.reach(x + 2));
        }
        live.release(live.at(10, 4));
        QCOMPARE(plot.marks(), (std::vector<std::size_t>{3, 5, 7}));
        live.run().startAfresh();
        QVERIFY(plot.marks().empty());
    }

    void everythingHasANameAndAKeyThatIsItsOwn() {
        LiveFixture live("wheel.json");
        for (const bool draws : {false, true}) {
            live.window.setDrawing(draws);
            std::set<QString> keys;
            for (const QAction* action : live.entries()) {
                if (!action->isEnabled()) continue;
                for (const QKeySequence& key : action->shortcuts())
                    QVERIFY2(keys.insert(key.toString()).second, qPrintable(key.toString()));
            }
        }
        for (const QWidget* widget : live.window.findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
            // Parts of other widgets speak through these.
            if (widget->objectName().startsWith("qt_") || widget->inherits("QTabBar") ||
                widget->inherits("QScrollArea"))
                continue;
            QAccessibleInterface* spoken =
                QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
            QVERIFY2(!spoken->text(QAccessible::Name).isEmpty(), widget->metaObject()->className());
        }
    }

    void altReachesEachMenuAndFieldByALetterOfItsOwn() {
        LiveFixture live(LiveFixture::smallScene());
        QStringList texts;
        for (const QAction* menu : live.window.menuBar()->actions()) texts << menu->text();
        for (const QLabel* label : live.window.findChildren<QLabel*>())
            if (label->buddy() != nullptr) texts << label->text();
        for (const auto* each : live.window.findChildren<QAbstractButton*>())
            if (!each->inherits("QToolButton")) texts << each->text();
        std::set<QChar> letters;
        for (const QString& text : texts) {
            const auto ampersand = text.indexOf('&');
            if (ampersand >= 0)
                QVERIFY2(letters.insert(text[ampersand + 1].toLower()).second, qPrintable(text));
        }
        QVERIFY(letters.size() >= 12);
    }

    void fieldsLeaveWheelAndKeysToTheWindow() {
        LiveFixture live(LiveFixture::smallScene());
        live.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&live.window));
        auto& volume = live.named<QDoubleSpinBox>("Volume of material in percent");
        live.view().setFocus();
        QWheelEvent wheel({5, 5}, volume.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&volume, &wheel);
        QCOMPARE(live.scene().volumeFraction, 0.5);
        volume.setFocus();
        volume.selectAll();
        QTest::keyClicks(&volume, "55");
        QTest::keyClick(&volume, Qt::Key_Return);
        QCOMPARE(live.scene().volumeFraction, 0.55);
        QTest::keyClick(&volume, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(live.scene().volumeFraction, 0.5);
        QTest::keyClick(&volume, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(live.scene().volumeFraction, 0.55);
        QTest::keyClicks(&volume, "7");
        QTest::keyClick(&volume, Qt::Key_Escape);
        live.view().setFocus();
        QCOMPARE(live.scene().volumeFraction, 0.55);
        QCOMPARE(volume.value(), 55.0);
        volume.setFocus();
        const bool played = live.run().isPlaying();
        QVERIFY(live.run().state() != RunState::SETTLED);
        QTest::keyClick(&volume, Qt::Key_Space);
        QCOMPARE(live.run().isPlaying(), !played);
        // What was typed for the grid and not applied yet outlasts other edits.
        auto& width = live.named<QSpinBox>("Elements in x");
        width.setValue(40);
        live.bench().edit("Edit", [](Scene& scene) { scene.penalty = 2; });
        QCOMPARE(width.value(), 40);
    }

    void titleAndDescriptionAreEdits() {
        LiveFixture live(LiveFixture::smallScene());
        auto& title = live.named<QLineEdit>("Title of the scene");
        QCOMPARE(title.text(), QString("Small"));
        title.selectAll();
        QTest::keyClicks(&title, "Mine");
        QTest::keyClick(&title, Qt::Key_Return);
        QCOMPARE(live.scene().title, std::string("Mine"));
        live.bench().document.undoStack().undo();
        QCOMPARE(title.text(), QString("Small"));
    }

    void whatTheToolBarsHaveIsInTheMenusAndTheListOfKeys() {
        LiveFixture live("wheel.json");
        const QList<QAction*> inMenus = live.entries();
        for (const QToolBar* bar : live.window.findChildren<QToolBar*>())
            for (QAction* action : bar->actions()) {
                if (action->isSeparator() || action->inherits("QWidgetAction")) continue;
                QVERIFY2(inMenus.contains(action), qPrintable(action->text()));
                QVERIFY2(!action->toolTip().isEmpty() && !action->icon().isNull(),
                         qPrintable(action->text()));
            }
        QString listed;
        const DialogAnswer reading([&](QWidget& dialog) {
            auto* text = dialog.findChild<QTextBrowser*>();
            if (text == nullptr) return false;
            listed = text->toPlainText();
            dialog.close();
            return true;
        });
        for (QAction* action : inMenus)
            if (action->shortcuts().contains(QKeySequence("?"))) action->trigger();
        for (const QAction* action : inMenus) {
            QString name = action->text().remove('&');
            if (name.endsWith("...")) name.chop(3);
            QVERIFY2(action->shortcut().isEmpty() || listed.contains(name), qPrintable(name));
        }
    }

    void tabReachesEveryField() {
        LiveFixture live(LiveFixture::smallScene());
        live.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&live.window));
        live.view().setFocus();
        std::set<const QWidget*> reached;
        for (int i = 0; i < 100; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached.insert(QApplication::focusWidget());
        }
        QVERIFY(reached.count(&live.view()) > 0);
        for (const char* name : {"Elements in x", "Elements in y", "Detail of the design"})
            QVERIFY2(reached.count(&live.named<QSpinBox>(name)) > 0, name);
        QVERIFY(reached.count(&live.named<QSlider>("Volume of material in percent")) > 0);
    }

    void lookAndBrushAreRemembered() {
        {
            LiveFixture live(LiveFixture::smallScene());
            live.bench().setBrush({7, false});
            live.bench().document.undoStack().setClean();
            QVERIFY(live.window.close());
        }
        MainWindow window;
        QCOMPARE(window.workbench().brush().size, 7);
        QVERIFY(!window.workbench().brush().isRound);
    }

private:
    static QPushButton& button(LiveFixture& live, const QString& text) {
        for (QPushButton* each : live.window.findChildren<QPushButton*>())
            if (each->text() == text) return *each;
        throw std::invalid_argument("no button " + text.toStdString());
    }

    static bool hasLabel(LiveFixture& live, const QString& part) {
        for (const QLabel* label : live.window.findChildren<QLabel*>())
            if (!label->isHidden() && label->text().contains(part)) return true;
        return false;
    }
};

QObject* makePanelTest() { return new PanelTest; }
#include "panel_test.moc"
