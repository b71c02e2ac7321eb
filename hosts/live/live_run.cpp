#include "live_run.h"

#include <QApplication>
#include <QEventLoop>
#include <QProgressDialog>
#include <algorithm>
#include <utility>

#include "checks/assessment.h"
#include "checks/checks.h"
#include "format/refinement.h"

using namespace voxam;

namespace {

constexpr int SIGN_OF_LIFE = 1000;  // ms between two of them

}  // namespace

LiveRun::LiveRun(Workbench& workbench)
    : bench(workbench), worker([this] { emit workerHasNews(); }) {
    // Emitted on the worker's thread, fetched on this one.
    connect(this, &LiveRun::workerHasNews, this, &LiveRun::fetch, Qt::QueuedConnection);
    connect(&bench.document, &Document::sceneChanged, this, &LiveRun::followScene);
    connect(&bench.document, &Document::opened, this, [this] {
        before.reset();
        startAfresh();
    });
    sinceNews.start();
    signOfLife.setInterval(SIGN_OF_LIFE);
    connect(&signOfLife, &QTimer::timeout, this, &LiveRun::announceState);
}

void LiveRun::setPlaying(bool plays) {
    if (playing == plays && !(plays && front.isSettled)) return;
    playing = plays;
    if (plays) {
        wake();
        worker.play();
    } else {
        worker.pause();
    }
    announceState();
}

void LiveRun::step() {
    setPlaying(false);
    wake();
    worker.step();
    announceState();
}

void LiveRun::wake() {
    if (std::exchange(isRunOver, false)) emit startedAfresh();
    front.isSettled = false;
    isKeptShown = false;
    sinceNews.start();
}

RunState LiveRun::state() const {
    if (isKeptShown) return RunState::AS_KEPT;
    if (!lastRefusal.text.empty() && lastRefusal.revision == settings.revision)
        return RunState::FAILED;
    if (!playing) return RunState::PAUSED;
    if (front.isSettled) return front.hasGivenUp ? RunState::NOT_SETTLED : RunState::SETTLED;
    return secondsWaited() > 0 ? RunState::COMPUTING : RunState::FORMING;
}

int LiveRun::secondsWaited() const { return static_cast<int>(sinceNews.elapsed() / SIGN_OF_LIFE); }

void LiveRun::announceState() {
    const RunState now = state();
    // At rest there is no timer: nothing wakes the processor.
    const bool isAtWork = now == RunState::FORMING || now == RunState::COMPUTING;
    if (!isAtWork) signOfLife.stop();
    if (isAtWork && !signOfLife.isActive()) signOfLife.start();
    emit stateChanged();
}

void LiveRun::showKept(Field design) {
    const Scene& scene = bench.document.scene();
    if (drawing) {
        Frame kept;
        kept.refinement = refinementOf(design, scene);
        kept.material = std::move(design);
        before = Before{std::move(kept), std::nullopt, bench.document.whole(),
                        bench.document.changesMade(), blobMoves};
        return setPlaying(true);
    }
    endRun();
    emit startedAfresh();
    front = Frame();
    front.refinement = refinementOf(design, scene);
    front.material = std::move(design);
    isKeptShown = true;
    scoreAsKept();
    emit frameChanged();
    announceState();
}

void LiveRun::scoreAsKept() {
    const Scene& scene = bench.document.scene();
    const int refinement = drawnRefinement(scene, front.refinement);
    auto drawn = drawnDesign(front.material, scene, refinement).design;
    worker.score({bench.document.snapshot(), std::make_shared<const Field>(std::move(drawn)),
                  settings.revision, ScoreRequest::Kind::SAVED_DESIGN});
}

// A new revision lets fetch() ignore late results of the previous run.
void LiveRun::restart() {
    ++settings.start;
    firstRevision = settings.revision + 1;
    sendSettings();
}

void LiveRun::startAfresh() {
    restart();
    bench.document.play(0);
    front = Frame();
    const Scene& scene = bench.document.scene();
    front.material =
        Field(scene.width, scene.height, static_cast<float>(settings.scene->volumeFraction));
    emit startedAfresh();
    emit frameChanged();
    announceState();
}

void LiveRun::setMovesBlob(bool moves) {
    if (blobMoves == moves) return;
    blobMoves = moves;
    if (!drawing) sendSettings();
}

