#include "worker.h"

#include <exception>
#include <utility>

using namespace voxam;

namespace {

// How long a refusal can be read before a playing run resumes at the next change of the timeline.
constexpr std::chrono::milliseconds TIME_TO_READ(2500);
// Scoring costs about as much as iterating, and a design under way is worth a glance only.
constexpr int ITERATIONS_PER_DESIGN_SCORE = 8;

// What the library cannot do for want of memory is told like what it refuses.

IterationOutcome iterated(LibrarySession& solvers, Frame& frame) {
    try {
        return solvers.iterate(frame);
    } catch (const std::exception& error) {
        return {error.what(), {}, std::nullopt};
    }
}

ScoreResult scored(const std::function<ScoreResult()>& score) {
    try {
        return score();
    } catch (const std::exception& error) {
        ScoreResult result;
        result.assessment.problems = {{Finding::ERROR, "design", error.what(), std::nullopt}};
        return result;
    }
}

}  // namespace

Worker::Worker(std::function<void()> notifyWindow)
    : notify(std::move(notifyWindow)), thread([this] { run(); }) {}

Worker::~Worker() {
    {
        const std::lock_guard lock(mutex);
        inbox.stops = true;
    }
    wake.notify_one();
    thread.join();
}

void Worker::send(LiveSettings settings) {
    {
        const std::lock_guard lock(mutex);
        inbox.settings = std::move(settings);
    }
    wake.notify_one();
}

void Worker::score(ScoreRequest request) {
    {
        const std::lock_guard lock(mutex);
        auto& place = request.kind == ScoreRequest::Kind::DRAWING        ? inbox.score
                      : request.kind == ScoreRequest::Kind::SAVED_DESIGN ? inbox.savedScore
                                                                         : inbox.variantScore;
        place = std::move(request);
    }
    wake.notify_one();
}

void Worker::setView(const ViewChoice& choice) {
    const std::lock_guard lock(mutex);
    inbox.choice = choice;
    inbox.views.clear();
}

void Worker::view(ScoreResult scored) {
    {
        const std::lock_guard lock(mutex);
        inbox.views.push_back(std::move(scored));
    }
    wake.notify_one();
}

void Worker::play() {
    {
        const std::lock_guard lock(mutex);
        inbox.playing = true;
        inbox.wakes = true;
    }
    wake.notify_one();
}

void Worker::pause() {
    const std::lock_guard lock(mutex);
    inbox.playing = false;
    inbox.steps = 0;
}

void Worker::step() {
    {
        const std::lock_guard lock(mutex);
        ++inbox.steps;
    }
    wake.notify_one();
}

void Worker::setRate(double iterationsPerSecond) {
    const std::lock_guard lock(mutex);
    inbox.pace = std::chrono::nanoseconds(
        iterationsPerSecond > 0 ? static_cast<std::int64_t>(1e9 / iterationsPerSecond) : 0);
}

bool Worker::fetchFrame(Frame& frame) {
    const std::lock_guard lock(mutex);
    outbox.notified = false;
    if (!std::exchange(outbox.hasFrame, false)) return false;
    std::swap(frame, outbox.frame);
    return true;
}

std::vector<IterationNumbers> Worker::fetchNumbers() {
    const std::lock_guard lock(mutex);
    outbox.notified = false;
    return std::exchange(outbox.numbers, {});
}

LibraryText Worker::fetchText() {
    const std::lock_guard lock(mutex);
    outbox.notified = false;
    return outbox.text;
}

std::optional<ScoreResult> Worker::fetchScore() {
    const std::lock_guard lock(mutex);
    outbox.notified = false;
    return std::exchange(outbox.score, std::nullopt);
}

std::optional<ScoreResult> Worker::fetchVariantScore() {
    const std::lock_guard lock(mutex);
    outbox.notified = false;
    return std::exchange(outbox.variantScore, std::nullopt);
}

std::optional<ScoreResult> Worker::fetchDesignScore() {
    const std::lock_guard lock(mutex);
    outbox.notified = false;
    return std::exchange(outbox.designScore, std::nullopt);
}

std::vector<ViewResult> Worker::fetchViews() {
    const std::lock_guard lock(mutex);
    outbox.notified = false;
    return std::exchange(outbox.views, {});
}

// Everything below runs on the worker's thread. The lock is held between the calls of the library,
// and given up during them.

void Worker::run() {
    Lock lock(mutex);
    while (waitForWork(lock)) {
        if (std::exchange(inbox.wakes, false)) settling.restart();
        if (inbox.settings)
            takeSettings(lock);
        else if (hasScoreToDo())
            scoreDrawing(lock);
        else if (!inbox.views.empty())
            viewScore(lock);
        else if (isIterationDue())
            iterate(lock);
    }
}

