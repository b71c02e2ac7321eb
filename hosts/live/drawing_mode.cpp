#include "drawing_mode.h"

#include <cmath>
#include <utility>

#include "action_text.h"
#include "best_scores.h"
#include "checks/assessment.h"
#include "field_picture.h"
#include "format/refinement.h"
#include "number_text.h"
#include "problems.h"
#include "room_text.h"

using namespace voxam;

namespace {

constexpr int DIGITS = 5;  // of a compliance

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
                scene.densities =
                    drawnDesign(frame.material, scene, 1, scene.volumeFraction).design;
        });
    });
    for (QAction* action : actions()) action->setEnabled(false);
    connect(&bench.document, &Document::sceneChanged, this, &DrawingMode::followScene);
    connect(&run, &LiveRun::drawingScored, this, &DrawingMode::takeScore);
    connect(&run, &LiveRun::designScored, this, &DrawingMode::takeRival);
    connect(&run, &LiveRun::viewed, this, &DrawingMode::takeView);
    connect(&run, &LiveRun::viewChanged, this, [this] {
        if (!active) return;
        completeViews();
        show();
    });
    connect(&run, &LiveRun::settingsSent, this, &DrawingMode::followRun);
    connect(&run, &LiveRun::stateChanged, this, [this, wasPaused = false]() mutable {
        const bool isPaused = run.state() == RunState::PAUSED;
        if (std::exchange(wasPaused, isPaused) != isPaused && active && drawing) showHeaders();
    });
    connect(&run, &LiveRun::refusalChanged, this, [this](const LibraryText& refusal) {
        if (!refusal.text.empty()) forgetRival();
        show();
    });
}

void DrawingMode::setActive(bool isToBe) {
    if (active == isToBe) return;
    active = isToBe;
    for (QAction* action : actions()) action->setEnabled(active);
    drawingScore.reset();
    forgetRival();
    run.setDrawing(active);
    if (active) followScene();
}

void DrawingMode::forgetRival() {
    designScore.reset();
    isRivalSettled = false;
}

void DrawingMode::followScene() {
    if (!active) return;
    const Scene& scene = bench.document.scene();
    Field design = scene.densities ? *scene.densities : Field(scene.width, scene.height);
    keepAreas(design, scene);
    if (std::exchange(isTaskNew, false) || !drawing || *drawing != design) {
        drawing = std::make_shared<const Field>(std::move(design));
        run.scoreDrawing(drawing);
    }
    stage.rival.setScene(bench.document.snapshot());
    show();
}

void DrawingMode::followRun() {
    if (!active || run.revision() == rivalRevision) return;
    // The design before was one for another task.
    rivalRevision = run.revision();
    isTaskNew = true;
    forgetRival();
    // After another grid the drawing follows by followScene().
    if (drawing && isOfThisGrid(*drawing)) show();
}

void DrawingMode::takeScore(const ScoreResult& result) {
    // One of a grid that is no more.
    if (!active || !isOfThisGrid(result)) return;
    drawingScore = result;
    // The view has changed while it was computed.
    run.completeView(result);
    show();
}

void DrawingMode::takeRival(const ScoreResult& result) {
    if (!active || !isOfThisGrid(result) || result.revision != run.revision()) return;
    isRivalSettled = result.isSettled;
    if (!isBeaten(result)) {
        designScore = result;
        run.completeView(result);
    }
    designScore->isSettled = result.isSettled;
    show();
}

Match DrawingMode::match() const {
    return judge(drawingScore, designScore, isRivalSettled, bench.document.scene().volumeFraction);
}

bool DrawingMode::isOfThisGrid(const ScoreResult& result) const {
    return isOfThisGrid(result.design);
}

bool DrawingMode::isOfThisGrid(const Field& design) const {
    const Scene& scene = bench.document.scene();
    const int refinement = refinementOf(design, scene);
    return design.width == refinement * scene.width && design.height == refinement * scene.height;
}

// A run goes on for greys that nobody sees, and what is drawn of them may get worse.
bool DrawingMode::isBeaten(const ScoreResult& result) const {
    return designScore && designScore->isSupported() &&
           (!result.isSupported() ||
            designScore->assessment.score.compliance < result.assessment.score.compliance);
}

QString DrawingMode::headline(const Match& match) const {
    switch (match.state) {
        case Match::State::NO_SCORE:
            return tr("Scoring...");
        case Match::State::EMPTY:
            return tr("Draw from the loads to the supports");
        case Match::State::UNSUPPORTED:
            return tr("Does not hold");
        case Match::State::OVER_BUDGET:
            return tr("Over the budget");
        case Match::State::RIVAL_AT_WORK:
            return run.state() == RunState::PAUSED ? tr("The optimiser is paused")
                                                   : tr("The optimiser is still working");
        case Match::State::RIVAL_FAILED:
            return tr("The optimiser's design does not hold");
        case Match::State::DECIDED:
            break;
    }
    if (std::lround(match.percent) == 100) return tr("As stiff as the optimiser's: 100 %");
    return match.percent > 100
               ? tr("Stiffer than the optimiser's: %1 %").arg(numberText(match.percent, 3))
               : tr("%1 % as stiff as the optimiser's").arg(numberText(match.percent, 3));
}

