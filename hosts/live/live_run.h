#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <optional>
#include <vector>

#include "run_state.h"
#include "workbench.h"
#include "worker.h"

/// The running optimiser as the window sees it: sends each edit of the document to the worker, and
/// turns the results of the worker into signals.
class LiveRun : public QObject {
    Q_OBJECT

public:
    explicit LiveRun(Workbench& workbench);

    bool isPlaying() const { return playing; }
    /// Playing also continues a settled design.
    void setPlaying(bool plays);

    RunState state() const;
    /// Seconds that the present iteration has taken so far.
    int secondsWaited() const;
    /// Pauses, and runs one iteration.
    void step();
    void startAfresh();
    /// Shows a design of the scene that was kept, and scores it, instead of forming one. It stays
    /// until the run is played, stepped or edited, which starts afresh. While drawing, it is shown
    /// afterwards.
    void showKept(Field design);

    bool movesBlob() const { return blobMoves; }
    void setMovesBlob(bool moves);

    /// While a design is drawn, the optimiser is its rival: each problem is optimised afresh, with
    /// the blob at its given place, and scored as drawn on the drawing's grid. Afterwards the
    /// design from before is shown as a kept one, unless the problem has changed.
    void setDrawing(bool draws);
    bool isDrawing() const { return drawing; }
    /// The design that will be shown after the drawing; null if there is none of this problem.
    const Field* designBefore() const;
    void scoreDrawing(std::shared_ptr<const Field> design);
    /// Scores a design that was kept with earlier settings. variantScored() reports the score,
    /// unless another variant replaces this one.
    void scoreVariant(std::shared_ptr<const Scene> scene, std::shared_ptr<const Field> design,
                      std::uint64_t revisionOfScene);

    /// Scores a picture of the optimiser as the command-line program does at the end of a run.
    /// Returns when the worker has ended its iteration and the score; without a result if the run
    /// started afresh or the user cancelled meanwhile. Not while drawing.
    std::optional<ScoreResult> scoreAsDrawn(const Field& material, const Scene& scene);

    /// The view of future scores.
    void setView(const ViewChoice& next);
    const ViewChoice& view() const { return choice; }
    /// Asks for the view of a score that was computed for another one; viewed() brings it.
    void completeView(const ScoreResult& score);
    /// A design that does not hold has no other view than its material.
    bool hasView(const ScoreResult& score) const;

    void setRate(double iterationsPerSecond) { worker.setRate(iterationsPerSecond); }

    /// The newest picture.
    const Frame& frame() const { return front; }
    /// The library's last text about the present settings; empty if it did not refuse them.
    const LibraryText& refusal() const { return lastRefusal; }
    /// The revision of the settings that were sent last. Pictures of an edit have its revision or a
    /// later one.
    std::uint64_t revision() const { return settings.revision; }

signals:
    /// The state, or the seconds waited.
    void stateChanged();
    void frameChanged();
    /// All iterations since the last time, in order.
    void iterated(const std::vector<IterationNumbers>& numbers);
    void refusalChanged(const LibraryText& refusal);
    void startedAfresh();
    /// An edit was sent to the optimiser.
    void settingsSent();
    /// The scene's own timeline has changed it.
    void timelinePlayed(const Change& change);
    void drawingScored(const ScoreResult& result);
    void variantScored(const ScoreResult& result);
    /// The score of the optimiser's design: at any time while a design is drawn,
    /// otherwise once it has settled.
    void designScored(const ScoreResult& result);
    void viewChanged();
    void viewed(const ViewResult& result);
    /// Why a view could not be computed, such as for lack of memory.
    void viewFailed(const QString& why);
    void workerHasNews();

private:
    /// The design that was on the plate when a drawing was begun.
    struct Before {
        Frame frame;
        std::optional<Area> blob;  ///< if it had moved
        std::shared_ptr<const Scene> whole;
        std::size_t changesMade = 0;
        bool movesBlob = false;
    };

    std::optional<Before> shownDesign() const;
    void showAgain(Before last);
    void scoreAsKept();
    void restart();
    /// Pauses. The next iteration begins another run.
    void endRun();
    /// Sends the scene, unless nothing in it concerns the optimiser. Another plate starts afresh.
    void followScene();
    void sendSettings();
    std::shared_ptr<const Scene> sceneToOptimise() const;
    int refinementToScore() const;
    void fetch();
    void fetchScores();
    void wake();
    void announceState();
    /// Shows the changes of the timeline up to the newest picture, or up to the iteration that was
    /// refused since.
    void followTimeline();
    /// A scene without supports, for example, tears the design. The torn design cannot continue
    /// after the user fixes the scene, so the run starts afresh once the scene has no errors.
    void startAfreshIfTorn();

    Workbench& bench;
    LiveSettings settings;
    bool blobMoves = false;           // has no effect while a design is drawn
    std::uint64_t firstRevision = 0;  // of this start; earlier results are ignored
    Frame front;
    Frame spare;
    LibraryText lastRefusal;
    std::uint64_t freshRevision = 0;  // of the start by startAfreshIfTorn()
    ViewChoice choice;
    double elementSize = 1;  // the stresses on the plate follow it
    bool playing = false;
    bool drawing = false;
    bool isKeptShown = false;
    bool isRunOver = false;  // the next iteration begins another run
    std::optional<Before> before;
    QElapsedTimer sinceNews;
    QTimer signOfLife;
    // The last member: it calls back until its destructor returns.
    Worker worker;
};
