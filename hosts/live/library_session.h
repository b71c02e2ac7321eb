#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "format/scene.h"
#include "frame.h"
#include "run/scene_run.h"

/// How an iteration ended: with a picture, or with a text.
struct IterationOutcome {
    std::string text;  ///< empty on success, and only then there is a picture
    IterationNumbers numbers;
    /// After a text: the iteration of the timeline's change at which the run resumes, unless an
    /// edit comes first. Empty if only an edit helps.
    std::optional<int> resumesAt;
};

/// The library as this program uses it: one optimiser, and scores of designs. Use it on one thread.
class LibrarySession {
public:
    /// Runs a scene from now on. The design stays, unless the grid, its detail or the number of
    /// load cases changed, or `start` differs from before. Throws std::runtime_error if there is
    /// not enough memory.
    void optimise(std::shared_ptr<const voxam::Scene> scene, bool movesBlob, std::uint64_t start);

    /// Runs the next iteration. Call optimise() first. On success fills `frame`. Throws like
    /// optimise().
    IterationOutcome iterate(Frame& frame);

    /// Scores a design on the scene's grid or on a whole multiple of it.
    static ScoreResult score(const std::shared_ptr<const voxam::Scene>& scene,
                             const voxam::Field& design, const voxam::ViewChoice& choice = {});

    /// Scores a saved design of the optimiser in black and white, with warnings.
    static ScoreResult scoreSaved(const std::shared_ptr<const voxam::Scene>& scene,
                                  const voxam::Field& design, const voxam::ViewChoice& choice);

    /// Computes another view of a scored design. Analyses the design again if the score
    /// lacks the states that the view needs. Throws like optimise().
    static DesignView view(const ScoreResult& scored, const voxam::ViewChoice& choice);

    /// Scores the picture of an iteration in black and white, as the command-line program draws it.
    /// If `refinement` is above 0, draws it with this refinement of the grid and at most as much
    /// material as the scene's volume.
    ScoreResult scoreDesign(const Frame& frame, int refinement,
                            const voxam::ViewChoice& choice) const;

private:
    std::shared_ptr<const voxam::Scene> whole;
    std::optional<voxam::SceneRun> run;
    std::string refusal;  // of the last iteration
    bool blobMoves = false;
    std::uint64_t startNumber = 0;
};