QString DrawingMode::detailsOfDrawing(const Match& match) const {
    if (!drawingScore) return {};
    if (match.state == Match::State::EMPTY)
        return tr("As stiff as you can: you may use as much material as the optimiser.");
    const Assessment& found = drawingScore->assessment;
    if (!drawingScore->isSupported()) return sentenceOf(found.problems.front());
    QStringList notes = {tr("Compliance %1").arg(numberText(found.score.compliance, DIGITS))};
    const double over = carriedShare(*drawingScore) - bench.document.scene().volumeFraction;
    if (match.state == Match::State::OVER_BUDGET)
        notes << tr("Rub out %1 of the plate").arg(percentText(over));
    if (const double best = BestScores::best(bench.document.scene()); best > 0) {
        const QString medal = BestScores::nameOf(BestScores::medalFor(best));
        notes << (medal.isEmpty() ? tr("Best so far %1 %").arg(numberText(best, 3))
                                  : tr("Best so far %1 % (%2)").arg(numberText(best, 3), medal));
    }
    if (!found.floating.empty())
        notes << tr("Left out: %1").arg(roomText(QString::fromStdString(describe(found.floating))));
    return notes.join("  ·  ");
}

void DrawingMode::showRivalHeader() const {
    const QString state = isRivalSettled                    ? tr("Settled")
                          : run.state() == RunState::PAUSED ? tr("Paused")
                                                            : tr("Still working");
    if (!designScore) {
        const bool isRefused = !run.refusal().text.empty();
        return stage.rivalHeader.show(
            isRefused ? tr("Stopped") : state,
            isRefused ? problemsOf(bench.document.scene(), run.refusal()).text : QString());
    }
    QStringList notes;
    for (const Finding& warning : designScore->warnings) notes << sentenceOf(warning);
    stage.rivalHeader.show(
        designScore->isSupported()
            ? tr("Compliance %1").arg(numberText(designScore->assessment.score.compliance, DIGITS))
            : tr("Does not hold yet"),
        state + (notes.isEmpty() ? QString() : "  ·  " + notes.join("  ")));
}

void DrawingMode::showHeaders() {
    const Match now = match();
    if (now.state == Match::State::DECIDED) BestScores::offer(bench.document.scene(), now.percent);
    const double budget = bench.document.scene().volumeFraction;
    stage.drawingHeader.show(headline(now), detailsOfDrawing(now));
    stage.drawingHeader.showMaterial(drawingScore ? carriedShare(*drawingScore) : mean(*drawing),
                                     budget);
    showRivalHeader();
    stage.rivalHeader.showMaterial(designScore ? carriedShare(*designScore) : 0, budget);
}

void DrawingMode::show() {
    if (!active) return;
    showHeaders();
    const Scene& scene = bench.document.scene();
    const ScoreResult* own = viewed(drawingScore);
    const ScoreResult* other = viewed(designScore);
    const CommonView common = commonView({own, other});
    Legend legend = legendOf(common, scene);
    if (!common.field && run.view().view != View::MATERIAL)
        legend = {Legend::Kind::TEXT, tr("Shown once a design holds")};
    stage.fields.legend().show(legend);
    // The colours of the stroke before stay until the score of this one comes.
    showDesign(stage.drawing, scene, *drawing, own, common);
    if (designScore) {
        showDesign(stage.rival, scene, designScore->design, other, common);
    } else {
        stage.rival.setMaterial({}, false);
        stage.rival.setDeformed(std::nullopt);
        stage.rival.setFloating({});
    }
}

const ScoreResult* DrawingMode::viewed(const std::optional<ScoreResult>& score) const {
    return score && run.hasView(*score) ? &*score : nullptr;
}

void DrawingMode::completeViews() {
    for (const auto* score : {&drawingScore, &designScore})
        if (*score) run.completeView(**score);
}

void DrawingMode::takeView(const ViewResult& result) {
    if (!active) return;
    for (auto* score : {&drawingScore, &designScore})
        if (*score && (*score)->number == result.scoreNumber) (*score)->view = result.view;
    show();
}

QString DrawingMode::reading(const Field* design, const std::optional<ScoreResult>& score,
                             QPointF plate) const {
    const ScoreResult* shown = viewed(score);
    if (design == nullptr || !isOfThisGrid(*design)) return {};
    return shown != nullptr && shown->view.field && isOfThisGrid(*shown)
               ? fieldReading(*shown, bench.document.scene(), plate)
               : densityReading(*design, bench.document.scene(), plate);
}