void LiveRun::setDrawing(bool draws) {
    if (drawing == draws) return;
    if (draws) before = shownDesign();
    drawing = draws;
    const bool isKept = designBefore() != nullptr;
    auto last = draws ? std::nullopt : std::exchange(before, std::nullopt);
    if (last && isKept) return showAgain(*std::move(last));
    startAfresh();
    setPlaying(true);
}

const Field* LiveRun::designBefore() const {
    const bool isOfScene = before && before->movesBlob == blobMoves &&
                           hasSameProblem(*before->whole, *bench.document.whole());
    return isOfScene ? &before->frame.material : nullptr;
}

std::optional<LiveRun::Before> LiveRun::shownDesign() const {
    const bool isForming = playing && !front.isSettled;
    if (!isKeptShown && (isForming || front.numbers.iteration == 0)) return std::nullopt;
    Before now{front, std::nullopt, bench.document.whole(), bench.document.changesMade(),
               blobMoves};
    if (bench.blob() != bench.document.scene().blob) now.blob = bench.blob();
    return now;
}

// The optimiser cannot be given a design, so what it continued would be another one.
void LiveRun::endRun() {
    isKeptShown = false;  // or the restart would play
    setPlaying(false);
    restart();
}

void LiveRun::showAgain(Before last) {
    endRun();
    front = std::move(last.frame);
    front.numbers.revision = settings.revision;
    isKeptShown = isRunOver = true;
    bench.document.play(last.changesMade);
    bench.setMovedBlob(std::move(last.blob));
    scoreAsKept();
    emit frameChanged();
    announceState();
}

void LiveRun::scoreDrawing(std::shared_ptr<const Field> design) {
    worker.score({bench.document.snapshot(), std::move(design), settings.revision});
}

void LiveRun::scoreVariant(std::shared_ptr<const Scene> scene, std::shared_ptr<const Field> design,
                           std::uint64_t revisionOfScene) {
    worker.score(
        {std::move(scene), std::move(design), revisionOfScene, ScoreRequest::Kind::VARIANT});
}

std::optional<ScoreResult> LiveRun::scoreAsDrawn(const Field& material, const Scene& scene) {
    const int refinement = drawnRefinement(scene, refinementOf(material, scene));
    const auto revision = settings.revision;
    const auto design =
        std::make_shared<const Field>(drawnDesign(material, scene, refinement).design);
    std::optional<ScoreResult> result;
    QEventLoop untilScored;
    connect(this, &LiveRun::startedAfresh, &untilScored, &QEventLoop::quit);
    connect(this, &LiveRun::drawingScored, &untilScored, [&](const ScoreResult& scored) {
        // A drawing that was left with its score under way has another revision.
        if (scored.revision != revision || scored.design != *design) return;
        result = scored;
        untilScored.quit();
    });
    worker.score({std::make_shared<const Scene>(scene), design, revision});
    constexpr int patience = 500;  // ms before the dialog comes
    QProgressDialog progress(tr("Scoring the design"), tr("Cancel"), 0, 0,
                             QApplication::activeWindow());
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(patience);
    connect(&progress, &QProgressDialog::canceled, &untilScored, &QEventLoop::quit);
    untilScored.exec();
    return result;
}

void LiveRun::setView(const ViewChoice& next) {
    choice = next;
    worker.setView(choice);
    emit viewChanged();
}

bool LiveRun::hasView(const ScoreResult& score) const {
    if (!score.isSupported()) return true;
    if (!score.view.field) return choice.view == View::MATERIAL;
    return score.view.field->choice == choice &&
           (choice.view != View::STRESS || score.view.field->elementSize == elementSize);
}

void LiveRun::completeView(const ScoreResult& score) {
    if (hasView(score)) return;
    ScoreResult now = score;
    auto scene = std::make_shared<Scene>(*score.scene);
    scene->elementSize = elementSize;
    now.scene = std::move(scene);
    worker.view(now);
}

