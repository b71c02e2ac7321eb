#include "drawing_mode.h"

#include "action_text.h"
#include "floating_parts.h"
#include "plate_image.h"

namespace {

// Void carries a load as well, but yields a billion times as much as material.
constexpr double HANGING = 1e-4;

}  // namespace

DrawingMode::DrawingMode(Workbench& workbench, LiveRun& liveRun, const Stage& shown)
    : bench(workbench),
      run(liveRun),
      stage(shown),
      startEmpty(new QAction(tr("Start with an &empty plate"), this)),
      startFromDesign(new QAction(tr("Start with the &optimiser's design"), this)) {
    explain(*startEmpty, tr("Rub out the whole drawing"));
    explain(*startFromDesign, tr("Take over the optimiser's design, and make it better"));
    connect(startEmpty, &QAction::triggered, this, [this] {
        bench.edit(tr("Start with an empty plate"),
                   [](Scene& scene) { scene.densities = Field(scene.width, scene.height); });
    });
    connect(startFromDesign, &QAction::triggered, this, [this] {
        const Field design = designAsDrawn(run.frame());
        bench.edit(tr("Start with the optimiser's design"), [&](Scene& scene) {
            if (design.width == scene.width && design.height == scene.height)
                scene.densities = design;
        });
    });
    for (QAction* action : actions()) action->setEnabled(false);
    connect(&bench.document, &Document::sceneChanged, this, &DrawingMode::followScene);
    connect(&run, &LiveRun::drawingScored, this, &DrawingMode::takeScore);
    connect(&run, &LiveRun::designScored, this, &DrawingMode::takeRival);
}

void DrawingMode::setActive(bool isToBe) {
    if (active == isToBe) return;
    active = isToBe;
    for (QAction* action : actions()) action->setEnabled(active);
    drawingScore.reset();
    designScore.reset();
    run.setDrawing(active);
    if (active) {
        run.setPlaying(true);
        followScene();
    }
}

void DrawingMode::followScene() {
    if (!active) return;
    const Scene& scene = bench.document.scene();
    drawing = std::make_shared<const Field>(scene.densities ? *scene.densities
                                                            : Field(scene.width, scene.height));
    floatingCells = floatingParts(*drawing, scene);
    auto scored = std::make_shared<Field>(*drawing);
    for (const Cell& cell : floatingCells) scored->at(cell.x, cell.y) = 0;
    if (materialOf(*scored) > 0) {
        run.scoreDrawing(std::move(scored));
    } else {
        drawingScore.reset();
        stage.drawingHeader.showNone(tr("Draw a structure that joins the loads to the supports."));
    }
    stage.rival.setScene(bench.document.snapshot());
    stage.rival.setForces(bench.forces());
    showDrawing();
}

void DrawingMode::takeScore(const ScoreResult& result) {
    // One of a grid that is no more.
    if (!active || result.design.width != drawing->width) return;
    drawingScore = result;
    stage.drawingHeader.show(result, noteOnDrawing());
    showDrawing();
}

void DrawingMode::takeRival(const ScoreResult& result) {
    if (!active || result.design.width != bench.document.scene().width) return;
    designScore = result;
    stage.rivalHeader.show(result, {});
    if (drawingScore) stage.drawingHeader.show(*drawingScore, noteOnDrawing());
    showRival();
}

QString DrawingMode::noteOnDrawing() const {
    QStringList notes;
    if (drawingScore && drawingScore->score.supported && designScore &&
        designScore->score.supported) {
        const double ratio = designScore->score.compliance / drawingScore->score.compliance;
        if (ratio < HANGING)
            notes << tr("A load hangs in the air: draw material up to its foot");
        else
            notes << (ratio >= 1
                          ? tr("Stiffer than the optimiser's: %1 %").arg(100 * ratio, 0, 'f', 0)
                          : tr("%1 % as stiff as the optimiser's").arg(100 * ratio, 0, 'f', 0));
    }
    if (!floatingCells.empty())
        notes << tr("%n floating element(s) left out", nullptr,
                    static_cast<int>(floatingCells.size()));
    return notes.join("  ·  ");
}

void DrawingMode::show() {
    if (!active) return;
    showDrawing();
    showRival();
}

void DrawingMode::showDrawing() {
    const bool hasEnergies = drawingScore && drawingScore->score.supported &&
                             drawingScore->design.width == drawing->width &&
                             drawingScore->design.height == drawing->height;
    stage.drawing.setMaterial(
        drawingImage(*drawing, hasEnergies ? &drawingScore->score.energies : nullptr, floatingCells,
                     stage.drawing.colours()),
        false);
}

void DrawingMode::showRival() {
    if (!designScore) {
        stage.rival.setMaterial({}, false);
        return;
    }
    stage.rival.setMaterial(
        drawingImage(designScore->design,
                     designScore->score.supported ? &designScore->score.energies : nullptr, {},
                     stage.rival.colours()),
        false);
}
