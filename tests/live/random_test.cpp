#include <QContextMenuEvent>
#include <QPointingDevice>
#include <QSpinBox>
#include <QtTest>
#include <random>

#include "dialog_answers.h"
#include "export/scene_file.h"
#include "format/resize.h"
#include "format/scene_reader.h"
#include "format/scene_writer.h"
#include "format/setting_keys.h"
#include "live_fixture.h"

/// Hands that do anything at all.
class RandomTest : public QObject {
    Q_OBJECT

private slots:
    void fiveThousandEventsLeaveASoundWindow() {
        LiveFixture live("minimal.json");
        std::mt19937 random(20240611);
        for (int i = 0; i < 5000; ++i) {
            act(live, random);
            if (i % 10 == 0) QTest::qWait(0);
            if (i % 50 == 0) checkThatItCanBeOpened(live);
        }
        live.release({});
        live.window.setDrawing(false);
        // The worker still follows.
        live.bench().edit("Mend", [](Scene& scene) {
            scene.supports = {{{0, 0}, {0, scene.height}, true, true}};
            scene.loads = {{{scene.width, scene.width}, {0, 0}, 0, 1, 0}};
            scene.loadCasesInUse = {0};
            scene.passive = {};
            scene.blob = {};
            scene.symmetry = Symmetry::NONE;
        });
        live.run().setPlaying(true);
        QVERIFY(live.runFor(3));
    }

private:
    /// What would be saved reads back as the same scene.
    static void checkThatItCanBeOpened(LiveFixture& live) {
        const Scene& saved = *live.bench().document.whole();
        const Scene read = parseScene(sceneText(saved), "random.json");
        QVERIFY(sceneText(read) == sceneText(saved));
        for (const SettingKey& key : settingKeys()) QVERIFY2(key.same(read, saved), key.name);
        QVERIFY(read.timeline == saved.timeline);
    }

    static Qt::KeyboardModifier anyModifier(std::mt19937& random) {
        static const std::vector<Qt::KeyboardModifier> modifiers = {
            Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier, Qt::AltModifier,
            Qt::ControlModifier};
        return modifiers[random() % modifiers.size()];
    }

    static QPoint anywhere(LiveFixture& live, std::mt19937& random) {
        return {static_cast<int>(random() % 1200) - 50,
                static_cast<int>(random() % static_cast<unsigned>(live.view().height() + 60)) - 30};
    }

    static void act(LiveFixture& live, std::mt19937& random) {
        switch (random() % 15) {
            case 0:
                return live.press(anywhere(live, random), anyModifier(random));
            case 1:
                return live.release(anywhere(live, random));
            case 2:
                return takeAnyTool(live, random);
            case 3:
                return pressAnyKey(live, random);
            case 4:
                return changeAnything(live, random);
            case 5: {
                QUndoStack& history = live.bench().document.undoStack();
                random() % 3 == 0 ? history.redo() : history.undo();
                return;
            }
            case 6: {
                const QPoint place = anywhere(live, random);
                return random() % 2 == 0
                           ? QTest::mousePress(&live.view(), Qt::RightButton, {}, place)
                           : QTest::mouseRelease(&live.view(), Qt::RightButton, {}, place);
            }
            case 7:
                return handleAnyPiece(live, random);
            case 8: {
                const QPoint place = anywhere(live, random);
                QContextMenuEvent asking(QContextMenuEvent::Mouse, place,
                                         live.view().mapToGlobal(place));
                QApplication::sendEvent(&live.view(), &asking);
                return triggerAnyOf(QApplication::activePopupWidget(), random);
            }
            case 9:
                return random() % 2 == 0 ? touchAnywhere(live, random)
                                         : handleAnyVariant(live, random);
            default:
                return live.moveTo(anywhere(live, random));
        }
    }

    /// Two fingers, of which the second may come later or leave sooner.
    static void touchAnywhere(LiveFixture& live, std::mt19937& random) {
        static QPointingDevice* const screen = QTest::createTouchDevice();
        const auto place = [&] { return anywhere(live, random); };
        QTest::touchEvent(&live.view(), screen).press(0, place());
        if (random() % 2 == 0) {
            QTest::touchEvent(&live.view(), screen).stationary(0).press(1, place());
            QTest::touchEvent(&live.view(), screen).move(0, place()).move(1, place());
            QTest::touchEvent(&live.view(), screen).stationary(0).release(1, place());
        }
        QTest::touchEvent(&live.view(), screen).move(0, place());
        QTest::touchEvent(&live.view(), screen).release(0, place());
    }

    static void handleAnyVariant(LiveFixture& live, std::mt19937& random) {
        QListWidget& list = live.window.variants().list();
        if (list.count() < 3 || random() % 4 == 0) live.takeTool("Ctrl+K");
        if (list.count() == 0) return;
        list.clearSelection();
        list.setCurrentRow(static_cast<int>(random() % static_cast<unsigned>(list.count())));
        if (random() % 8 == 0) {
            const MessageAnswer answer(QMessageBox::Yes);
            return live.window.variants().actions().back()->trigger();
        }
        QTest::keyClick(&list, Qt::Key_Return);
    }

    static void triggerAnyOf(QWidget* menu, std::mt19937& random) {
        if (menu == nullptr) return;
        QList<QAction*> entries = menu->actions();
        entries.removeIf([](const QAction* entry) {
            // Pictures take their time, and are of no interest here. Nobody answers dialogs.
            return entry->isSeparator() || !entry->isEnabled() ||
                   entry->text().contains("icture") || entry->text().endsWith("...");
        });
        if (!entries.empty()) entries[static_cast<int>(random() % entries.size())]->trigger();
        menu->close();
    }

