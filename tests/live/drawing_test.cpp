#include <QPointingDevice>
#include <QRegularExpression>
#include <QTabletEvent>
#include <QtTest>
#include <memory>

#include "best_scores.h"
#include "format/resize.h"
#include "live_fixture.h"
#include "match.h"
#include "program.h"

/// Designs that are drawn, and what they score.
class DrawingTest : public QObject {
    Q_OBJECT

private slots:
    void scoresWhatTheProgramScores() {
        LiveFixture live("optimise-cantilever.json");
        live.window.setDrawing(true);
        drawTruss(live);
        const Assessment found = scoreOf(live);
        QVERIFY(found.problems.empty());
        const QString file = directory.filePath("drawn.json");
        live.bench().document.save(file.toStdString());
        const QString said = runProgram({"score", file}).out;
        QVERIFY2(said.contains(QString::asprintf("%.6g", found.score.compliance)),
                 qPrintable(said));
    }

    void floatingPartsAreMarkedAndLeftOut() {
        LiveFixture live("optimise-cantilever.json");
        live.window.setDrawing(true);
        drawTruss(live);
        const double before = scoreOf(live).score.compliance;
        QVERIFY(live.takeTool("D"));
        live.drag(live.at(40, 25), live.at(44, 25));
        const Assessment found = scoreOf(live);
        QCOMPARE(found.floating.size(), std::size_t{1});
        QCOMPARE(found.score.compliance, before);
    }

    void whatHangsFreeIsNotSupported() {
        LiveFixture live("optimise-cantilever.json");
        live.window.setDrawing(true);
        live.bench().edit("Free", [](Scene& scene) { scene.supports.clear(); });
        drawTruss(live);
        QVERIFY(!scoreOf(live).problems.empty());
    }

    void theRivalIsTheBestDesignOfItsRun() {
        LiveFixture live(LiveFixture::smallScene());
        live.window.setDrawing(true);
        const auto& rival = live.window.drawingMode().rivalScore();
        QVERIFY(QTest::qWaitFor([&] { return rival && rival->isSettled; }, 60000));
        live.run().setPlaying(false);
        const ScoreResult first = *rival;
        const double compliance = first.assessment.score.compliance;
        const auto offer = [&](double factor, std::uint64_t revision) {
            ScoreResult next = first;
            next.revision = revision;
            next.assessment.score.compliance *= factor;
            emit live.run().designScored(next);
            return rival->assessment.score.compliance / compliance;
        };
        QCOMPARE(offer(0.9, first.revision), 0.9);
        QCOMPARE(offer(1.1, first.revision), 0.9);
        // One for another task.
        QCOMPARE(offer(0.1, first.revision - 1), 0.9);
    }

    void theRivalDependsOnTheProblemAlone() {
        LiveFixture live(LiveFixture::smallScene());
        QVERIFY(live.settle());
        const Field design = live.run().frame().material;
        const ResultLine& line = live.window.plateStage().resultLine();
        // Without what Play does with it.
        const auto numbers = [&] { return line.text().section("Comp", 1).section("  ·  ", 0, 1); };
        const QString result = numbers();
        const DrawingMode& mode = live.window.drawingMode();
        const auto settledRival = [&] {
            const bool isThere = QTest::qWaitFor(
                [&] { return mode.rivalScore() && mode.rivalScore()->isSettled; }, 60000);
            return isThere ? mode.rivalScore()->assessment.score.compliance : 0;
        };
        live.window.setDrawing(true);
        const double compliance = settledRival();
        const auto setVolume = [&](double volume) {
            live.bench().edit("Volume", [=](Scene& scene) { scene.volumeFraction = volume; });
        };
        setVolume(0.7);
        QVERIFY(settledRival() < compliance);
        setVolume(0.5);
        QCOMPARE(settledRival(), compliance);
        // What was on the plate is there again, with its score.
        live.window.setDrawing(false);
        QVERIFY(live.run().frame().material == design);
        QTRY_COMPARE_WITH_TIMEOUT(numbers(), result, 60000);
        setVolume(0.6);
        QVERIFY(live.settle());
    }

