#include <QContextMenuEvent>
#include <QLineEdit>
#include <QSpinBox>
#include <QtTest>

#include "export/scene_file.h"
#include "format/scene_writer.h"
#include "live_fixture.h"
#include "reflection.h"

/// Loads, supports and areas as wholes, and plates of which one half is computed.
class DesignerTest : public QObject {
    Q_OBJECT

private slots:
    void piecesComeBackFromWhereTheyWent() {
        Scene scene = sceneWithPieces();
        // Over the rectangle of the same kind.
        paintPassive(scene, ringArea({5, 4, 0, 2}, scene), PassiveKind::VOID);
        const auto ids = piecesOf(scene);
        QCOMPARE(ids.size(), std::size_t{8});
        for (const PieceId& id : ids) {
            const Piece piece = pieceOf(scene, id);
            for (const bool isLeftRight : {false, true}) {
                const Piece other = mirrored(piece, isLeftRight, scene);
                QVERIFY(mirrored(other, isLeftRight, scene) == piece);
                QCOMPARE(other == piece, isItsOwnMirror(piece, isLeftRight, scene));
            }
            const Piece there = moved(piece, 3, -2, scene);
            const int right = extentOf(there).x.from - extentOf(piece).x.from;
            const int down = extentOf(there).y.from - extentOf(piece).y.from;
            QVERIFY(moved(there, -right, -down, scene) == piece);
            // As far as the plate goes.
            const Extent extent = extentOf(moved(piece, 1000, -1000, scene));
            const int isNode = id.type == PieceId::Type::AREA ? 0 : 1;
            QCOMPARE(extent.x.to, scene.width - 1 + isNode);
            QCOMPARE(extent.y.from, 0);
            if (id.type == PieceId::Type::LOAD) continue;
            Scene without = scene;
            takeOut(without, id);
            QCOMPARE(piecesOf(without).size(), ids.size() - 1);
            QVERIFY(pieceOf(without, putIn(without, piece)) == piece);
            QVERIFY(without.passive == scene.passive);
        }
    }

    void anAreaIsCarriedOverOthersAndCopied() {
        LiveFixture live(sceneWithPieces());
        const PassiveAreas before = live.scene().passive;
        // The rectangle of void, over the solid disc and back to where nothing is.
        live.press(live.at(3.5, 3.5));
        live.moveTo(live.at(18.5, 6.5));
        QVERIFY(live.scene().passive.solids != before.solids);
        live.moveTo(live.at(3.5, 9.5));
        live.release(live.at(3.5, 9.5));
        QVERIFY(live.scene().passive.solids == before.solids);
        QVERIFY(live.scene().passive.voids.cells.front() == (Cell{2, 8}));
        QCOMPARE(live.bench().document.undoStack().count(), 1);
        live.drag(live.at(18.5, 6.5), live.at(10.5, 6.5), Qt::AltModifier);
        QCOMPARE(live.scene().passive.solids.rings.size(), std::size_t{2});
        live.drag(live.at(24, 6), live.at(24, 10), Qt::AltModifier);
        QCOMPARE(live.scene().loads.size(), std::size_t{3});
        QCOMPARE(live.scene().loads[2].y, (Range{10, 10}));
        QCOMPARE(live.bench().document.undoStack().count(), 3);
        live.drag(live.at(0, 6), live.at(2, 6));
        QCOMPARE(live.scene().supports[0].x, (Range{2, 2}));
        for (int i = 0; i < 4; ++i) live.bench().document.undoStack().undo();
        QVERIFY(!live.bench().document.isModified());
        QVERIFY(live.scene().passive == before);
    }

    void theClipboardPastesUnderTheHand() {
        LiveFixture live(sceneWithPieces());
        live.press(live.at(3.5, 3.5));
        live.release(live.at(3.5, 3.5));
        QVERIFY(live.takeTool("Ctrl+C"));
        QTest::mouseMove(&live.view(), live.at(12.5, 9.5));
        QVERIFY(live.takeTool("Ctrl+V"));
        QVERIFY(areaAt(live.scene(), {11, 8}) && areaAt(live.scene(), {13, 10}));
        QVERIFY(!areaAt(live.scene(), {14, 10}) && areaAt(live.scene(), {2, 2}));
        QVERIFY(live.takeTool("Ctrl+X"));
        QVERIFY(!areaAt(live.scene(), {11, 8}));
        live.bench().select(1);
        QVERIFY(live.takeTool("Ctrl+M"));
        QCOMPARE(live.scene().loads[2].x, (Range{14, 14}));
        QCOMPARE(live.scene().loads[2].fx, -2.0);
        QVERIFY(live.takeTool("Ctrl+Alt+Shift+M"));
        QCOMPARE(live.scene().loads[2].y, (Range{12, 12}));
        QCOMPARE(live.bench().selectedLoad(), std::optional<std::size_t>(2));
    }

