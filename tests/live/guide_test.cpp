#include <QPushButton>
#include <QSlider>
#include <QtTest>

#include "live_fixture.h"

/// What the window tells somebody who sees it for the first time.
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
        QTRY_COMPARE(tour.step(), std::size_t{1});
        QTest::keyClick(&live.named<QSlider>("Volume of material in percent"), Qt::Key_PageUp);
        QTRY_COMPARE(tour.step(), std::size_t{2});
        // Something else than the step asks for.
        QTest::keyClick(&live.named<QSlider>("Volume of material in percent"), Qt::Key_PageUp);
        QVERIFY(live.takeTool("O"));
        QTest::qWait(1000);
        QCOMPARE(tour.step(), std::size_t{2});
        live.drag(live.at(40, 25), live.at(45, 25));
        QTRY_COMPARE(tour.step(), std::size_t{3});
        live.window.setDrawing(true);
        live.drag(live.at(10, 25), live.at(45, 25));
        QTRY_COMPARE(tour.step(), std::size_t{4});
        QTest::mouseClick(&button(live, "Finish"), Qt::LeftButton);
        QVERIFY(!tour.isRunning());
        // The offer comes once.
        live.window.offerTour();
        QVERIFY(!button(live, "Finish").isVisible());
    }

private:
    static QLabel& hintOf(LiveFixture& live) { return *live.view().findChild<FirstHint*>(); }

    static QPushButton& button(LiveFixture& live, const QString& text) {
        for (QPushButton* button : live.window.findChildren<QPushButton*>())
            if (button->text() == text) return *button;
        throw std::invalid_argument("no button " + text.toStdString());
    }
};

QObject* makeGuideTest() { return new GuideTest; }
#include "guide_test.moc"