    void theOptimisersDesignTakenOverIsExactlyAsGood() {
        forgetScores();
        LiveFixture live("optimise-cantilever.json");
        live.window.setDrawing(true);
        const DrawingMode& mode = live.window.drawingMode();
        QVERIFY(QTest::qWaitFor([&] { return mode.rivalScore() && mode.rivalScore()->isSettled; },
                                60000));
        for (QAction* action : mode.actions())
            if (action->text().contains("optimiser")) action->trigger();
        QVERIFY(scoreOf(live).problems.empty());
        // To the cell, and the verdict is that neither is stiffer.
        QCOMPARE(mean(*mode.design()), 0.4);
        QTRY_COMPARE_WITH_TIMEOUT(mode.match().state, Match::State::DECIDED, 60000);
        QCOMPARE(mode.match().percent, 100.0);
        QVERIFY(live.window.plateStage().plateHeader().text().contains("100 %"));
        QVERIFY(winsNothing(live));
        // Nor does a copy that a hand has changed.
        QVERIFY(live.takeTool("U"));
        live.bench().setBrush({1, false});
        live.drag(live.at(1.5, 1.5), live.at(1.5, 1.5));
        QVERIFY(*mode.design() != mode.rivalScore()->design);
        QVERIFY(winsNothing(live));
        // A cell beyond the budget ends the comparison.
        QVERIFY(live.takeTool("D"));
        live.bench().setBrush({4, false});
        live.drag(live.at(40, 25), live.at(46, 25));
        scoreOf(live);
        live.bench().edit("More", [](Scene& scene) {
            for (float& density : scene.densities->values) density = 1;
        });
        scoreOf(live);
        QCOMPARE(mode.match().state, Match::State::OVER_BUDGET);
    }

    void whatIsKeptBindsTheHandAsTheOptimiser() {
        LiveFixture live("l-bracket.json");
        live.window.setDrawing(true);
        QVERIFY(live.takeTool("I"));
        live.drag(live.at(1, 1), live.at(live.scene().width - 1, live.scene().height - 1));
        live.drag(live.at(live.scene().width - 1, 1), live.at(1, live.scene().height - 1));
        live.bench().edit("Keep", [](Scene& scene) {
            scene.passive.solids.cells = {{0, 0}};
            scene.blob.cells = {{10, 10}, {79, 40}};
        });
        const Field& design = *live.window.drawingMode().design();
        for (const Cell& cell : live.scene().blob.cells) QCOMPARE(design.at(cell.x, cell.y), 0.0f);
        for (const Cell& cell : live.scene().passive.voids.cells)
            QCOMPARE(design.at(cell.x, cell.y), 0.0f);
        QCOMPARE(design.at(0, 0), 1.0f);
        QVERIFY(mean(design) > 0.05);
    }

    void mirrorsLinesAndTheOtherButton() {
        LiveFixture live(LiveFixture::smallScene());
        live.window.setDrawing(true);
        live.bench().setBrush({1, false});
        QVERIFY(live.takeTool("M") && live.takeTool("Shift+M"));
        live.press(live.at(2.5, 1.5));
        live.release(live.at(2.5, 1.5));
        const auto material = [&] { return std::lround(mean(*live.scene().densities) * 24 * 12); };
        QCOMPARE(material(), 4);
        for (const auto& [x, y] : {std::pair(2, 1), {21, 1}, {2, 10}, {21, 10}})
            QCOMPARE(live.scene().densities->at(x, y), 1.0f);
        QVERIFY(live.takeTool("M") && live.takeTool("Shift+M"));
        // With Shift a line leads here from there.
        live.press(live.at(10.5, 1.5), Qt::ShiftModifier);
        live.release(live.at(10.5, 1.5));
        QCOMPARE(material(), 4 + 8);
        const int steps = live.bench().document.undoStack().count();
        QTest::mousePress(&live.view(), Qt::RightButton, {}, live.at(5.5, 1.5));
        QTest::mouseRelease(&live.view(), Qt::RightButton, {}, live.at(5.5, 1.5));
        QCOMPARE(material(), 4 + 8 - 1);
        QCOMPARE(live.bench().document.undoStack().count(), steps + 1);
        // The left button draws again.
        live.press(live.at(5.5, 1.5));
        live.release(live.at(5.5, 1.5));
        QCOMPARE(material(), 4 + 8);
    }

