#include <QtTest>

#include "live_fixture.h"
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
        QVERIFY(QTest::qWaitFor([&] { return rival && rival->isSupported(); }, 60000));
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
        QCOMPARE(offer(1.2, first.revision + 1), 1.2);
    }

    void theOptimisersDesignCanBeTakenOver() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.reach(40));
        live.window.setDrawing(true);
        for (QAction* action : live.window.drawingMode().actions())
            if (action->text().contains("optimiser")) action->trigger();
        QVERIFY(live.scene().densities.has_value());
        QVERIFY(std::abs(materialOf(*live.scene().densities) - 40) < 2);
        QVERIFY(scoreOf(live).problems.empty());
        // The rival has the same volume, and is about as stiff.
        QVERIFY(QTest::qWaitFor([&] { return live.window.drawingMode().rivalScore().has_value(); },
                                60000));
    }

private:
    static void drawTruss(LiveFixture& live) {
        QVERIFY(live.takeTool("I"));
        live.drag(live.at(1, 2), live.at(79, 25));
        live.drag(live.at(1, 48), live.at(79, 25));
    }

    /// Of the drawing as it is now.
    static Assessment scoreOf(LiveFixture& live) {
        const auto isCurrent = [&] {
            const auto& score = live.window.drawingMode().score();
            return score && score->design == *live.scene().densities;
        };
        if (!QTest::qWaitFor(isCurrent, 60000)) return {};
        return live.window.drawingMode().score()->assessment;
    }

    QTemporaryDir directory;
};

QObject* makeDrawingTest() { return new DrawingTest; }
#include "drawing_test.moc"
