#include <QWheelEvent>
#include <QtTest>
#include <cmath>

#include "export/scene_file.h"
#include "format/resize.h"
#include "format/scene_writer.h"
#include "live_fixture.h"

/// Hands on the plate, and what the design makes of it.
class EditingTest : public QObject {
    Q_OBJECT

private slots:
    void draggingALoadTakesTheMaterialAlong() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.reach(40));
        const double before = live.material(60, 79, 0, 9);
        QString told;
        connect(&live.view(), &PlateView::handMoved, this,
                [&](const QString& said) { told = said; });
        live.drag(live.at(80, 25), live.at(80, 4));
        QVERIFY2(told.contains("y 4"), qPrintable(told));
        // Under a hand that does not move.
        live.bench().document.undoStack().undo();
        QVERIFY2(!told.contains("y 4"), qPrintable(told));
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
        // It pushes at its node. Whatever the unit of the force, a turn keeps the magnitude.
        const QPoint foot = toQt(arrow.foot()).toPoint();
        const QPoint above = toQt(arrow.freeEnd()).toPoint();
        live.bench().edit("Force", [](Scene& scene) { scene.loads[0].fy = 500; });
        QCOMPARE(toQt(live.handle(0).freeEnd()).toPoint(), above);
        live.drag(above, above + QPoint(20, 3), Qt::ShiftModifier);
        const auto force = [&] {
            return std::hypot(live.scene().loads[0].fx, live.scene().loads[0].fy);
        };
        QVERIFY(live.scene().loads[0].fx < -100);
        QVERIFY2(std::abs(force() - 500) < 1e-3, qPrintable(QString::number(force())));
        live.drag(toQt(live.handle(0).freeEnd()).toPoint(), foot - QPoint(44, 0));
        QCOMPARE(live.scene().loads[0].fx, 500.0);
        QCOMPARE(live.scene().loads[0].fy, 0.0);
        // Three times as long, less what counts as a turn; then it has its ordinary length again.
        live.drag(foot - QPoint(44, 0), foot - QPoint(132, 0));
        QCOMPARE(live.scene().loads[0].fx, 1200.0);
        QCOMPARE(live.handle(0).length, arrow.length);
        for (int i = 0; i < 4; ++i) live.bench().document.undoStack().undo();
        QCOMPARE(live.scene().loads[0].fy, 1.0);
        QVERIFY(!live.bench().document.isModified());
    }

    void whatIsDraggedOutOfSightStaysInReach() {
        LiveFixture live("optimise-cantilever.json");
        live.drag(live.at(80, 25), live.at(80, 0));
        const QPoint freeEnd = toQt(live.handle(0).freeEnd()).toPoint();
        live.drag(freeEnd, freeEnd - QPoint(0, 5000));
        QVERIFY(live.view().rect().contains(toQt(live.handle(0).freeEnd()).toPoint()));
    }

    void loadsComeAndGo() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.takeTool("L"));
        live.bench().edit("Force", [](Scene& scene) { scene.loads[0].fy = 30; });
        live.drag(live.at(40, 0), live.at(40, 0) - QPoint(0, 50));
        QCOMPARE(live.scene().loads.size(), std::size_t{2});
        QCOMPARE(live.scene().loads[1].x, (Range{40, 40}));
        QCOMPARE(live.scene().loads[1].fy, -30.0);  // as large as its neighbour
        live.bench().deleteSelected();
        QCOMPARE(live.scene().loads.size(), std::size_t{1});
        // A plate without any load would be no scene.
        live.bench().select(0);
        live.bench().deleteSelected();
        QCOMPARE(live.scene().loads.size(), std::size_t{1});
    }

    void keptVoidEmptiesAndErasingLetsItFillAgain() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.reach(40));
        live.bench().setBrush({5, false});
        QVERIFY(live.material(4, 20, 0, 3) > 0.9);
        // From the middle of an element, so that no rounding of pixels adds a row.
        QVERIFY(live.takeTool("O"));
        live.drag(live.at(3.5, 1.5), live.at(22.5, 1.5));
        QVERIFY(live.runFor(10));
        QVERIFY(live.material(4, 20, 0, 3) < 0.05);
        QVERIFY(live.takeTool("E"));
        live.drag(live.at(3.5, 1.5), live.at(22.5, 1.5));
        QVERIFY(live.scene().passive.empty());
        QVERIFY(live.runFor(60));
        QVERIFY(live.material(4, 20, 0, 3) > 0.5);
    }

    void aStrokeIsWhatLiesOnThePlate() {
        const Brush brush = {3, false};
        QCOMPARE(strokeCells(brush, {-1e6, 5.5}, {1e6, 5.5}, 40, 20),
                 strokeCells(brush, {0.5, 5.5}, {39.5, 5.5}, 40, 20));
        QCOMPARE(strokeCells(brush, {0.5, 5.5}, {39.5, 5.5}, 40, 20).size(), std::size_t{120});
        QVERIFY(strokeCells(brush, {-1e6, 60}, {1e6, 60}, 40, 20).empty());
    }

    void withoutSupportsTheBannerTellsAndUndoMends() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.reach(5));
        live.bench().setBrush({5, false});
        QVERIFY(live.takeTool("E"));
        live.drag(live.at(0, -1), live.at(0, 51));
        QVERIFY(live.scene().supports.empty());
        Banner& banner = live.window.plateStage().banner();
        QTRY_VERIFY_WITH_TIMEOUT(
            banner.text().contains("held") && !live.run().refusal().text.empty(), 60000);
        // The last good picture stays.
        QVERIFY(live.run().frame().numbers.iteration >= 5);
        live.bench().document.undoStack().undo();
        QVERIFY(live.runFor(2));
        QTRY_VERIFY(banner.text().isEmpty());
    }

    void aSceneThatCouldNotRunGoesOnWhenItIsMended() {
        Scene onRollers = LiveFixture::smallScene();
        onRollers.supports = {{{0, 0}, {0, 12}, false, true}};
        LiveFixture live(onRollers);
        QTRY_VERIFY_WITH_TIMEOUT(!live.run().refusal().text.empty(), 60000);
        QVERIFY(live.takeTool("X"));
        live.drag(live.at(0, 0), live.at(0, 12));
        // The second roller adds its direction.
        QCOMPARE(live.scene().supports, (std::vector<Support>{{{0, 0}, {0, 12}, true, true}}));
        QVERIFY(live.runFor(3));
        QVERIFY(live.run().refusal().text.empty());
        // A design with too little material tears, and starts afresh with more.
        live.bench().edit("Less", [](Scene& scene) { scene.volumeFraction = 0.001; });
        live.runFor(60);
        live.bench().edit("More", [](Scene& scene) { scene.volumeFraction = 0.5; });
        QVERIFY(live.settle());
        QVERIFY(live.run().frame().numbers.compliance < 1e4);
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
        // One that another tool ends stays.
        live.key(Qt::Key_Return);
        live.key(Qt::Key_Right);
        QVERIFY(live.takeTool("E"));
        QCOMPARE(live.scene().passive.solids.cells.size(), std::size_t{7});
        QCOMPARE(live.bench().document.undoStack().count(), steps + 1);
    }

    void theViewFollowsZoomsAndMovesByKeyboard() {
        LiveFixture live("optimise-cantilever.json");
        const double fitted = live.view().transform().scale;
        for (int i = 0; i < 6; ++i) live.key(Qt::Key_Plus);
        QVERIFY(live.view().transform().scale > 3 * fitted);
        // The hand walks to the corner of the plate, and stays in sight.
        QVERIFY(live.takeTool("K"));
        live.bench().setBrush({1, true});
        for (int i = 0; i < 20; ++i) live.key(Qt::Key_Left, Qt::ShiftModifier);
        for (int i = 0; i < 20; ++i) live.key(Qt::Key_Up, Qt::ShiftModifier);
        QVERIFY(live.view().rect().contains(live.at(0.25, 0.25)));
        live.key(Qt::Key_Return);
        live.key(Qt::Key_Return);
        QCOMPARE(live.scene().passive.solids.cells, (Cells{{0, 0}}));
        const QPoint before = live.at(0, 0);
        live.key(Qt::Key_Left, Qt::ControlModifier);
        QVERIFY(live.at(0, 0).x() > before.x());
        // The wheel keeps what is under the pointer.
        const QPoint pointer(300, 200);
        const QPointF under = live.view().transform().toPlate(pointer);
        QWheelEvent wheel(pointer, live.view().mapToGlobal(pointer), {}, {0, -240}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&live.view(), &wheel);
        const QPointF after = live.view().transform().toPlate(pointer);
        QVERIFY(std::abs(after.x() - under.x()) < 1e-6 && std::abs(after.y() - under.y()) < 1e-6);
    }

    void arrowsOfSeveralCasesAtOneNodeAreTakenOneByOne() {
        Scene scene = LiveFixture::smallScene();
        scene.loadCases.resize(3);
        scene.loadCasesInUse = {0, 1, 2};
        for (int loadCase : {1, 2}) {
            scene.loads.push_back(scene.loads[0]);
            scene.loads.back().loadCase = loadCase;
        }
        LiveFixture live(scene);
        for (const std::size_t load : {0, 1, 2}) {
            const LoadArrow arrow = live.handle(load);
            const QPoint middle = toQt(0.5 * (arrow.tail + arrow.tip())).toPoint();
            // Of the colour that its case has in the program's pictures.
            const QPoint head = toQt(arrow.tip() + -8 * arrow.direction).toPoint();
            const QColor found = live.view().grab().toImage().pixelColor(head);
            QCOMPARE(found.rgb(), toQt(loadCaseColour(static_cast<int>(load))).rgb());
            live.press(middle);
            live.release(middle);
            QCOMPARE(live.bench().selectedLoad(), std::optional<std::size_t>(load));
            live.bench().select(std::nullopt);
        }
    }

    void anEditWhileATimelineIsPlayedIsKeptWhereItWasMade() {
        Scene scene = LiveFixture::smallScene();
        Change change;
        change.iteration = 3;
        change.keys = {"loads"};
        change.settings.loads = {{{24, 24}, {0, 0}, 0, 1, 0}};
        scene.timeline = {change};
        LiveFixture live(scene);
        QVERIFY(live.reach(4));
        QCOMPARE(live.scene().loads[0].y, (Range{0, 0}));
        live.drag(live.at(24, 0), live.at(24, 12));
        QCOMPARE(live.scene().loads[0].y, (Range{12, 12}));
        const Scene& whole = *live.bench().document.whole();
        QCOMPARE(whole.loads[0].y, (Range{6, 6}));
        QCOMPARE(whole.timeline[0].settings.loads[0].y, (Range{12, 12}));
        live.bench().edit("Volume", [](Scene& seen) { seen.volumeFraction = 0.3; });
        QCOMPARE(live.bench().document.whole()->volumeFraction, 0.3);
        live.run().startAfresh();
        QCOMPARE(live.scene().loads[0].y, (Range{6, 6}));
        QVERIFY(live.reach(4));
        QCOMPARE(live.scene().loads[0].y, (Range{12, 12}));
    }

    void anEditBeyondALimitIsRefusedWithItsReason() {
        LiveFixture live("minimal.json");
        const auto before = live.bench().document.whole();
        QString reason;
        connect(&live.bench(), &Workbench::refused, this,
                [&](const QString& text) { reason = text; });
        const auto refuses = [&](const char* text, const std::function<void(Scene&)>& change) {
            QVERIFY2(!live.bench().editWhole("Edit", change), text);
            QVERIFY2(reason.contains(text), qPrintable(reason));
            QVERIFY(live.bench().document.whole() == before);
        };
        const Cells many(32768, Cell{1, 1});
        refuses("The title is longer", [](Scene& scene) { scene.title = std::string(201, 't'); });
        refuses("Loads: 5010005 nodes", [](Scene& scene) {
            scene.loads.assign(5, {{0, 1000}, {0, 1000}, 0, 1, 0});
        });
        refuses("Blob: 32768 elements", [&](Scene& scene) { scene.blob.cells = many; });
        refuses("From iteration 2 on, too many elements are kept solid: 32768", [&](Scene& scene) {
            scene.timeline.push_back({2, {}, {"passive"}, std::nullopt});
            scene.timeline.back().settings.passive.solids.cells = many;
        });
    }

    void aFinerGridKeepsEverythingInItsPlace() {
        LiveFixture live("wheel.json");
        const PassiveAreas before = live.scene().passive;
        live.bench().editWhole("Grid", [](Scene& scene) { resizeGrid(scene, 160, 160); });
        QCOMPARE(live.scene().loads[0].x, (Range{80, 80}));
        QCOMPARE(live.scene().supports[0].x, (Range{74, 86}));
        QCOMPARE(live.scene().passive.secondSolids.rings, (std::vector<Ring>{{80, 80, 0, 18}}));
        QCOMPARE(live.scene().elementSize, 0.5);
        // A scene whose areas overlap, or whose rings have no elements, could not be opened.
        const Scene read = parseScene(sceneText(live.scene()), "finer.json");
        QVERIFY(read.passive == live.scene().passive);
        live.bench().document.undoStack().undo();
        QVERIFY(live.scene().passive == before);
        // Around a hole that was cut into a solid, nothing is free on the finer grid either.
        live.bench().edit("Hole", [](Scene& scene) {
            scene.passive = {};
            paintPassive(scene, rectangleArea({{10, 40}, {10, 40}}, scene), PassiveKind::SOLID);
            paintPassive(scene, ringArea({25, 25, 0, 6.5}, scene), PassiveKind::VOID);
            resizeGrid(scene, 240, 240);
        });
        const PassiveAreas& finer = live.scene().passive;
        QVERIFY(finer.voids == ringArea({75, 75, 0, 19.5}, live.scene()));
        QCOMPARE(finer.voids.cells.size() + finer.solids.cells.size(), std::size_t{93} * 93);
        live.bench().document.undoStack().undo();
        // On a plate of another shape, discs keep their radii, and nothing of the old disc remains.
        live.bench().editWhole("Grid", [](Scene& scene) { resizeGrid(scene, 160, 80); });
        const Area& disc = live.scene().passive.secondSolids;
        QCOMPARE(disc.rings, (std::vector<Ring>{{80, 40, 0, 9}}));
        QCOMPARE(disc.cells, ringArea({80, 40, 0, 9}, live.scene()).cells);
        QCOMPARE(live.scene().elementSize, 1.0);
        live.bench().document.undoStack().undo();
        QVERIFY(live.runFor(1));
        QCOMPARE(live.run().frame().material.width, 320);
    }
};

QObject* makeEditingTest() { return new EditingTest; }
#include "editing_test.moc"