    void fingersDrawZoomAndMove() {
        LiveFixture live(LiveFixture::smallScene());
        live.window.setDrawing(true);
        const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
        const auto material = [&] { return mean(*live.window.drawingMode().design()); };
        const QPoint one = live.at(4, 6);
        const QPoint other = live.at(20, 6);
        QTest::touchEvent(&live.view(), screen.get()).press(0, one);
        QTest::touchEvent(&live.view(), screen.get()).move(0, other);
        QTest::touchEvent(&live.view(), screen.get()).release(0, other);
        QVERIFY(material() > 0.1);
        // The stroke that the first of two fingers began is taken back.
        const double before = material();
        const double scale = live.view().transform().scale;
        const QPointF middle = live.view().transform().toPlate(0.5 * QPointF(one + other));
        const QPoint low(0, 40);
        QTest::touchEvent(&live.view(), screen.get()).press(0, one + low);
        QTest::touchEvent(&live.view(), screen.get()).move(0, one + low).press(1, other + low);
        const QPoint apart = (other - one) / 2;
        QTest::touchEvent(&live.view(), screen.get()).move(0, one - apart).move(1, other + apart);
        QTest::touchEvent(&live.view(), screen.get()).release(0, one).stationary(1);
        QTest::touchEvent(&live.view(), screen.get()).release(1, other + apart);
        QCOMPARE(material(), before);
        QVERIFY(std::abs(live.view().transform().scale / scale - 2) < 0.05);
        // The point between the fingers has not moved.
        const QPointF moved = live.view().transform().toPlate(0.5 * QPointF(one + other) - low);
        QVERIFY(QLineF(moved, middle).length() < 1.5);
    }

    void aPenDrawsAndItsOtherEndErases() {
        LiveFixture live(LiveFixture::smallScene());
        live.window.setDrawing(true);
        const auto stroke = [&](QPointingDevice::PointerType end) {
            const QPointingDevice pen("pen", 1, QInputDevice::DeviceType::Stylus, end, {}, 1, 1);
            const auto send = [&](QEvent::Type type, QPointF place, Qt::MouseButtons held) {
                QTabletEvent event(type, &pen, place, live.view().mapToGlobal(place), 0.5, 0, 0, 0,
                                   0, 0, {}, Qt::LeftButton, held);
                QApplication::sendEvent(&live.view(), &event);
            };
            send(QEvent::TabletPress, live.at(6, 6), Qt::LeftButton);
            send(QEvent::TabletMove, live.at(12, 6), Qt::LeftButton);
            send(QEvent::TabletRelease, live.at(12, 6), Qt::NoButton);
            return mean(*live.window.drawingMode().design());
        };
        QVERIFY(stroke(QPointingDevice::PointerType::Pen) > 0.05);
        QCOMPARE(stroke(QPointingDevice::PointerType::Eraser), 0.0);
    }

    void onlyWhatWasDrawnByHandWins() {
        forgetScores();
        const std::string file = directory.filePath("by-hand.json").toStdString();
        LiveFixture live(LiveFixture::smallScene());
        live.window.setDrawing(true);
        drawBar(live, 6);
        QVERIFY(wins(live));
        const double percent = live.window.drawingMode().match().percent;
        QCOMPARE(BestScores::best(live.scene()), percent);
        QVERIFY(live.window.plateStage().plateHeader().remark().contains("Best so far"));
        live.bench().document.save(file);
        Scene brought = live.scene();
        brought.densities->at(12, 11) = 1;
        // Another window knows it from the settings.
        LiveFixture next(LiveFixture::smallScene());
        forgetScores();
        QVERIFY(next.window.open(file));
        QVERIFY(wins(next));
        // Somebody else's drawing stays so.
        forgetScores();
        next.bench().document.open(brought, {});
        QVERIFY(winsNothing(next));
        drawBar(next, 4);
        QVERIFY(winsNothing(next));
        next.bench().editWhole("Change grid", [](Scene& scene) { resizeGrid(scene, 48, 24); });
        QVERIFY(winsNothing(next));
        // An empty plate begins by hand. A drawing without a score hides no best score.
        takeEntry(next, "empty plate");
        drawBar(next, 12);
        QVERIFY(wins(next));
        next.bench().document.undoStack().undo();
        scoreOf(next);
        QVERIFY(next.window.plateStage().plateHeader().remark().contains("Best so far"));
    }

