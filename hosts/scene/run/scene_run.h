#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "format/scene.h"
#include "run/iteration_record.h"
#include "run/optimiser.h"

namespace voxam::inline run {

/// Whether both scenes have the same grid, detail and number of load cases, so that a design of one
/// can continue in the other.
bool hasSamePlate(const Scene& one, const Scene& other);

/// A run of a scene: turns the scene and the number of the iteration into the library's calls. The
/// program, the window and the page drive it, so that a scene means the same in all of them.
///
/// The rules:
/// - A change of the timeline applies before the iteration that it names. A change of the penalty
///   alone does not update the problem, because each iteration passes the penalty.
/// - An iteration that the library refuses does not count. The run resumes at the next change of
///   the timeline, which may fix the problem, or ends if there is none.
/// - A blob moves if the host asks for it. Later updates leave it where it is, until a change or an
///   edit replaces it.
///
/// The library has one optimiser, so only one SceneRun can exist at a time. All calls come from one
/// thread.
class SceneRun {
public:
    static constexpr int ENDLESS = std::numeric_limits<int>::max();

    /// Starts with a uniform design. No iteration after `lastIteration` runs. Throws
    /// std::runtime_error if there is not enough memory.
    explicit SceneRun(std::shared_ptr<const Scene> scene, int lastIteration = ENDLESS);

    /// The result of an iteration.
    struct Outcome {
        /// Why the library refused to iterate, in its own words; empty on success.
        std::string refusal;
        IterationRecord record;  ///< of a refused iteration, only its number is valid
    };

    /// The iteration that iterate() will run. It is one more than the last one, but after a refusal
    /// it is the iteration of the next change. Empty when the run is over.
    std::optional<int> next() const;

    /// Makes the changes that are due and runs the iteration next(), which must exist. Throws
    /// std::runtime_error if there is not enough memory.
    Outcome iterate(bool movesBlob);

    /// Replaces the scene by one with the same plate while the design goes on. The changes that
    /// were made so far are made in the new scene as well. Sends nothing to the library if the
    /// problem is the same, or differs in its penalty alone, because each update unsettles the
    /// design for a few iterations. After a refusal, next() is again the iteration that was
    /// refused. The design starts again if the edit takes back a restart with another detail.
    void edit(std::shared_ptr<const Scene> scene);

    /// Changes of the timeline that were made.
    std::size_t changesMade() const { return made; }
    /// Whether next() can still reach a change of the timeline.
    bool hasChangesLeft() const;

    /// The scene with the changes that were made. Its blob is at its given place.
    const Scene& scene() const { return *current; }
    /// The present place of the blob; empty if it has not moved from its given place.
    const std::optional<Area>& movedBlob() const { return moved; }
    /// The design after the last successful iteration, 0 (void) to 1 (solid), at the resolution of
    /// the picture.
    const Field& material() const { return design; }

private:
    void makeChanges(int iteration);
    /// Makes the next change of the timeline in `current`.
    const Change& applyNext();
    /// The scene to send to the library, with the blob at its present place.
    std::shared_ptr<const Scene> sceneToSend() const;

    std::shared_ptr<const Scene> whole;
    std::shared_ptr<const Scene> current;  // `whole` itself until a change is made
    std::size_t made = 0;
    int last;
    int upcoming = 1;        // the iteration after the last successful one, or the refused one
    bool isRefused = false;  // whether the library refused iteration `upcoming`
    bool isSent = true;      // `current` was sent to the library
    std::optional<Area> moved;
    Field design;
    Optimiser optimiser;
};

}  // namespace voxam::inline run
