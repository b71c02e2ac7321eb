#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "checks/assessment.h"
#include "format/scene.h"
#include "run/optimiser.h"

/// A scene that is open in a page, its run, and the last design that was scored. Replies are
/// objects for JavaScript; one with the key "error" tells in a text why nothing was done.
class SceneSession {
public:
    using Reply = nlohmann::json;

    /// Reads the text of a scene. `name` stands for the file in messages. A running optimisation
    /// goes on until startRun() or followScene().
    Reply open(const std::string& text, const std::string& name);

    /// What each element is, row by row from the top: 0 free, 1 void, 2 solid, 3 solid of the
    /// second kind; 4 more where the blob is.
    const std::vector<std::uint8_t>& elementKinds() const { return kinds; }

    /// Starts with a uniform design.
    Reply startRun();
    /// Sends the scene that was opened last to the run. The design goes on if the plate is the
    /// same.
    Reply followScene();
    Reply iterate(bool movesBlob);

    /// The design, 0 (void) to 255 (solid), row by row from the top. Empty before an iteration.
    const std::vector<std::uint8_t>& picture() const { return pixels; }

    /// Scores the run's design as it would be drawn with `refinement` cells per edge of an element,
    /// 0 for as fine as `voxam optimise` does. The design in black and white is scoredDesign().
    Reply scoreRun(int refinement);
    /// Scores a design of `refinement` cells per edge of an element: 1 solid, 0 void.
    Reply scoreDrawing(const std::uint8_t* cells, int refinement);

    const Field& scoredDesign() const { return scored; }
    /// Of the design that was scored last: each cell's share of the compliance, row by row. Empty
    /// when it is not supported, like displacements().
    const Field& energies() const { return work; }
    /// x and y of each node of that design, column by column, in the load case in which it gives
    /// way most. NaN where there is no material.
    const std::vector<double>& displacements() const { return bending; }

    /// Where the material of the run's design ends: {"contours": [{"hole", "corners": [x, y,
    /// ...]}]}
    Reply outline() const;

private:
    /// Makes the changes of the timeline that come before this iteration. Returns whether there
    /// were.
    bool makeChanges(int upcoming);
    void showMaterial();
    Reply score(Field design);
    void analyse(const Field& design);

    Scene scene;
    std::vector<std::uint8_t> kinds;
    std::unique_ptr<Optimiser> optimiser;
    Scene running;  // what the optimiser was told
    int iteration = 0;
    std::size_t changesMade = 0;
    Field material;
    std::vector<std::uint8_t> pixels;
    Field scored;
    Assessment assessment;
    Field work;
    std::vector<double> bending;
};
