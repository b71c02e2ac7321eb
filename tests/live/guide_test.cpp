#include <QDoubleSpinBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSlider>
#include <QTranslator>
#include <QtTest>

#include "export/scene_file.h"
#include "format/scene_writer.h"
#include "gallery_scenes.h"
#include "live_fixture.h"
#include "problems.h"
#include "room_text.h"
#include "shipped_text.h"
#include "translation.h"

/// The help of the window for a first user.
class GuideTest : public QObject {
    Q_OBJECT

private slots:
    void init() { QSettings().clear(); }

    void theHintGoesForGoodWithTheFirstDrag() {
        {
            LiveFixture live(LiveFixture::smallScene());
            QTRY_VERIFY(hintOf(live).isVisible());
            // Next to the arrow, and no obstacle for the hand.
            const auto near = hintOf(live).geometry().adjusted(-20, -20, 20, 20);
            QVERIFY(near.contains(live.at(24, 6)));
            live.drag(live.at(24, 6), live.at(24, 3));
            QVERIFY(!hintOf(live).isVisible());
            live.bench().document.undoStack().undo();
            live.view().repaint();
            QVERIFY(!hintOf(live).isVisible());
        }
        LiveFixture again(LiveFixture::smallScene());
        again.view().repaint();
        QVERIFY(!hintOf(again).isVisible());
    }

    void theHintIsNotShownAtEveryStart() {
        int shown = 0;
        for (int start = 0; start < 5; ++start) {
            LiveFixture live(LiveFixture::smallScene());
            live.view().repaint();
            shown += hintOf(live).isVisible() ? 1 : 0;
        }
        QCOMPARE(shown, 3);
    }

    void theTourGoesOnWhenItsStepIsDone() {
        LiveFixture live("wheel.json");
        live.window.offerTour();
        QTest::mouseClick(&button(live, "Start"), Qt::LeftButton);
        const Tour& tour = live.window.tour().tour();
        QVERIFY(tour.isRunning());
        QCOMPARE(live.scene().title, std::string("Cantilever"));
        live.drag(live.at(80, 25), live.at(80, 20));
        QTRY_COMPARE(tour.currentStep(), std::size_t{1});
        QTest::keyClick(&live.named<QSlider>("Volume of material in percent"), Qt::Key_PageUp);
        QTRY_COMPARE(tour.currentStep(), std::size_t{2});
        // Something else than the step asks for.
        QTest::keyClick(&live.named<QSlider>("Volume of material in percent"), Qt::Key_PageUp);
        QVERIFY(live.takeTool("O"));
        QTest::qWait(1000);
        QCOMPARE(tour.currentStep(), std::size_t{2});
        live.drag(live.at(40, 25), live.at(45, 25));
        QTRY_COMPARE(tour.currentStep(), std::size_t{3});
        live.window.setDrawing(true);
        live.drag(live.at(10, 25), live.at(45, 25));
        QTRY_COMPARE(tour.currentStep(), std::size_t{4});
        QTest::mouseClick(&button(live, "Finish"), Qt::LeftButton);
        QVERIFY(!tour.isRunning());
        // The offer comes once.
        live.window.offerTour();
        QVERIFY(!button(live, "Finish").isVisible());
    }

    void theWindowSpeaksTheLanguageOfTheSystem() {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        installTranslation(*qApp, QLocale());
        {
            LiveFixture live(LiveFixture::smallScene());
            QCOMPARE(live.window.menuBar()->actions().front()->text(), QString("&Datei"));
            QCOMPARE(live.named<QDoubleSpinBox>("Strafexponent").text(), QString("3,00"));
            // In files, numbers and keys stay as they are.
            QVERIFY(sceneText(live.scene()).find("\"volumeFraction\": 0.5") != std::string::npos);
        }
        QCOMPARE(roomText("as drawn, no support holds 2 parts of it, 3.5 elements of the grid; "
                          "the first at x 3, y 4"),
                 QString("in Schwarzweiß: kein Lager hält 2 Teile davon, 3,5 Elemente des "
                         "Netzes; "
                         "der erste bei x 3, y 4"));
        // No English words are left in the findings of the checks.
        const QRegularExpression english("\\b(the|of|is|are|no|than)\\b");
        for (const Scene& scene : faultyScenes()) {
            const Problems problems = problemsOf(scene, {"Change load/support"});
            const QString said = problems.text + " " + problems.advice;
            QVERIFY(!problems.text.isEmpty());
            QVERIFY2(!said.contains(english) && !said.contains("Change"), qPrintable(said));
        }
        for (const char* text :
             {"Change load / support", "Change load/support", "Load cannot be on top of support"}) {
            const Problems problems = problemsOf(LiveFixture::smallScene(), {text});
            const QString said = problems.text + " " + problems.advice;
            QVERIFY(problems.text.endsWith('.') && problems.advice.endsWith('.'));
            QVERIFY2(!said.contains(english) && !said.contains("load"), qPrintable(said));
        }
        Scene thin = LiveFixture::smallScene();
        thin.volumeFraction = 0.05;
        QCOMPARE(problemsOf(thin, {}).text,
                 QString("Ein Volumen von 5 % reicht für einen Stab von 0,6 Elementen Breite von "
                         "Last 1 zum nächsten Lager, und ein so dünner Entwurf reißt; mehr "
                         "Volumen oder ein feineres Netz wählen."));
        for (const GalleryScene& shipped : galleryScenes(VOXAM_SCENES)) {
            const Scene scene = readScene(shipped.file);
            QVERIFY(scene.volumeFraction == 0 || problemsOf(scene, {}).text.isEmpty());
            QVERIFY2(shippedText(scene.description).toStdString() != scene.description,
                     scene.description.c_str());
            if (scene.title != shipped.file.stem())
                QVERIFY2(shippedText(scene.title).toStdString() != scene.title,
                         scene.title.c_str());
        }
        qDeleteAll(qApp->findChildren<QTranslator*>());
        QLocale::setDefault(before);
    }

private:
    static std::vector<Scene> faultyScenes() {
        std::vector<Scene> scenes(5, LiveFixture::smallScene());
        scenes[0].supports.clear();
        scenes[1].supports = {{{0, 0}, {6, 6}, true, true}};
        scenes[2].loads[0].fy = 0;
        scenes[3].passive.voids.cells = {{23, 5}, {23, 6}};
        scenes[4].loads[0].x = {0, 0};
        return scenes;
    }

    static QLabel& hintOf(LiveFixture& live) { return *live.view().findChild<FirstHint*>(); }

    static QPushButton& button(LiveFixture& live, const QString& text) {
        for (QPushButton* button : live.window.findChildren<QPushButton*>())
            if (button->text() == text) return *button;
        throw std::invalid_argument("no button " + text.toStdString());
    }
};

QObject* makeGuideTest() { return new GuideTest; }
#include "guide_test.moc"
