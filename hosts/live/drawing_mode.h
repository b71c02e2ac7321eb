#pragma once

#include <QAction>
#include <QObject>
#include <memory>
#include <optional>
#include <vector>

#include "drawing_clock.h"
#include "field_bar.h"
#include "live_run.h"
#include "match.h"
#include "plate_view.h"
#include "score_header.h"

/// Drawing a design by hand next to the optimiser's design. Each stroke is scored. The volume of
/// the scene and its kept areas limit both designs.
class DrawingMode : public QObject {
    Q_OBJECT

public:
    /// The parts of the window that show it: the plate that is drawn on, and the rival's.
    struct Stage {
        PlateView& drawing;
        ScoreHeader& drawingHeader;
        PlateView& rival;
        ScoreHeader& rivalHeader;
        FieldBar& fields;
    };

    DrawingMode(Workbench& workbench, LiveRun& liveRun, const DrawingClock& timer,
                const Stage& shown);

    bool isActive() const { return active; }
    void setActive(bool isToBe);
    /// Draws both designs again, in the present colours.
    void show();

    QList<QAction*> actions() const { return {startEmpty, startFromDesign}; }

    /// The drawing with the kept areas; null before the mode was active.
    const std::shared_ptr<const Field>& design() const { return drawing; }
    Match match() const;
    /// The values at a place of either plate.
    QString readDrawing(QPointF plate) const { return reading(drawing.get(), drawingScore, plate); }
    QString readRival(QPointF plate) const {
        return reading(designScore ? &designScore->design : nullptr, designScore, plate);
    }
    const std::optional<ScoreResult>& score() const { return drawingScore; }
    const std::optional<ScoreResult>& rivalScore() const { return designScore; }

private:
    void followScene();
    /// An edit of the task restarts the rival.
    void followRun();
    void forgetRival();
    void takeScore(const ScoreResult& result);
    void takeRival(const ScoreResult& result);
    void takeView(const ViewResult& result);
    void completeViews();
    /// The score, if its view is the one to be shown.
    const ScoreResult* viewed(const std::optional<ScoreResult>& score) const;
    QString reading(const Field* design, const std::optional<ScoreResult>& score,
                    QPointF plate) const;
    bool isOfThisGrid(const ScoreResult& result) const;
    bool isOfThisGrid(const Field& design) const;
    /// Whether an earlier design of the same run is the better rival.
    bool isBeaten(const ScoreResult& result) const;
    Rival rival() const;
    QString headline(const Match& match) const;
    QString headlineWhenTimeIsUp() const;

    /// The best drawing of a task within the time.
    struct Timed {
        std::shared_ptr<const Scene> task;
        double compliance = 0;
    };

    /// Takes part in the result of the timed drawing, if it was drawn in time.
    void offerToClock(const ScoreResult& result);
    /// The best drawing of the present task within the time.
    std::vector<Timed>::const_iterator timedHere() const;
    QString complianceOf(const voxam::Assessment& found) const;
    QString detailsOfDrawing(const Match& match) const;
    /// Whether the percentage may become the best one, and win a medal.
    bool counts(const Match& match) const;
    /// Why the drawing wins nothing, or no later one; empty if it may win.
    QString whyNotCounted(const Match& match) const;
    /// Whether the score belongs to the drawing and the problem as they are now.
    bool isScoreCurrent() const;
    QString bestSoFar() const;
    QString excess(const Field& design) const;
    void showRivalHeader() const;
    void showHeaders();

    Workbench& bench;
    LiveRun& run;
    const DrawingClock& clock;
    Stage stage;
    QAction* startEmpty;
    QAction* startFromDesign;
    bool active = false;
    std::shared_ptr<const Field> drawing;  // as it is in the scene
    std::optional<ScoreResult> drawingScore;
    std::optional<ScoreResult> designScore;  // the best one of its run
    std::vector<Timed> timed;  // the best within the time, of each task that was set meanwhile
    bool isRivalSettled = false;
    bool hasRivalGivenUp = false;
    bool isTaskNew = true;  // the drawing has no score for it
    std::uint64_t rivalRevision = 0;
};
