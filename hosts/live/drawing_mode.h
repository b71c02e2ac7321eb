#pragma once

#include <QAction>
#include <QObject>
#include <memory>
#include <optional>

#include "live_run.h"
#include "plate_view.h"
#include "score_header.h"

/// Drawing a design by hand, which is scored as it grows, beside the optimiser's design of the same
/// volume.
class DrawingMode : public QObject {
    Q_OBJECT

public:
    /// The parts of the window that show it: the plate that is drawn on, and the rival's.
    struct Stage {
        PlateView& drawing;
        ScoreHeader& drawingHeader;
        PlateView& rival;
        ScoreHeader& rivalHeader;
    };

    DrawingMode(Workbench& workbench, LiveRun& liveRun, const Stage& shown);

    bool isActive() const { return active; }
    void setActive(bool isToBe);
    /// Draws both designs again, in the present colours.
    void show();

    QList<QAction*> actions() const { return {startEmpty, startFromDesign}; }

    const std::optional<ScoreResult>& score() const { return drawingScore; }
    const std::optional<ScoreResult>& rivalScore() const { return designScore; }
    /// Floating parts of the drawing, which its score leaves out.
    const Cells& floating() const { return floatingCells; }

private:
    void followScene();
    void takeScore(const ScoreResult& result);
    void takeRival(const ScoreResult& result);
    void showDrawing();
    void showRival();
    QString noteOnDrawing() const;

    Workbench& bench;
    LiveRun& run;
    Stage stage;
    QAction* startEmpty;
    QAction* startFromDesign;
    bool active = false;
    std::shared_ptr<const Field> drawing;  // as it is in the scene
    Cells floatingCells;
    std::optional<ScoreResult> drawingScore;
    std::optional<ScoreResult> designScore;
};
