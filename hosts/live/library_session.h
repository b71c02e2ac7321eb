#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "format/scene.h"
#include "frame.h"
#include "run/optimiser.h"

/// Whether a design of one scene can go on in the other.
bool hasSamePlate(const Scene& one, const Scene& other);

/// How an iteration ended: with a picture, or with a text.
struct IterationOutcome {
    std::string text;  ///< empty on success, and only then there is a picture
    IterationNumbers numbers;
};

/// The library as this program uses it: one optimiser, and scores of designs. Lives on one thread.
class LibrarySession {
public:
    /// Brings the optimiser to a scene, with the changes of its timeline that were made already.
    /// The design goes on, unless the grid, its refinement or the
    /// number of load cases changed, or `start` is another number than before. Throws
    /// std::runtime_error when there is not enough memory; there is then no optimiser.
    void optimise(std::shared_ptr<const Scene> scene, bool movesBlob, std::uint64_t start);

    /// Runs one iteration, after the changes that the timeline has for it. On success fills
    /// `frame`. Throws as well.
    IterationOutcome iterate(Frame& frame);

    /// Scores a design on the scene's grid, or on one that is a whole number of times as fine.
    static ScoreResult score(const Scene& scene, const Field& design);

    /// Scores the picture that an iteration gave, as it would be drawn by hand with so many
    /// elements per edge of an element of the grid.
    ScoreResult scoreDesign(const Frame& frame, int refinement) const;

private:
    void makeChanges();
    /// The scene, its blob where it has got to.
    Scene sceneNow() const;

    std::shared_ptr<const Scene> whole;
    Scene current;  // with the changes that were made
    std::size_t changesMade = 0;
    std::optional<Optimiser> optimiser;
    bool isTold = false;  // the optimiser, all of the scene
    bool blobMoves = false;
    std::uint64_t startNumber = 0;
    int iterationCount = 0;
    std::optional<Area> movedBlob;
};
