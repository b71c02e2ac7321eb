#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "frame.h"
#include "game.h"
#include "scene.h"

/// How an iteration ended: with a picture, or with a text.
struct IterationOutcome {
    std::string text;  ///< empty on success, and only then there is a picture
    IterationNumbers numbers;
};

/// The library as this program uses it: one optimiser, and one solver that scores drawings. Lives
/// on one thread.
class LibrarySession {
public:
    LibrarySession() = default;
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;
    ~LibrarySession();

    /// Brings the optimiser to a scene. The design goes on, unless the grid, its refinement or the
    /// number of load cases changed, or `start` is another number than before.
    void optimise(std::shared_ptr<const Scene> scene, bool movesBlob, std::uint64_t start);

    /// Runs one iteration. On success fills `frame`, whose buffers keep their memory.
    IterationOutcome iterate(Frame& frame);

    /// Iterations since the design started afresh.
    int iterations() const { return iterationCount; }

    /// Scores a design on the scene's grid, or on one that is a whole number of times as fine.
    ScoreResult score(std::shared_ptr<const Scene> scene, const Field& design);

private:
    void create();
    void update();

    std::shared_ptr<const Scene> optimised;  // what the optimiser was last told
    bool blobMoves = false;
    std::uint64_t startNumber = 0;
    int restartId = 0;
    int iterationCount = 0;
    bool blobHasMoved = false;
    std::vector<int> blobMask;

    std::optional<Game> game;
    std::shared_ptr<const Scene> scored;  // what the game was created for
    int scoredRefinement = 0;
};
