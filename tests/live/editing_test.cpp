#include <QtTest>
#include <cmath>

#include "live_fixture.h"

/// Hands on the plate, and what the design makes of it.
class EditingTest : public QObject {
    Q_OBJECT

private slots:
    void draggingALoadTakesTheMaterialAlong() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.reach(40));
        const double before = live.material(60, 79, 0, 9);
        live.drag(live.at(80, 25), live.at(80, 0));
        QCOMPARE(live.scene().loads[0].y, (Range{0, 0}));
        QVERIFY(live.runFor(60));
        const double after = live.material(60, 79, 0, 9);
        QVERIFY2(after > before + 0.2, qPrintable(QString("%1 after %2").arg(after).arg(before)));
    }

    void aLoadTurnsAndScalesByItsFreeEnd() {
        LiveFixture live("optimise-cantilever.json");
        const LoadArrow arrow = live.handle(0);
        QVERIFY(!arrow.tailAtNode);
        // It pushes at its node: from above by twice the length, then from the left.
        const QPoint foot = toQt(arrow.foot()).toPoint();
        const double twice = live.bench().forces().length(2, true);
        live.drag(toQt(arrow.freeEnd()).toPoint(), foot - QPoint(0, static_cast<int>(twice)));
        QCOMPARE(live.scene().loads[0].fx, 0.0);
        QVERIFY(std::abs(live.scene().loads[0].fy - 2) < 0.11);
        live.drag(foot - QPoint(0, static_cast<int>(twice)), foot - QPoint(60, 0));
        QVERIFY(live.scene().loads[0].fx > 0.5);
        QCOMPARE(live.scene().loads[0].fy, 0.0);
        live.bench().document.undoStack().undo();
        live.bench().document.undoStack().undo();
        QCOMPARE(live.scene().loads[0].fy, 1.0);
        QVERIFY(!live.bench().document.isModified());
    }

    void loadsComeAndGo() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.takeTool("L"));
        live.drag(live.at(40, 0), live.at(40, 0) - QPoint(0, 60));
        QCOMPARE(live.scene().loads.size(), std::size_t{2});
        QCOMPARE(live.scene().loads[1].x, (Range{40, 40}));
        QVERIFY(live.scene().loads[1].fy < -0.5);
        live.bench().deleteSelectedLoad();
        QCOMPARE(live.scene().loads.size(), std::size_t{1});
        // A plate without any load would be no scene.
        live.bench().select(0);
        live.bench().deleteSelectedLoad();
        QCOMPARE(live.scene().loads.size(), std::size_t{1});
    }

    void keptVoidEmptiesAndErasingLetsItFillAgain() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.reach(40));
        live.bench().setBrush({6, false});
        QVERIFY(live.material(4, 20, 0, 3) > 0.9);
        QVERIFY(live.takeTool("O"));
        live.drag(live.at(3, 2), live.at(22, 2));
        QVERIFY(live.runFor(10));
        QVERIFY(live.material(4, 20, 0, 3) < 0.05);
        QVERIFY(live.takeTool("E"));
        live.drag(live.at(3, 2), live.at(22, 2));
        QVERIFY(live.scene().passive.empty());
        QVERIFY(live.runFor(60));
        QVERIFY(live.material(4, 20, 0, 3) > 0.5);
    }

    void withoutSupportsTheBannerTellsAndUndoMends() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.reach(5));
        live.bench().setBrush({5, false});
        QVERIFY(live.takeTool("E"));
        live.drag(live.at(0, -1), live.at(0, 51));
        QVERIFY(live.scene().supports.empty());
        Banner& banner = live.window.plateStage().banner();
        QTRY_VERIFY_WITH_TIMEOUT(banner.text().contains("held") && !live.run().text().isEmpty(),
                                 60000);
        // The last good picture stays.
        QVERIFY(live.run().frame().numbers.iteration >= 5);
        live.bench().document.undoStack().undo();
        QVERIFY(live.runFor(2));
        QTRY_VERIFY(banner.text().isEmpty());
    }

    void aForceOnASupportIsMarked() {
        LiveFixture live("optimise-cantilever.json");
        live.drag(live.at(80, 25), live.at(0, 25));
        QVERIFY(live.window.plateStage().banner().text().contains("support"));
        live.key(Qt::Key_Right);
        QTRY_VERIFY_WITH_TIMEOUT(live.window.plateStage().banner().text().isEmpty(), 60000);
    }

    void theKeyboardDoesWhatThePointerDoes() {
        LiveFixture live("optimise-cantilever.json");
        live.key(Qt::Key_N);
        QCOMPARE(live.bench().selectedLoad(), std::optional<std::size_t>(0));
        live.key(Qt::Key_Up, Qt::ShiftModifier);
        live.key(Qt::Key_Left);
        QCOMPARE(live.scene().loads[0].y, (Range{20, 20}));
        QCOMPARE(live.scene().loads[0].x, (Range{79, 79}));
        live.key(Qt::Key_Right, Qt::AltModifier);
        QVERIFY(live.scene().loads[0].fx < 0);
        live.bench().setBrush({1, true});
        QVERIFY(live.takeTool("K"));
        live.key(Qt::Key_Left);
        live.key(Qt::Key_Return);
        for (int i = 0; i < 4; ++i) live.key(Qt::Key_Down);
        live.key(Qt::Key_Return);
        QCOMPARE(live.scene().passive.solids.cells.size(), std::size_t{5});
        // A gesture that is taken back leaves no trace.
        const int steps = live.bench().document.undoStack().count();
        live.key(Qt::Key_Return);
        for (int i = 0; i < 4; ++i) live.key(Qt::Key_Right);
        live.key(Qt::Key_Escape);
        QCOMPARE(live.scene().passive.solids.cells.size(), std::size_t{5});
        QCOMPARE(live.bench().document.undoStack().count(), steps);
    }

    void aFinerGridKeepsEverythingInItsPlace() {
        LiveFixture live("wheel.json");
        live.bench().editWhole("Grid", [](Scene& scene) { resizeGrid(scene, 160, 160); });
        QCOMPARE(live.scene().loads[0].x, (Range{80, 80}));
        QCOMPARE(live.scene().supports[0].x, (Range{74, 86}));
        const auto share = [&](const Area& area) {
            return static_cast<double>(area.cells.size()) / live.scene().width /
                   live.scene().height;
        };
        const double voids = share(live.scene().passive.voids);
        live.bench().document.undoStack().undo();
        QCOMPARE(share(live.scene().passive.voids), voids);
        QVERIFY(live.runFor(1));
        QCOMPARE(live.run().frame().material.width, 320);
    }
};

QObject* makeEditingTest() { return new EditingTest; }
#include "editing_test.moc"
