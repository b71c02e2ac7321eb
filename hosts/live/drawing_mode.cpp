#include "drawing_mode.h"

#include <QLocale>
#include <algorithm>
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

constexpr double LEAST_SHARE = 0.001;  // less would read as 0.0 %

/// Rounded down, so that 100.0 is not written for less.
double downToTenths(double percent) {
    constexpr double tenths = 10;
    constexpr double rounding = 1e-9;
    return std::floor(tenths * percent + rounding) / tenths;
}

QString tenthsText(double percent) { return QLocale().toString(downToTenths(percent), 'f', 1); }

/// With the medal that it wins.
QString medalText(double percent) {
    const QString medal = BestScores::nameOf(BestScores::medalFor(percent));
    const QString text = percentText(downToTenths(percent) / 100);
    return medal.isEmpty() ? text : text + " (" + medal + ")";
}

}  // namespace

DrawingMode::DrawingMode(Workbench& workbench, LiveRun& liveRun, const DrawingClock& timer,
                         const Stage& shown)
    : bench(workbench),
      run(liveRun),
      clock(timer),
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
    connect(&clock, &DrawingClock::started, this, [this] { timed.clear(); });
    connect(&clock, &DrawingClock::timeIsUp, this, &DrawingMode::show);
    connect(clock.action, &QAction::toggled, this, &DrawingMode::show);
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
    isRivalSettled = hasRivalGivenUp = false;
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
    offerToClock(result);
    // The view has changed while it was computed.
    run.completeView(result);
    show();
}

void DrawingMode::takeRival(const ScoreResult& result) {
    if (!active || !isOfThisGrid(result) || result.revision != run.revision()) return;
    // One that has given up is compared as if it had settled: a drawing needs its verdict.
    isRivalSettled = result.isSettled;
    hasRivalGivenUp = result.isSettled && run.frame().hasGivenUp;
    if (!isBeaten(result)) {
        designScore = result;
        run.completeView(result);
    }
    designScore->isSettled = result.isSettled;
    if (isRivalSettled && designScore->isSupported())
        BestScores::offerRival(bench.document.scene(), designScore->assessment.score.compliance);
    show();
}

Match DrawingMode::match() const {
    return judge(drawingScore, rival(), bench.document.scene().volumeFraction);
}

Rival DrawingMode::rival() const {
    // An earlier refusal says nothing about the present task.
    const bool isRivalTorn = isTorn(run.refusal()) && run.refusal().revision == run.revision();
    return {designScore ? &*designScore : nullptr, isRivalSettled, isRivalTorn,
            BestScores::bestRival(bench.document.scene())};
}

void DrawingMode::offerToClock(const ScoreResult& result) {
    const Scene& scene = bench.document.scene();
    if (!clock.isInTime(result.design) || !result.scene || !hasSameProblem(*result.scene, scene))
        return;
    if (judge(result, {}, scene.volumeFraction).state != Match::State::RIVAL_AT_WORK) return;
    const double compliance = result.assessment.score.compliance;
    if (const auto best = timedHere(); best == timed.end())
        timed.push_back({result.scene, compliance});
    else if (compliance < best->compliance)
        timed[static_cast<std::size_t>(best - timed.begin())].compliance = compliance;
}

