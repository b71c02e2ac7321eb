#pragma once

#include <QAction>
#include <QObject>
#include <memory>
#include <optional>

#include "energy_legend.h"
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
        EnergyLegend& legend;
    };

    DrawingMode(Workbench& workbench, LiveRun& liveRun, const Stage& shown);

    bool isActive() const { return active; }
    void setActive(bool isToBe);
    /// Draws both designs again, in the present colours.
    void show();

    QList<QAction*> actions() const { return {startEmpty, startFromDesign}; }

    /// The drawing with the kept areas; null before the mode was active.
    const std::shared_ptr<const Field>& design() const { return drawing; }
    Match match() const;
    const std::optional<ScoreResult>& score() const { return drawingScore; }
    const std::optional<ScoreResult>& rivalScore() const { return designScore; }

private:
    void followScene();
    /// An edit of the task restarts the rival.
    void followRun();
    void forgetRival();
    void takeScore(const ScoreResult& result);
    void takeRival(const ScoreResult& result);
    void showDesign(PlateView& view, const Field& design, const std::optional<ScoreResult>& score,
                    const std::optional<EnergyScale>& common) const;
    std::optional<EnergyScale> scale() const;
    bool isOfThisGrid(const ScoreResult& result) const;
    bool isOfThisGrid(const Field& design) const;
    /// Whether an earlier design of the same run is the better rival.
    bool isBeaten(const ScoreResult& result) const;
    QString headline(const Match& match) const;
    QString detailsOfDrawing(const Match& match) const;
    void showRivalHeader() const;
    void showHeaders();

    Workbench& bench;
    LiveRun& run;
    Stage stage;
    QAction* startEmpty;
    QAction* startFromDesign;
    bool active = false;
    bool wasPlaying = false;
    std::shared_ptr<const Field> drawing;  // as it is in the scene
    std::optional<ScoreResult> drawingScore;
    std::optional<ScoreResult> designScore;  // the best one of its run
    bool isRivalSettled = false;
    bool isTaskNew = true;  // the drawing has no score for it
    std::uint64_t rivalRevision = 0;
};