    void theOptimisersBestDesignCounts() {
        forgetScores();
        LiveFixture live(LiveFixture::smallScene());
        live.window.setDrawing(true);
        drawBar(live, 6);
        QVERIFY(wins(live));
        const double percent = live.window.drawingMode().match().percent;
        BestScores::offerRival(live.scene(), 0.5 * BestScores::bestRival(live.scene()));
        live.run().startAfresh();
        QVERIFY(QTest::qWaitFor([&] { return isDecided(live); }, 60000));
        QCOMPARE(live.window.drawingMode().match().percent, 0.5 * percent);
        QVERIFY(live.window.plateStage().rivalHeader().details().contains("best so far"));
        forgetScores();
    }

    void theTimerStartsWithTheFirstStroke() {
        LiveFixture live(LiveFixture::smallScene());
        live.window.setDrawing(true);
        const DrawingClock& clock = *live.window.findChild<DrawingClock*>();
        QVERIFY(!clock.isVisible());
        for (QAction* action : live.entries())
            if (action->text().contains("Timer")) action->trigger();
        QVERIFY(clock.isVisible());
        QTest::qWait(1200);
        QVERIFY(clock.text().endsWith("3:00"));
        live.drag(live.at(4, 6), live.at(20, 6));
        QTRY_VERIFY(clock.text().endsWith("2:58"));
        // It goes on while the mode is left.
        live.window.setDrawing(false);
        QVERIFY(!clock.isVisible());
        live.window.setDrawing(true);
        QVERIFY(!clock.text().endsWith("3:00"));
        takeEntry(live, "empty plate");
        QVERIFY(clock.text().endsWith("3:00"));
        // The drawing before the empty plate has no time.
        live.bench().document.undoStack().undo();
        QVERIFY(!clock.isRunning() && !clock.text().endsWith("3:00"));
        takeEntry(live, "empty plate");
        forgetScores();
        live.window.findChild<DrawingClock*>()->setSeconds(1);
        live.press(live.at(1, 6));
        live.moveTo(live.at(23, 6));
        QTRY_VERIFY(clock.isUp());
        const double inTime = mean(*live.scene().densities);
        live.moveTo(live.at(23, 1));
        QCOMPARE(mean(*live.scene().densities), inTime);
        live.release(live.at(23, 1));
        const ScoreHeader& header = live.window.plateStage().plateHeader();
        QTRY_VERIFY_WITH_TIMEOUT(header.text().contains(QRegularExpression("is up: \\d")), 60000);
        const QString result = header.text();
        // What is drawn now changes nothing.
        const double best = BestScores::best(live.scene());
        QVERIFY(best > 0);
        drawBar(live, 5);
        QVERIFY(QTest::qWaitFor([&] { return isDecided(live); }, 60000));
        QCOMPARE(header.text(), result);
        QCOMPARE(BestScores::best(live.scene()), best);
        QSettings().remove("drawing/timer");
    }

