#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "checks/assessment.h"
#include "format/scene.h"
#include "run/scene_run.h"

using namespace voxam;

/// A scene that is open in a page, its run, and the last design that was scored. Replies are
/// objects for JavaScript. A reply with the key "error" states why nothing was done.
class SceneSession {
public:
    using Reply = nlohmann::json;

    /// Reads the text of a scene. `name` is the file's name in messages. A running optimisation
    /// goes on until startRun() or followScene().
    Reply open(const std::string& text, const std::string& name);

    /// The same scene on another grid, as {"scene": TEXT}. The one that is open stays as it is.
    Reply resized(int width, int height) const;

    /// What each element is, row by row from the top: 0 free, 1 void, 2 solid, 3 solid of the
    /// second kind; 4 more where the blob is.
    const std::vector<std::uint8_t>& elementKinds() const { return kinds; }

    /// Starts with a uniform design.
    Reply startRun();
    /// Sends the scene that was opened last to the run. The design goes on if the plate is the
    /// same. Both reply like iterate() about the changes of the timeline.
    Reply followScene();
    /// Runs the next iteration. Replies with the changes of the timeline that were made so far, and
    /// with the scene in force when this iteration made one. After a refusal, "resumesAt" is the
    /// iteration at which the run goes on; without it, only an edit helps.
    Reply iterate(bool movesBlob);

    /// The design, 0 (void) to 1 (solid). Empty before an iteration.
    const Field& material() const;

    /// Scores the run's design as it would be drawn with `refinement` cells per edge of an element,
    /// 0 for as fine as `voxam optimise` does. The design in black and white is scoredDesign().
    /// "warnings" are those that `voxam optimise` prints of its result.
    Reply scoreRun(int refinement);
    /// Scores a design of `refinement` cells per edge of an element: 1 solid, 0 void.
    Reply scoreDrawing(const std::uint8_t* cells, int refinement);

    const Field& scoredDesign() const { return scored; }
    /// Of the design that was scored last: each cell's share of the compliance, row by row. Null
    /// when it is not supported, like displacements().
    const Field* energies() const;
    /// x and y of each node of that design, column by column, in the load case in which it gives
    /// way most. NaN where there is no material.
    const std::vector<double>* displacements() const;

    /// Where the material of the run's design ends, at the level of its black and white: {"width",
    /// "height", "contours": [{"hole", "corners": [x, y, ...]}]}. Lengths are millimetres. Of a
    /// scene that describes half a plate, the outline of the whole.
    Reply outline() const;
    /// The same for a drawing, as scoreDrawing() takes it.
    Reply outline(const std::uint8_t* cells, int refinement) const;

private:
    const SceneRun& runWithDesign() const;
    Reply changesMade(bool isNews) const;
    Field drawing(const std::uint8_t* cells, int refinement) const;
    Reply score(Field design, const Scene& plate);

    std::shared_ptr<const Scene> scene = std::make_shared<Scene>();
    std::vector<std::uint8_t> kinds;
    std::optional<SceneRun> run;
    std::shared_ptr<const Scene> followed;  // by the run
    IterationRecord latest;                 // of the run, when it has a design
    Field scored;
    Assessment assessment;
};