bool Worker::waitForWork(Lock& lock) {
    for (;;) {
        if (inbox.stops) return false;
        if (inbox.settings || hasScoreToDo()) return true;
        if (inbox.wakes || !inbox.views.empty()) return true;
        if (!isIterationDue()) {
            wake.wait(lock);
            continue;
        }
        const auto due =
            lastStart + (text.empty() ? inbox.pace : std::chrono::nanoseconds(TIME_TO_READ));
        if (inbox.steps > 0 || std::chrono::steady_clock::now() >= due) return true;
        wake.wait_until(lock, due);
    }
}

bool Worker::hasScoreToDo() const { return inbox.savedScore || inbox.score || inbox.variantScore; }

bool Worker::isIterationDue() const {
    if (!current.scene || (!text.empty() && !resumesAt)) return false;
    if (inbox.steps > 0) return true;
    return inbox.playing && !settling.isSettled();
}

void Worker::takeSettings(Lock& lock) {
    current = std::move(*inbox.settings);
    inbox.settings.reset();
    lock.unlock();
    optimiseCurrent();
    iterationsSinceSettings = 0;
    settling.restart();
    // What was edited is to be seen at once, not at the next beat.
    lastStart = {};
    lock.lock();
    // While playing the next iteration has the next word, and the old one stands until then.
    if (inbox.playing && text.empty()) return;
    outbox.text = {text, current.revision, 0, std::nullopt};
    announce(lock);
}

void Worker::optimiseCurrent() {
    resumesAt.reset();
    try {
        solvers.optimise(current.scene, current.movesBlob, current.start);
        text.clear();
    } catch (const std::exception& error) {
        text = error.what();
    }
}

void Worker::scoreDrawing(Lock& lock) {
    auto& place = inbox.savedScore ? inbox.savedScore
                  : inbox.score    ? inbox.score
                                   : inbox.variantScore;
    const ScoreRequest request = *std::exchange(place, std::nullopt);
    const ViewChoice choice = inbox.choice;
    lock.unlock();
    const bool isSaved = request.kind == ScoreRequest::Kind::SAVED_DESIGN;
    ScoreResult result = scored([&] {
        const auto score = isSaved ? &LibrarySession::scoreSaved : &LibrarySession::score;
        return score(request.scene, *request.drawing, choice);
    });
    result.number = ++scores;
    result.revision = request.revision;
    result.isSettled = isSaved;
    lock.lock();
    (isSaved                                       ? outbox.designScore
     : request.kind == ScoreRequest::Kind::VARIANT ? outbox.variantScore
                                                   : outbox.score) = std::move(result);
    announce(lock);
}

void Worker::viewScore(Lock& lock) {
    const ScoreResult scored = std::move(inbox.views.front());
    inbox.views.pop_front();
    const ViewChoice choice = inbox.choice;
    lock.unlock();
    ViewResult result{scored.number, {}};
    try {
        result.view = LibrarySession::view(scored, choice);
    } catch (const std::exception& error) {
        result.problem = error.what();
    }
    lock.lock();
    outbox.views.push_back(std::move(result));
    announce(lock);
}

void Worker::iterate(Lock& lock) {
    if (inbox.steps > 0) --inbox.steps;
    lock.unlock();
    lastStart = std::chrono::steady_clock::now();
    IterationOutcome outcome = iterated(solvers, back);
    outcome.numbers.revision = back.numbers.revision = current.revision;
    text = outcome.text;
    resumesAt = outcome.resumesAt;
    ++iterationsSinceSettings;
    if (text.empty()) {
        const auto& timeline = current.scene->timeline;
        settling.add(back, timeline.empty() ? 0 : timeline.back().iteration);
    }
    back.isSettled = settling.isSettled();
    back.hasGivenUp = settling.hasGivenUp();
    // A copy, because the picture goes first: a score may take seconds.
    const auto toScore = isScoreDue() ? std::optional(back) : std::nullopt;
    lock.lock();
    publish(lock, outcome);
    if (toScore && !inbox.settings && !inbox.stops) scoreDesign(lock, *toScore);
}

bool Worker::isScoreDue() const {
    if (!text.empty()) return false;
    return back.isSettled || (current.scoredRefinement > 0 &&
                              iterationsSinceSettings % ITERATIONS_PER_DESIGN_SCORE == 0);
}

void Worker::scoreDesign(Lock& lock, const Frame& frame) {
    const ViewChoice choice = inbox.choice;
    lock.unlock();
    ScoreResult result =
        scored([&] { return solvers.scoreDesign(frame, current.scoredRefinement, choice); });
    result.number = ++scores;
    result.revision = current.revision;
    result.isSettled = frame.isSettled;
    lock.lock();
    outbox.designScore = std::move(result);
    announce(lock);
}

void Worker::publish(Lock& lock, const IterationOutcome& outcome) {
    outbox.text = {outcome.text, current.revision, outcome.numbers.iteration, outcome.resumesAt};
    if (outcome.text.empty()) {
        outbox.numbers.push_back(outcome.numbers);
        std::swap(outbox.frame, back);
        outbox.hasFrame = true;
    }
    announce(lock);
}

void Worker::announce(Lock& lock) {
    if (std::exchange(outbox.notified, true)) return;
    lock.unlock();
    notify();
    lock.lock();
}