    static void handleAnyPiece(LiveFixture& live, std::mt19937& random) {
        static const std::vector<const char*> keys = {
            "Ctrl+C", "Ctrl+X",       "Ctrl+V",     "Ctrl+V",
            "Ctrl+M", "Ctrl+Shift+M", "Ctrl+Alt+M", "Ctrl+Alt+Shift+M"};
        if (random() % 4 == 0) putAnyRing(live, random);
        const auto ids = piecesOf(live.scene());
        if (!ids.empty()) live.bench().select(ids[random() % ids.size()]);
        while (!ids.empty() && random() % 3 != 0) live.bench().toggle(ids[random() % ids.size()]);
        live.takeTool(keys[random() % keys.size()]);
    }

    /// With one of few centres, so that rings of all kinds meet.
    static void putAnyRing(LiveFixture& live, std::mt19937& random) {
        const auto any = [&](unsigned count) {
            return 0.5 * static_cast<double>(random() % count);
        };
        const double inner = any(6);
        const Ring ring = {2 + any(3), 2 + any(3), inner, inner + 0.5 + any(8)};
        live.bench().putIn("Ring", KeptArea{PASSIVE_KINDS[random() % PASSIVE_KINDS.size()],
                                            ringArea(ring, live.scene())});
    }

    static void takeAnyTool(LiveFixture& live, std::mt19937& random) {
        static const std::vector<const char*> keys = {"V", "L", "S",       "X", "Y", "O",
                                                      "K", "J", "B",       "E", "D", "I",
                                                      "U", "M", "Shift+M", "R", "C"};
        live.takeTool(keys[random() % keys.size()]);
    }

    static void pressAnyKey(LiveFixture& live, std::mt19937& random) {
        static const std::vector<Qt::Key> keys = {Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Up,
                                                  Qt::Key_Down,   Qt::Key_Return, Qt::Key_N,
                                                  Qt::Key_Escape, Qt::Key_Plus,   Qt::Key_Minus};
        static const std::vector<Qt::KeyboardModifiers> modifiers = {
            Qt::NoModifier, Qt::ShiftModifier, Qt::AltModifier};
        live.key(keys[random() % keys.size()], modifiers[random() % modifiers.size()]);
    }

    /// Of the timeline: it moves the blob there is, keeps what is kept, or starts at another
    /// detail.
    static void addAnyChange(LiveFixture& live, std::mt19937& random) {
        const auto kind = random() % 3;
        const int detail = 1 + static_cast<int>(random() % 2);
        live.bench().editWhole("Change", [=](Scene& scene) {
            const int last = scene.timeline.empty() ? 1 : scene.timeline.back().iteration;
            if (last >= scene.iterations) return scene.timeline.clear();
            Change change{last + 1, {}, {}, std::nullopt};
            if (kind == 0) {
                change.restart = {false, detail, 1};
            } else if (kind == 1) {
                change.keys = {"passive"};
                change.settings.passive.solids.cells = {{0, 0}};
            } else {
                change.keys = {"blob"};
                change.settings.blob.cells = {{1, 1}};
            }
            scene.timeline.push_back(change);
        });
    }

    static void changeView(LiveFixture& live, std::mt19937& random) {
        static const std::vector<const char*> views = {"Ctrl+1", "Ctrl+2", "Ctrl+3", "Ctrl+4"};
        live.takeTool(views[random() % views.size()]);
        auto& cases = live.named<QComboBox>("Load case");
        cases.setCurrentIndex(
            static_cast<int>(random() % static_cast<unsigned>(std::max(1, cases.count()))));
        QAction* animate = live.window.plateStage().fields().animateAction();
        if (animate->isEnabled()) animate->trigger();
    }

    static void changeAnything(LiveFixture& live, std::mt19937& random) {
        switch (random() % 13) {
            case 0:
                return live.window.setDrawing(random() % 2 == 0);
            case 1:
                return live.run().setPlaying(random() % 3 != 0);
            case 2:
                return live.run().step();
            case 3:
                return live.run().startAfresh();
            case 4:
                return live.bench().setBrush({static_cast<int>(random() % 9), random() % 2 == 0});
            case 5:
                return live.run().setMovesBlob(random() % 2 == 0);
            case 6:
                return live.bench().deleteSelected();
            case 7: {
                const int width = 4 + static_cast<int>(random() % 30);
                const int height = 4 + static_cast<int>(random() % 20);
                live.bench().editWhole("Grid",
                                       [=](Scene& scene) { resizeGrid(scene, width, height); });
                return;
            }
            case 8: {
                const int design = 1 + static_cast<int>(random() % 3);
                const int picture = random() % 2 == 0 ? design : 1;
                live.bench().editWhole("Detail", [=](Scene& scene) {
                    scene.subdivision = design;
                    scene.meshFactor = picture;
                });
                return;
            }
            case 9:
                return addAnyChange(live, random);
            case 10:
                return changeView(live, random);
            case 11: {
                auto& plane = live.named<QComboBox>("Plane of symmetry");
                emit plane.activated(static_cast<int>(random() % 5));
                return;
            }
            default: {
                const int last = live.scene().loadCaseCount() - 1;
                const bool adds = random() % 2 == 0;
                live.bench().editWhole("Case", [=](Scene& scene) {
                    adds ? addLoadCase(scene) : removeLoadCase(scene, last);
                    scene.loadCases.front() = {adds ? "wind" : "", adds ? 2.0 : 1.0};
                });
            }
        }
    }
};

QObject* makeRandomTest() { return new RandomTest; }
#include "random_test.moc"
