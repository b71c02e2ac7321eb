#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
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

/// The worker's task. It is plain data, and cheap to copy.
struct LiveSettings {
    std::shared_ptr<const voxam::Scene> scene;
    bool movesBlob = false;
    /// 0: score the design once it has settled, as the command-line program draws it. Above 0:
    /// score it during the run, too, drawn with this refinement of the grid and at most as much
    /// material as the scene's volume.
    int scoredRefinement = 0;
    std::uint64_t start = 0;     ///< a new number: start afresh
    std::uint64_t revision = 0;  ///< is returned with each result of these settings
};

/// A drawn design, a saved design of the optimiser or a variant to score.
struct ScoreRequest {
    std::shared_ptr<const voxam::Scene> scene;
    std::shared_ptr<const voxam::Field> drawing;
    std::uint64_t revision = 0;
    /// Each kind has a mailbox of its own.
    enum class Kind { DRAWING, SAVED_DESIGN, VARIANT } kind = Kind::DRAWING;
};

/// The one thread that calls the library, and the mailboxes on both sides of it.
///
/// The library's calls must not overlap and may take long. A window must never wait, so only this
/// thread calls the library. Each side leaves its latest message under a lock, which it holds only
/// for a swap. Newer settings replace settings that the worker has not read. Newer pictures replace
/// pictures that the window has not fetched.
///
///     window                      worker
///       send(settings)  ------->    between two iterations: update, or start afresh
///       fetchFrame(f)   <-------    after each iteration: a picture, by swapping buffers
///
/// A design that has settled rests: no iteration runs before the next settings, play() or step().
///
/// All functions return at once, except the destructor, which waits for the present call.
class Worker {
public:
    /// `notify` is called on the worker's thread when there is something to fetch, at most once
    /// until the next fetch; it should only post an event.
    explicit Worker(std::function<void()> notify);
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker();

    void send(LiveSettings settings);
    void score(ScoreRequest request);
    /// The view of future scores, besides their numbers. Drops the requests for other views.
    void setView(const voxam::ViewChoice& choice);
    /// Requests the present view of a design that was scored for another view.
    void view(ScoreResult scored);

    /// Also continues a settled design.
    void play();
    void pause();
    /// Runs one iteration while paused.
    void step();

    /// Limits the rate to the screen's. 0 means no limit.
    void setRate(double iterationsPerSecond);

    /// Swaps the newest picture into `frame`, whose buffers the worker then uses again. Returns
    /// false and leaves `frame` unchanged if there is no new picture since the last call.
    bool fetchFrame(Frame& frame);
    /// The numbers of all iterations since the last call, in order, also of iterations whose
    /// picture was replaced by a newer one.
    std::vector<IterationNumbers> fetchNumbers();
    /// The library's text about the newest settings that the worker has read; empty if it did not
    /// refuse them.
    LibraryText fetchText();
    /// The newest score of a drawing since the last call, if there is one.
    std::optional<ScoreResult> fetchScore();
    /// The newest score of a variant since the last call, if there is one.
    std::optional<ScoreResult> fetchVariantScore();
    /// The newest score of the optimiser's design since the last call, if there is one.
    std::optional<ScoreResult> fetchDesignScore();
    std::vector<ViewResult> fetchViews();

private:
    /// Messages from the window; under the lock.
    struct Inbox {
        std::optional<LiveSettings> settings;
        std::optional<ScoreRequest> savedScore;  ///< of a design of the optimiser
        std::optional<ScoreRequest> score;
        std::optional<ScoreRequest> variantScore;  ///< after a stroke that waits for its score
        voxam::ViewChoice choice;
        std::deque<ScoreResult> views;
        bool playing = false;
        bool wakes = false;
        int steps = 0;
        bool stops = false;
        std::chrono::nanoseconds pace{0};
    };
    /// Messages to the window; under the lock.
    struct Outbox {
        Frame frame;
        bool hasFrame = false;
        std::vector<IterationNumbers> numbers;
        LibraryText text;
        std::optional<ScoreResult> score;
        std::optional<ScoreResult> designScore;
        std::optional<ScoreResult> variantScore;
        std::vector<ViewResult> views;
        bool notified = false;
    };
    using Lock = std::unique_lock<std::mutex>;

    void run();
    bool waitForWork(Lock& lock);
    bool hasScoreToDo() const;
    bool isIterationDue() const;
    void takeSettings(Lock& lock);
    void optimiseCurrent();
    void scoreDrawing(Lock& lock);
    void viewScore(Lock& lock);
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

    // Only the worker's thread uses these.
    LibrarySession solvers;
    LiveSettings current;
    Frame back;
    std::string text;              // why it waits for the next settings
    std::optional<int> resumesAt;  // or it resumes with this iteration of the timeline
    int iterationsSinceSettings = 0;
    std::uint64_t scores = 0;  // their number so far
    Settling settling;
    std::chrono::steady_clock::time_point lastStart;

    std::thread thread;  // the last member, because it uses all others
};