std::vector<DrawingMode::Timed>::const_iterator DrawingMode::timedHere() const {
    return std::find_if(timed.begin(), timed.end(), [this](const Timed& each) {
        return hasSameProblem(*each.task, bench.document.scene());
    });
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

QString DrawingMode::headlineWhenTimeIsUp() const {
    const auto best = timedHere();
    if (best == timed.end()) return tr("Time is up, without a result");
    const Match match = judge(best->compliance, rival());
    if (match.state == Match::State::DECIDED)
        return tr("Time is up: %1").arg(medalText(match.percent));
    return match.state == Match::State::RIVAL_FAILED
               ? tr("Time is up: only yours holds")
               : tr("Time is up: the optimiser is still working");
}

QString DrawingMode::headline(const Match& match) const {
    if (clock.isUp()) return headlineWhenTimeIsUp();
    switch (match.state) {
        case Match::State::NO_SCORE:
            return tr("Scoring...");
        case Match::State::EMPTY:
            return tr("Draw from the loads to the supports");
        case Match::State::UNSUPPORTED:
            return tr("Does not hold");
        case Match::State::OVER_BUDGET:
            return tr("Over the budget");
        case Match::State::GREY:
            return tr("Greys are not compared");
        case Match::State::RIVAL_AT_WORK:
            if (!run.refusal().text.empty()) return tr("The optimiser has stopped");
            return run.state() == RunState::PAUSED ? tr("The optimiser is paused")
                                                   : tr("The optimiser is still working");
        case Match::State::RIVAL_FAILED:
            return tr("Yours holds, the optimiser's does not");
        case Match::State::DECIDED:
            break;
    }
    if (match.percent == 100) return tr("As stiff as the optimiser's: 100 %");
    return match.percent > 100
               ? tr("Stiffer than the optimiser's: %1 %").arg(tenthsText(match.percent))
               : tr("%1 % as stiff as the optimiser's").arg(tenthsText(match.percent));
}

bool DrawingMode::isScoreCurrent() const {
    return drawingScore && drawingScore->scene && drawingScore->design == *drawing &&
           hasSameProblem(*drawingScore->scene, bench.document.scene());
}

bool DrawingMode::counts(const Match& match) const {
    return match.state == Match::State::DECIDED && !match.isRivalDoubtful && isScoreCurrent() &&
           bench.document.byHand.contains(bench.document.scene());
}

QString DrawingMode::whyNotCounted(const Match& match) const {
    if (clock.isUp())
        return tr("Later strokes do not count. Start with an empty plate to go again");
    if (!bench.document.byHand.contains(bench.document.scene()))
        return tr("Does not count: it did not begin with an empty plate. Start with one to win");
    if (match.state == Match::State::DECIDED && match.isRivalDoubtful)
        return tr("Does not count: the optimiser's design has a warning");
    return {};
}

QString DrawingMode::bestSoFar() const {
    const double best = BestScores::best(bench.document.scene());
    if (best <= 0) return {};
    return tr("Best so far %1").arg(medalText(best));
}

QString DrawingMode::excess(const Field& design) const {
    const std::size_t over = cellsOver(design, bench.document.scene().volumeFraction);
    const double share = static_cast<double>(over) / static_cast<double>(design.values.size());
    if (share >= LEAST_SHARE) return tr("Rub out %1 of the plate").arg(percentText(share));
    const double all = std::round(sum(design));
    return (refinementOf(design, bench.document.scene()) == 1 ? tr("Rub out %1 of the %2 elements")
                                                              : tr("Rub out %1 of the %2 cells"))
        .arg(over)
        .arg(QLocale().toString(all, 'f', 0));
}

QString DrawingMode::complianceOf(const Assessment& found) const {
    return complianceText(found.score.compliance,
                          bench.document.scene().symmetry != Symmetry::NONE);
}

QString DrawingMode::detailsOfDrawing(const Match& match) const {
    if (!drawingScore) return {};
    if (match.state == Match::State::EMPTY)
        return tr("As stiff as you can: you may use as much material as the optimiser.");
    const Assessment& found = drawingScore->assessment;
    if (!drawingScore->isSupported()) return sentenceOf(found.problems.front());
    QStringList notes = {complianceOf(found)};
    if (match.state == Match::State::OVER_BUDGET) notes << excess(drawingScore->design);
    if (match.state == Match::State::GREY)
        notes << tr("Draw in black and white to be compared with the optimiser");
    if (const QString reason = whyNotCounted(match); !reason.isEmpty()) notes << reason;
    if (!found.floating.empty())
        notes << tr("Loose, but counts as material: %1")
                     .arg(roomText(QString::fromStdString(describe(found.floating))));
    return notes.join("  ·  ");
}

void DrawingMode::showRivalHeader() const {
    const QString state = hasRivalGivenUp  ? tr("Not settled, but compared as it is")
                          : isRivalSettled ? tr("Settled")
                          : run.state() == RunState::PAUSED ? tr("Paused")
                                                            : tr("Still working");
    QStringList notes;
    if (!bench.document.whole()->timeline.empty())
        notes << tr("The timeline does not play here: only its start counts.");
    if (!designScore) {
        const bool isRefused = !run.refusal().text.empty();
        return stage.rivalHeader.show(
            isRefused ? tr("Stopped") : state,
            isRefused ? problemsOf(bench.document.scene(), run.refusal()).text : notes.join("  "));
    }
    const Rival now = rival();
    if (judge(designScore->assessment.score.compliance, now).isRivalEarlier)
        notes << tr("You are compared with the optimiser's best so far: %1")
                     .arg(numberText(now.bestCompliance, COMPLIANCE_DIGITS));
    for (const Finding& warning : designScore->warnings) notes << sentenceOf(warning);
    stage.rivalHeader.show(designScore->isSupported() ? complianceOf(designScore->assessment)
                           : isRivalSettled           ? tr("Does not hold")
                                                      : tr("Does not hold yet"),
                           state + (notes.isEmpty() ? QString() : "  ·  " + notes.join("  ")));
}

void DrawingMode::showHeaders() {
    const Match now = match();
    // A score that comes when the time is up may be of a drawing in time.
    if (counts(now)) BestScores::offer(bench.document.scene(), now.percent);
    const double budget = bench.document.scene().volumeFraction;
    stage.drawingHeader.setRemark(bestSoFar());
    stage.drawingHeader.show(headline(now), detailsOfDrawing(now));
    stage.drawingHeader.showMaterial(mean(*drawing), budget, cellsOver(*drawing, budget) > 0);
    showRivalHeader();
    // Only elements that are kept solid can exceed the budget here.
    stage.rivalHeader.showMaterial(designScore ? mean(designScore->design) : 0, budget,
                                   designScore && cellsOver(designScore->design, budget) > 0);
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
    // A stroke without a score has a density, but no value of the view.
    return shown != nullptr && shown->view.field && shown->design == *design
               ? fieldReading(*shown, bench.document.scene(), plate)
               : densityReading(*design, bench.document.scene(), plate);
}
