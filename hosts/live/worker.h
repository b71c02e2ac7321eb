#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "frame.h"
#include "library_session.h"
#include "settling.h"

/// What the worker is to compute. It is plain data, and cheap to copy.
struct LiveSettings {
    std::shared_ptr<const Scene> scene;
    bool movesBlob = false;
    /// 0: score the design once it has settled, as the command-line program draws it. Above 0:
    /// score it all along, drawn with so many elements per edge of an element of the grid and no
    /// more material than the scene's volume.
    int scoredRefinement = 0;
    std::uint64_t start = 0;     ///< another number than before: start afresh
    std::uint64_t revision = 0;  ///< comes back with each result, to tell what it belongs to
};

/// A drawn design to score.
struct ScoreRequest {
    std::shared_ptr<const Scene> scene;
    std::shared_ptr<const Field> drawing;
    std::uint64_t revision = 0;
    bool isOfOptimiser = false;  ///< one of its designs, that was saved
};

/// The one thread that calls the library, and the mailboxes on both sides of it.
///
/// The library's calls must not overlap and may take as long as they like, a window must never
/// wait: so no call is made elsewhere, and each side leaves its latest word under a lock that
/// nobody holds for longer than a swap. Settings that the worker did not come round to are
/// replaced by newer ones; so are pictures that nobody fetched.
///
///     window                      worker
///       send(settings)  ------->    between two iterations: update, or create anew
///       fetchFrame(f)   <-------    after each iteration: a picture, by swapping buffers
///
/// A design that has settled rests: no iteration runs before the next settings, play() or step().
///
/// All functions return at once, but for the destructor, which waits for the call under way.
class Worker {
public:
    /// `notify` is called on the worker's thread when there is something to fetch, at most once
    /// until the next fetch; it should do no more than to post an event.
    explicit Worker(std::function<void()> notify);
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker();

    void send(LiveSettings settings);
    void score(ScoreRequest request);

    /// Lets a settled design go on as well.
    void play();
    void pause();
    /// Runs one iteration while paused.
    void step();

    /// At most so many iterations a second: more than the screen shows would only heat the room.
    /// 0 is without a limit.
    void setRate(double iterationsPerSecond);

    /// Swaps the newest picture into `frame`, whose buffers the worker then uses again. Returns
    /// false, and leaves `frame` alone, when there was none since the last time.
    bool fetchFrame(Frame& frame);
    /// Numbers of all iterations since the last time, in order, also of those whose picture was
    /// replaced by a newer one.
    std::vector<IterationNumbers> fetchNumbers();
    /// What the library had to say on the newest settings that it was asked to compute; empty when
    /// all is well.
    LibraryText fetchText();
    std::optional<ScoreResult> fetchScore();
    std::optional<ScoreResult> fetchDesignScore();

private:
    /// What the window asks for; under the lock.
    struct Inbox {
        std::optional<LiveSettings> settings;
        std::optional<ScoreRequest> score;
        bool playing = false;
        bool wakes = false;
        int steps = 0;
        bool stops = false;
        std::chrono::nanoseconds pace{0};
    };
    /// What the window may fetch; under the lock.
    struct Outbox {
        Frame frame;
        bool hasFrame = false;
        std::vector<IterationNumbers> numbers;
        LibraryText text;
        std::optional<ScoreResult> score;
        std::optional<ScoreResult> designScore;
        bool notified = false;
    };
    using Lock = std::unique_lock<std::mutex>;

    void run();
    bool waitForWork(Lock& lock);
    bool isIterationDue() const;
    void takeSettings(Lock& lock);
    void optimiseCurrent();
    void scoreDrawing(Lock& lock);
    void iterate(Lock& lock);
    bool isScoreDue() const;
    void scoreDesign(Lock& lock, const Frame& frame);
    void publish(Lock& lock, const IterationOutcome& outcome);
    void announce(Lock& lock);

    std::function<void()> notify;
    std::mutex mutex;
    std::condition_variable wake;
    Inbox inbox;
    Outbox outbox;

    // The worker's own; nobody else touches them.
    LibrarySession solvers;
    LiveSettings current;
    Frame back;
    std::string text;              // why it cannot go on before the next settings
    std::optional<int> resumesAt;  // but with this iteration of the timeline
    int iterationsSinceSettings = 0;
    Settling settling;
    std::chrono::steady_clock::time_point lastStart;

    std::thread thread;  // the last member: it starts when all others are there
};