    void theVerdictWaitsForTheRivalAndTheBudget() {
        const auto scored = [](double compliance, float density) {
            ScoreResult result;
            result.design = Field(10, 10);
            for (int x = 0; x < 10; ++x)
                for (int y = 0; y < 4; ++y) result.design.at(x, y) = density;
            result.assessment.score.compliance = compliance;
            return result;
        };
        const auto mine = scored(50, 1);
        const auto theirs = scored(40, 1);
        QCOMPARE(judge(std::nullopt, {&theirs, true}, 0.4).state, Match::State::NO_SCORE);
        QCOMPARE(judge(mine, {}, 0.4).state, Match::State::RIVAL_AT_WORK);
        QCOMPARE(judge(mine, {&theirs}, 0.4).state, Match::State::RIVAL_AT_WORK);
        QCOMPARE(judge(mine, {&theirs, true}, 0.38).state, Match::State::OVER_BUDGET);
        const Match decided = judge(mine, {&theirs, true}, 0.4);
        QCOMPARE(decided.state, Match::State::DECIDED);
        QCOMPARE(decided.percent, 80.0);
        QVERIFY(!decided.isRivalEarlier);
        // The best design of the optimiser counts.
        QCOMPARE(judge(mine, {&theirs, true, false, 39}, 0.4).percent, 78.0);
        QVERIFY(judge(mine, {&theirs, true, false, 39}, 0.4).isRivalEarlier);
        QCOMPARE(judge(mine, {&theirs, true, false, 41}, 0.4).percent, 80.0);
        // Nearly as stiff wins no gold.
        const double nearly = judge(scored(40.001, 1), {&theirs, true}, 0.4).percent;
        QCOMPARE(BestScores::medalFor(nearly), BestScores::Medal::SILVER);
        QCOMPARE(judge(scored(40 + 1e-12, 1), {&theirs, true}, 0.4).percent, 100.0);
        // A rival that does not hold loses.
        auto loose = theirs;
        loose.assessment.problems = {{Finding::ERROR, "design", "is loose", std::nullopt}};
        QCOMPARE(judge(mine, {&loose, true}, 0.4).state, Match::State::RIVAL_FAILED);
        QCOMPARE(judge(mine, {nullptr, false, true}, 0.4).state, Match::State::RIVAL_FAILED);
        // Greys have no verdict. A rounded sum is not over the budget; a cell too many is, also a
        // loose one.
        QCOMPARE(judge(scored(50, 0.5f), {&theirs, true}, 0.4).state, Match::State::GREY);
        QCOMPARE(cellsOver(Field(80, 50, 0.4f), 0.4), std::size_t{0});
        auto another = mine;
        another.design.at(5, 9) = 1;
        another.assessment.floating = {{}};
        QCOMPARE(cellsOver(another.design, 0.4), std::size_t{1});
        QCOMPARE(judge(another, {&theirs, true}, 0.4).state, Match::State::OVER_BUDGET);
        auto doubtful = theirs;
        doubtful.warnings = {{Finding::WARNING, "design", "is in pieces", std::nullopt}};
        QVERIFY(judge(mine, {&doubtful, true}, 0.4).isRivalDoubtful);
    }

private:
    static void drawTruss(LiveFixture& live) {
        QVERIFY(live.takeTool("I"));
        live.drag(live.at(1, 2), live.at(79, 25));
        live.drag(live.at(1, 48), live.at(79, 25));
    }

    /// From the supports of the small scene, or one of twice its size, to its right edge.
    static void drawBar(LiveFixture& live, double y) {
        QVERIFY(live.takeTool("I"));
        live.bench().setBrush({3, false});
        live.drag(live.at(0.5, y), live.at(live.scene().width - 0.5, y));
    }

    static void takeEntry(LiveFixture& live, const QString& words) {
        for (QAction* action : live.entries())
            if (action->text().contains(words)) return action->trigger();
        QFAIL(qPrintable("no entry " + words));
    }

    static void forgetScores() {
        QSettings settings;
        for (const QString& key : settings.allKeys())
            if (key.startsWith("best")) settings.remove(key);
    }

    static bool isDecided(LiveFixture& live) {
        const DrawingMode& mode = live.window.drawingMode();
        return mode.score() && mode.score()->design == *mode.design() &&
               mode.match().state == Match::State::DECIDED;
    }
    static bool wins(LiveFixture& live) {
        return QTest::qWaitFor([&] { return isDecided(live); }, 60000) &&
               BestScores::best(live.scene()) > 0;
    }
    static bool winsNothing(LiveFixture& live) {
        return QTest::qWaitFor([&] { return isDecided(live); }, 60000) &&
               live.window.plateStage().plateHeader().details().contains("Does not count") &&
               BestScores::best(live.scene()) == 0;
    }

    /// Of the drawing as it is now.
    static Assessment scoreOf(LiveFixture& live) {
        const auto isCurrent = [&] {
            const auto& score = live.window.drawingMode().score();
            return score && score->design == *live.window.drawingMode().design();
        };
        if (!QTest::qWaitFor(isCurrent, 60000)) return {};
        return live.window.drawingMode().score()->assessment;
    }

    QTemporaryDir directory;
};

QObject* makeDrawingTest() { return new DrawingTest; }
#include "drawing_test.moc"