    void aDiscHasNumbersAndStaysADisc() {
        LiveFixture live(LiveFixture::smallScene());
        QVERIFY(live.takeTool("K"));
        QVERIFY(live.takeTool("C"));
        // A support is no disc; the next tool that paints discs does so again.
        QVERIFY(live.takeTool("S"));
        QVERIFY(!live.takeTool("C"));
        QVERIFY(live.takeTool("K"));
        live.drag(live.at(12, 6), live.at(15, 6));
        const Ring disc = {12, 6, 0, 3};
        QCOMPARE(live.scene().passive.solids.rings, std::vector<Ring>{disc});
        live.window.findChild<QDockWidget*>("areas")->raise();
        QApplication::processEvents();
        auto& radius = live.named<QDoubleSpinBox>("Radius");
        QTRY_VERIFY(radius.isVisible());
        QCOMPARE(radius.value(), 3.0);
        radius.setValue(4.5);
        live.named<QDoubleSpinBox>("Centre in x").setValue(11.5);
        const Area area = live.scene().passive.solids;
        QVERIFY(area == ringArea({11.5, 6, 0, 4.5}, live.scene()));
        QVERIFY(parseScene(sceneText(live.scene()), "disc.json").passive.solids == area);
        QVERIFY(live.takeTool("O"));
        QVERIFY(live.takeTool("R"));
        live.drag(live.at(18.5, 1.5), live.at(20.5, 4.5));
        QCOMPARE(live.scene().passive.voids.cells.size(), std::size_t{12});
        live.named<QSpinBox>("Number of columns").setValue(5);
        QCOMPARE(live.scene().passive.voids.cells.size(), std::size_t{20});
        QCOMPARE(live.bench().document.undoStack().count(), 5);
        live.bench().select(PieceId::support(0));
        live.named<QSpinBox>("Number of rows").setValue(5);
        live.named<QSpinBox>("First row").setValue(3);
        QVERIFY(live.scene().supports[0] == (Support{{0, 0}, {3, 7}, true, true}));
    }

    void aDiscStaysADiscAmongOthersOfItsKind() {
        Scene scene = LiveFixture::smallScene();
        const Ring small = {8, 6, 0, 2};
        const Ring large = {13, 6, 0, 3};
        const Area rectangle = rectangleArea({{17, 20}, {4, 7}}, scene);
        for (const Area& area : {ringArea(small, scene), ringArea(large, scene), rectangle})
            paintPassive(scene, area, PassiveKind::VOID);
        LiveFixture live(scene);
        // Across the others, step by step, and also beyond the edge of the plate.
        const Area before = scene.passive.voids;
        for (int x = 8; x < 24; x += 2) {
            live.drag(live.at(x, 6.5), live.at(x + 2, 6.5));
            const Ring there = {x + 2.0, 6, 0, 2};
            QCOMPARE(live.scene().passive.voids.rings, (std::vector<Ring>{there, large}));
            QVERIFY(live.bench().selection() == PieceId::area(PassiveKind::VOID, there));
            const Scene read = parseScene(sceneText(live.scene()), "discs.json");
            QVERIFY(read.passive == live.scene().passive);
        }
        live.bench().deleteSelected();
        QVERIFY(piecesOf(live.scene()).size() == piecesOf(scene).size() - 1);
        // A rubber leaves the discs that it does not touch.
        live.bench().edit("Erase", [](Scene& edited) {
            paintPassive(edited, {{{19, 5}}, {}}, std::nullopt);
        });
        QCOMPARE(live.scene().passive.voids.rings, std::vector<Ring>{large});
        QCOMPARE(looseCells(live.scene().passive.voids, 24, 12).size(), std::size_t{15});
        while (live.bench().document.undoStack().canUndo())
            live.bench().document.undoStack().undo();
        QVERIFY(live.scene().passive.voids == before);
    }