void LiveRun::followScene() {
    const double size = bench.document.scene().elementSize;
    if (std::exchange(elementSize, size) != size) emit viewChanged();
    // Each update unsettles the optimiser for a few iterations, so a stroke of a drawing that
    // leaves its volume as it was must not be one.
    const bool isSame = settings.scene && hasSameProblem(*sceneToOptimise(), *settings.scene) &&
                        refinementToScore() == settings.scoredRefinement;
    if (isSame) return;
    if (settings.scene && (drawing || !hasSamePlate(*settings.scene, *bench.document.whole())))
        startAfresh();
    else
        sendSettings();
}

std::shared_ptr<const Scene> LiveRun::sceneToOptimise() const {
    if (!drawing) return bench.document.whole();
    auto scene = std::make_shared<Scene>(*bench.document.whole());
    // Beside a drawing there is one plate, which stands still.
    scene->timeline.clear();
    return scene;
}

int LiveRun::refinementToScore() const {
    if (!drawing) return 0;
    const Scene& scene = bench.document.scene();
    return scene.densities ? refinementOf(*scene.densities, scene) : 1;
}

void LiveRun::sendSettings() {
    settings.scene = sceneToOptimise();
    settings.scoredRefinement = refinementToScore();
    settings.movesBlob = blobMoves && !drawing;
    ++settings.revision;
    // An edit starts the optimiser, also where only a kept design was shown.
    if (std::exchange(isKeptShown, false)) setPlaying(true);
    wake();
    worker.send(settings);
    emit settingsSent();
    announceState();
}

void LiveRun::followTimeline() {
    // What an older start or another timeline gave tells nothing.
    const bool isRefused = !lastRefusal.text.empty() && lastRefusal.revision == settings.revision;
    if (drawing || (front.numbers.revision != settings.revision && !isRefused)) return;
    const int iteration = std::max(front.numbers.iteration, isRefused ? lastRefusal.iteration : 0);
    const auto& timeline = bench.document.whole()->timeline;
    const auto next = std::find_if(timeline.begin(), timeline.end(), [=](const Change& change) {
        return change.iteration > iteration;
    });
    const auto made = static_cast<std::size_t>(next - timeline.begin());
    if (made == bench.document.changesMade()) return;
    bench.document.play(made);
    if (made > 0) emit timelinePlayed(timeline[made - 1]);
}

void LiveRun::fetch() {
    bool hasFrame = worker.fetchFrame(spare);
    auto numbers = worker.fetchNumbers();
    const LibraryText refusal = worker.fetchText();
    if (hasFrame || !numbers.empty()) sinceNews.start();
    const bool saysOther = refusal.text != lastRefusal.text ||
                           refusal.iteration != lastRefusal.iteration ||
                           refusal.resumesAt != lastRefusal.resumesAt;
    lastRefusal = refusal;
    hasFrame = hasFrame && spare.numbers.revision >= firstRevision && !isKeptShown;
    std::erase_if(numbers, [this](const auto& each) { return each.revision < firstRevision; });
    if (hasFrame) {
        std::swap(front, spare);
        // An edit or the user has restarted the run since then.
        front.isSettled = front.isSettled && front.numbers.revision == settings.revision;
        // An edit of the blob starts from where it is.
        bench.setMovedBlob(front.blob);
        followTimeline();
        emit frameChanged();
    }
    if (!numbers.empty()) emit iterated(numbers);
    if (saysOther) {
        followTimeline();
        emit refusalChanged(lastRefusal);
    }
    // A later edit may be refused with an equal text, so check after every result.
    startAfreshIfTorn();
    announceState();
    fetchScores();
}

void LiveRun::startAfreshIfTorn() {
    const bool isOfScene = !lastRefusal.text.empty() && lastRefusal.revision == settings.revision;
    const Scene& scene = *bench.document.whole();
    if (!isOfScene || !playing || settings.revision == freshRevision) return;
    if (!scene.timeline.empty() || !checkSettings(scene).empty()) return;
    startAfresh();
    freshRevision = settings.revision;
}

void LiveRun::fetchScores() {
    if (const auto score = worker.fetchScore()) emit drawingScored(*score);
    if (const auto score = worker.fetchVariantScore()) emit variantScored(*score);
    const auto score = worker.fetchDesignScore();
    const auto views = worker.fetchViews();
    if (score && score->revision >= firstRevision) emit designScored(*score);
    for (const ViewResult& view : views) {
        emit viewed(view);
        if (!view.problem.empty()) emit viewFailed(QString::fromStdString(view.problem));
    }
}
