#include "drawing_mode.h"

#include <algorithm>
#include <cmath>

#include "action_text.h"
#include "checks/assessment.h"
#include "format/refinement.h"
#include "plate_image.h"

using namespace voxam;

namespace {

/// Around all parts, in plate coordinates.
QPainterPath outlineOf(const std::vector<FloatingPart>& parts, const Field& design,
                       const Scene& scene) {
    Cells cells;
    for (const FloatingPart& part : parts)
        cells.insert(cells.end(), part.cells.begin(), part.cells.end());
    const double size = 1.0 / refinementOf(design, scene);
    return QTransform::fromScale(size, size).map(outlinePath(cells, design.width, design.height));
}

/// What carries: the design without what hangs on nothing.
Field carrying(const ScoreResult& result) {
    return without(result.design, result.assessment.floating);
}

void append(Field& stack, const Field& field) {
    stack.width = field.width;
    stack.height += field.height;
    stack.values.insert(stack.values.end(), field.values.begin(), field.values.end());
}

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
        const Frame& frame = run.frame();
        bench.edit(tr("Start with the optimiser's design"), [&](Scene& scene) {
            if (designScore && isOfThisGrid(*designScore))
                scene.densities = designScore->design;
            else if (frame.material.width == scene.width * frame.refinement &&
                     frame.material.height == scene.height * frame.refinement)
                scene.densities = drawnDesign(frame.material, scene, 1).design;
        });
    });
    for (QAction* action : actions()) action->setEnabled(false);
    connect(&bench.document, &Document::sceneChanged, this, &DrawingMode::followScene);
    connect(&run, &LiveRun::drawingScored, this, &DrawingMode::takeScore);
    connect(&run, &LiveRun::designScored, this, &DrawingMode::takeRival);
    connect(&run, &LiveRun::refusalChanged, this, [this](const LibraryText& refusal) {
        if (!active || refusal.text.empty()) return;
        designScore.reset();
        stage.rivalHeader.showNone(
            tr("The optimiser cannot go on: %1").arg(QString::fromStdString(refusal.text)));
        show();
    });
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
    run.scoreDrawing(drawing);
    stage.rival.setScene(bench.document.snapshot());
    show();
}

void DrawingMode::takeScore(const ScoreResult& result) {
    // One of a grid that is no more.
    if (!active || !isOfThisGrid(result)) return;
    drawingScore = result;
    // What is left out of the score is not to be made up for by the rival.
    run.setDrawnVolume(mean(carrying(result)));
    stage.drawingHeader.show(result, noteOnDrawing());
    show();
}

void DrawingMode::takeRival(const ScoreResult& result) {
    if (!active || !isOfThisGrid(result) || isBeaten(result)) return;
    designScore = result;
    stage.rivalHeader.show(result, noteOnRival());
    if (drawingScore) stage.drawingHeader.show(*drawingScore, noteOnDrawing());
    show();
}

std::optional<EnergyScale> DrawingMode::scale() const {
    // One for both, or the colours could not be compared.
    Field energies;
    Field densities;
    for (const auto* score : {&drawingScore, &designScore}) {
        if (!*score || !(*score)->isSupported()) continue;
        const Field& own = (*score)->assessment.score.energies;
        if (energies.width != 0 && energies.width != own.width) continue;
        append(energies, own);
        append(densities, carrying(**score));
    }
    if (energies.values.empty()) return std::nullopt;
    return EnergyScale(energies, densities);
}

bool DrawingMode::isOfThisGrid(const ScoreResult& result) const {
    const Scene& scene = bench.document.scene();
    const int refinement = refinementOf(result.design, scene);
    return result.design.width == refinement * scene.width &&
           result.design.height == refinement * scene.height;
}

// A run goes on for greys that nobody sees, and what is drawn of them may get worse.
bool DrawingMode::isBeaten(const ScoreResult& result) const {
    if (!designScore || !designScore->isSupported() || designScore->revision != result.revision)
        return false;
    const double allowed =
        std::max(mean(carrying(result)), drawingScore ? mean(carrying(*drawingScore)) : 0.0);
    return mean(carrying(*designScore)) <= allowed &&
           (!result.isSupported() ||
            designScore->assessment.score.compliance < result.assessment.score.compliance);
}

QString DrawingMode::noteOnDrawing() const {
    QStringList notes;
    if (drawingScore->isSupported() && designScore && designScore->isSupported()) {
        const double ratio =
            designScore->assessment.score.compliance / drawingScore->assessment.score.compliance;
        notes << (std::lround(100 * ratio) == 100 ? tr("As stiff as the optimiser's")
                  : ratio >= 1
                      ? tr("Stiffer than the optimiser's: %1 %").arg(100 * ratio, 0, 'f', 0)
                      : tr("%1 % as stiff as the optimiser's").arg(100 * ratio, 0, 'f', 0));
    }
    const auto& floating = drawingScore->assessment.floating;
    if (!floating.empty())
        notes << tr("Left out: %1").arg(QString::fromStdString(describe(floating)));
    return notes.join("  ·  ");
}

QString DrawingMode::noteOnRival() const {
    QStringList notes;
    for (const Finding& warning : designScore->warnings)
        notes << QString::fromStdString(warning.text);
    return notes.join("  ·  ");
}

void DrawingMode::show() {
    if (!active) return;
    const auto common = scale();
    stage.legend.show(common);
    // The colours of the stroke before stay until the score of this one comes.
    showDesign(stage.drawing, *drawing, drawingScore, common);
    if (designScore) {
        showDesign(stage.rival, designScore->design, designScore, common);
    } else {
        stage.rival.setMaterial({}, false);
        stage.rival.setFloating({});
    }
}

void DrawingMode::showDesign(PlateView& view, const Field& design,
                             const std::optional<ScoreResult>& score,
                             const std::optional<EnergyScale>& common) const {
    const bool hasScore =
        score && score->design.width == design.width && score->design.height == design.height;
    std::optional<ShownEnergies> shown;
    if (hasScore && score->isSupported() && common)
        shown.emplace(ShownEnergies{score->assessment.score.energies, *common});
    view.setMaterial(drawingImage(design, shown, view.colours()), false);
    view.setFloating(hasScore
                         ? outlineOf(score->assessment.floating, design, bench.document.scene())
                         : QPainterPath());
}