    void aHoleInADiscLeavesARing() {
        LiveFixture live(LiveFixture::smallScene());
        const auto put = [&](PassiveKind kind, const Ring& ring) {
            live.bench().putIn("Disc", KeptArea{kind, ringArea(ring, live.scene())});
        };
        const auto passive = [&]() -> const PassiveAreas& { return live.scene().passive; };
        put(PassiveKind::SOLID, {12, 6, 0, 5});
        put(PassiveKind::VOID, {12, 6, 0, 2});
        QCOMPARE(passive().solids.rings, (std::vector<Ring>{{12, 6, 2, 5}}));
        put(PassiveKind::SECOND_SOLID, {12, 6, 3, 4});
        QCOMPARE(passive().solids.rings, (std::vector<Ring>{{12, 6, 2, 3}, {12, 6, 4, 5}}));
        const PassiveAreas before = live.scene().passive;
        // A hole beside the centre takes its elements, and stays a disc.
        live.bench().select(PieceId::area(PassiveKind::VOID, {12, 6, 0, 2}));
        live.key(Qt::Key_Right);
        QCOMPARE(passive().voids.rings, (std::vector<Ring>{{13, 6, 0, 2}}));
        QCOMPARE(passive().solids.rings, (std::vector<Ring>{{12, 6, 4, 5}}));
        QVERIFY(parseScene(sceneText(live.scene()), "hole.json").passive == passive());
        live.bench().document.undoStack().undo();
        QVERIFY(passive() == before);
    }

    void severalPiecesAreEditedInOneStep() {
        LiveFixture live(sceneWithPieces());
        const PassiveAreas before = live.scene().passive;
        QUndoStack& history = live.bench().document.undoStack();
        // A frame around the rectangle and the second load; clicks add the disc and a support.
        live.drag(live.at(1.2, 5.6), live.at(12, -0.6), Qt::ControlModifier);
        live.drag(live.at(18.5, 6.5), live.at(18.5, 6.5), Qt::ControlModifier);
        for (int i = 0; i < 3; ++i) live.drag(live.at(0, 6), live.at(0, 6), Qt::ControlModifier);
        QCOMPARE(live.bench().selectedPieces().size(), std::size_t{4});
        QVERIFY(!live.bench().selection());
        live.drag(live.at(3.5, 3.5), live.at(4.5, 2.5));
        // As far as the upright support and the load at the upper edge allow.
        QCOMPARE(live.scene().loads[1].x, (Range{11, 11}));
        QCOMPARE(live.scene().supports[0].x, (Range{1, 1}));
        QCOMPARE(live.scene().passive.solids.rings, (std::vector<Ring>{{19, 6, 0, 2.5}}));
        QCOMPARE(live.scene().passive.voids.cells.front(), (Cell{3, 2}));
        live.key(Qt::Key_Right);
        QCOMPARE(live.bench().selectedPieces().size(), std::size_t{4});
        live.drag(live.at(4.5, 3.5), live.at(2.5, 3.5), Qt::AltModifier);
        QCOMPARE(live.scene().loads.size(), std::size_t{3});
        QCOMPARE(piecesOf(live.scene()).size(), std::size_t{10});
        QVERIFY(live.takeTool("Ctrl+Alt+M"));
        QVERIFY(live.takeTool("Ctrl+C"));
        QVERIFY(live.takeTool("Ctrl+V"));
        QCOMPARE(live.scene().loads.size(), std::size_t{4});
        live.bench().deleteSelected();
        QCOMPARE(live.scene().loads.size(), std::size_t{3});
        QVERIFY(live.bench().selectedPieces().empty());
        while (history.canUndo()) history.undo();
        QVERIFY(live.scene().passive == before && live.scene().loads.size() == 2);
        QCOMPARE(history.count(), 6);
        // One of several that is clicked is selected alone. Not all loads can go.
        for (const std::size_t load : {0, 1}) live.bench().toggle(PieceId::load(load));
        live.bench().deleteSelected();
        QCOMPARE(live.scene().loads.size(), std::size_t{2});
        live.drag(live.at(24, 6), live.at(24, 6));
        QCOMPARE(live.bench().selectedLoad(), std::optional<std::size_t>(0));
    }

