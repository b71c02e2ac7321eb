#include "worker.h"

#include <exception>
#include <utility>

namespace {

// The library moves volume and stiffness of the void step by step, so a small change means nothing
// in the first iterations.
constexpr int SETTLING_ITERATIONS = 20;
constexpr double SETTLED_CHANGE = 0.01;
constexpr int MAX_ITERATIONS_TO_SETTLE = 120;
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
        inbox.score = std::move(request);
    }
    wake.notify_one();
}

void Worker::play() {
    {
        const std::lock_guard lock(mutex);
        inbox.playing = true;
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

std::optional<ScoreResult> Worker::fetchDesignScore() {
    const std::lock_guard lock(mutex);
    outbox.notified = false;
    return std::exchange(outbox.designScore, std::nullopt);
}

// Everything below runs on the worker's thread. The lock is held between the calls of the library,
// and given up during them.

void Worker::run() {
    Lock lock(mutex);
    while (waitForWork(lock)) {
        if (inbox.settings)
            takeSettings(lock);
        else if (inbox.score)
            scoreDrawing(lock);
        else
            iterate(lock);
    }
}

bool Worker::waitForWork(Lock& lock) {
    for (;;) {
        if (inbox.stops) return false;
        if (inbox.settings || inbox.score) return true;
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

bool Worker::isIterationDue() const {
    if (!current.scene || (!text.empty() && !resumesAt)) return false;
    if (inbox.steps > 0) return true;
    return inbox.playing && !(current.scoredRefinement > 0 && settled);
}

void Worker::takeSettings(Lock& lock) {
    current = std::move(*inbox.settings);
    inbox.settings.reset();
    lock.unlock();
    optimiseCurrent();
    iterationsSinceSettings = 0;
    settled = false;
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
    const ScoreRequest request = std::move(*inbox.score);
    inbox.score.reset();
    lock.unlock();
    ScoreResult result =
        scored([&] { return LibrarySession::score(*request.scene, *request.drawing); });
    result.revision = request.revision;
    lock.lock();
    outbox.score = std::move(result);
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
    settled = (iterationsSinceSettings > SETTLING_ITERATIONS &&
               outcome.numbers.change < SETTLED_CHANGE) ||
              iterationsSinceSettings >= MAX_ITERATIONS_TO_SETTLE;
    lock.lock();
    const bool isScored = current.scoredRefinement > 0 && text.empty() && !inbox.settings &&
                          !inbox.stops &&
                          (settled || iterationsSinceSettings % ITERATIONS_PER_DESIGN_SCORE == 0);
    if (isScored) scoreDesign(lock);
    publish(lock, outcome);
}

void Worker::scoreDesign(Lock& lock) {
    lock.unlock();
    ScoreResult result =
        scored([&] { return solvers.scoreDesign(back, current.scoredRefinement); });
    result.revision = current.revision;
    lock.lock();
    outbox.designScore = std::move(result);
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