    void aForceHasAMagnitudeAndAnAngle() {
        LiveFixture live(LiveFixture::smallScene());
        live.bench().select(0);
        auto& angle =
            live.named<QDoubleSpinBox>("Angle of the force, from the right, counterclockwise");
        QCOMPARE(angle.value(), -90.0);
        live.named<QDoubleSpinBox>("Magnitude of the force").setValue(10);
        angle.setValue(30);
        QVERIFY(std::abs(live.scene().loads[0].fx - 10 * std::sqrt(0.75)) < 1e-6);
        QVERIFY(std::abs(live.scene().loads[0].fy + 5) < 1e-6);
        live.named<QDoubleSpinBox>("Magnitude of the force").setValue(500);
        QVERIFY(sceneText(live.scene()).find("\"fx\": 433.0127,") != std::string::npos);
        live.named<QDoubleSpinBox>("Force in y, downwards").setValue(0);
        QCOMPARE(angle.value(), 0.0);
    }

    void theRightButtonOpensTheMenuOfWhatLiesThere() {
        LiveFixture live(sceneWithPieces());
        QMenu& ofSupport = menuAt(live, live.at(0, 6));
        trigger(ofSupport, "Held in x");
        QVERIFY(live.scene().supports[0].fixX && !live.scene().supports[0].fixY);
        trigger(menuAt(live, live.at(18.5, 6.5)), "Keep void");
        QVERIFY(live.scene().passive.solids.empty());
        trigger(menuAt(live, live.at(24, 6)), "Pull up");
        QCOMPARE(live.scene().loads[0].fy, -1.0);
        trigger(menuAt(live, live.at(10, 2)), "Add load here");
        QCOMPARE(live.scene().loads.back().x, (Range{10, 10}));
        // While a design is drawn, the button rubs out.
        live.window.setDrawing(true);
        QContextMenuEvent asking(QContextMenuEvent::Mouse, live.at(5, 5),
                                 live.view().mapToGlobal(live.at(5, 5)));
        QApplication::sendEvent(&live.view(), &asking);
        QVERIFY(QApplication::activePopupWidget() == nullptr);
    }

    void ofASymmetricPlateTheWholeIsShown() {
        LiveFixture live("half-beam.json");
        QVERIFY(live.reach(30));
        live.run().setPlaying(false);
        const QRectF whole = wholeRect(live.scene(), live.view().transform());
        QVERIFY(QRectF(live.view().rect()).contains(whole));
        QCOMPARE(whole.width(), 2 * live.view().transform().scale * live.scene().width);
        const QImage shown = live.view().grab().toImage();
        const auto darkness = [&](double x, double y) {
            return 255 - qGray(shown.pixel(live.view().transform().toWidget(x, y).toPoint()));
        };
        // Material has its faint image at the other side of the plane, void has none.
        int material = 0;
        for (double x = 4.5; x < live.scene().width - 4; x += 5)
            for (double y = 4.5; y < live.scene().height - 4; y += 5) {
                const bool isMaterial = darkness(x, y) > 150;
                material += isMaterial ? 1 : 0;
                if (isMaterial || darkness(x, y) < 20) QCOMPARE(darkness(-x, y) > 40, isMaterial);
            }
        QVERIFY(material > 5);
        // Without its plane, the half is a plate of its own, which nothing holds there.
        const auto supports = live.scene().supports.size();
        auto& plane = live.named<QComboBox>("Plane of symmetry");
        QCOMPARE(plane.currentIndex(), 1);
        plane.setCurrentIndex(0);
        emit plane.activated(0);
        QCOMPARE(live.scene().supports.size(), supports - 1);
        QCOMPARE(wholePlateOf(live.scene()).size.width(), 1.0 * live.scene().width);
        emit plane.activated(1);
        QVERIFY(standsForPlane(live.scene().supports.back(), live.scene()));
        live.run().setPlaying(true);
        QVERIFY(live.runFor(2));
    }

    void theReflectedHalfIsPaintedAndErasedToo() {
        Scene scene = LiveFixture::smallScene();
        scene.symmetry = Symmetry::LEFT;
        scene.loads.push_back({{10, 10}, {6, 6}, 0, 1, 0});
        paintPassive(scene, rectangleArea({{9, 11}, {5, 7}}, scene), PassiveKind::SOLID);
        LiveFixture live(scene);
        QVERIFY(live.takeTool("Y"));
        live.drag(live.at(-10, 6), live.at(-10, 7));
        QVERIFY(live.scene().supports.back() == (Support{{10, 10}, {6, 7}, false, true}));
        live.bench().setBrush({5, false});
        QVERIFY(live.takeTool("E"));
        live.drag(live.at(-10, 6), live.at(-10, 7));
        QCOMPARE(live.scene().loads.size(), std::size_t{1});
        QCOMPARE(live.scene().supports.size(), std::size_t{1});
        QVERIFY(live.scene().passive.empty());
    }

    void theStripMarksTheChangesOfATimeline() {
        LiveFixture live("moving-load.json");
        const TimelineStrip& strip = live.window.plateStage().timeline();
        const auto& timeline = live.bench().document.whole()->timeline;
        QVERIFY(strip.isVisible() && timeline.size() > 1);
        for (std::size_t i = 0; i < timeline.size(); ++i)
            QVERIFY(strip.textAt(strip.markOf(i))
                        .contains(QString("Iteration %1: ").arg(timeline[i].iteration)));
        QVERIFY(strip.textAt({0, 0}).isEmpty());
        live.window.setDrawing(true);
        QVERIFY(!strip.isVisible());
    }

    void aPointIsADecimalPointInGerman() {
        LiveFixture live(LiveFixture::smallScene());
        auto& volume = live.named<QDoubleSpinBox>("Volume of material in percent");
        volume.setLocale(QLocale(QLocale::German));
        for (const char* typed : {"39.5", "39,5"}) {
            volume.setValue(50);
            volume.selectAll();
            QTest::keyClicks(&volume, typed);
            QTest::keyClick(&volume, Qt::Key_Return);
            QCOMPARE(volume.value(), 39.5);
            QCOMPARE(volume.text(), QString("39,5 %"));
        }
    }

    void theLayoutComesBack() {
        LiveFixture live(LiveFixture::smallScene());
        QApplication::processEvents();
        for (QDockWidget* dock : live.window.findChildren<QDockWidget*>()) dock->setVisible(false);
        for (QAction* action : live.entries())
            if (action->text() == "&Reset layout") action->trigger();
        // Without variants, their strip stays hidden.
        for (QDockWidget* dock : live.window.findChildren<QDockWidget*>())
            QVERIFY2(dock->isHidden() == (dock->objectName() == "variants"),
                     qPrintable(dock->windowTitle()));
    }

private:
    /// A load on one node and one on several, two supports, and areas of three forms.
    static Scene sceneWithPieces() {
        Scene scene = LiveFixture::smallScene();
        scene.loads.push_back({{10, 10}, {0, 0}, 2, 1, 0});
        scene.supports.push_back({{0, 4}, {12, 12}, false, true});
        paintPassive(scene, rectangleArea({{2, 4}, {2, 4}}, scene), PassiveKind::VOID);
        paintPassive(scene, ringArea({18, 6, 0, 2.5}, scene), PassiveKind::SOLID);
        paintPassive(scene, {{{8, 8}, {8, 9}, {9, 9}}, {}}, PassiveKind::SECOND_SOLID);
        return scene;
    }

    static bool isItsOwnMirror(const Piece& piece, bool isLeftRight, const Scene& scene) {
        const auto* load = std::get_if<Load>(&piece);
        if (load != nullptr && (isLeftRight ? load->fx : load->fy) != 0) return false;
        const int isNode = std::holds_alternative<KeptArea>(piece) ? 0 : 1;
        const Extent extent = extentOf(piece);
        const Range& across = isLeftRight ? extent.x : extent.y;
        return across.from + across.to == (isLeftRight ? scene.width : scene.height) - 1 + isNode;
    }

    static QMenu& menuAt(LiveFixture& live, QPoint place) {
        QContextMenuEvent asking(QContextMenuEvent::Mouse, place, live.view().mapToGlobal(place));
        QApplication::sendEvent(&live.view(), &asking);
        return dynamic_cast<QMenu&>(*QApplication::activePopupWidget());
    }

    static void trigger(QMenu& menu, const QString& text) {
        for (QAction* action : menu.actions())
            if (action->text().remove('&') == text) action->trigger();
        menu.close();
    }
};

QObject* makeDesignerTest() { return new DesignerTest; }
#include "designer_test.moc"
