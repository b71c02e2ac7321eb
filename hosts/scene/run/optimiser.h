#pragma once

#include <voxam.h>

#include <string>
#include <vector>

#include "format/field.h"
#include "format/scene.h"

namespace voxam::inline run {

/// The library's one optimiser, for as long as this object lives.
class Optimiser {
public:
    /// Starts with a uniform design. Throws std::runtime_error when there is not enough memory. The
    /// library is told forces in the unit of this scene's largest one (its timeline included), or
    /// in a larger one when the plate bends too far for it, for as long as this object lives.
    explicit Optimiser(const Scene& scene);
    Optimiser(const Optimiser&) = delete;
    Optimiser& operator=(const Optimiser&) = delete;
    ~Optimiser() { _DestroyVoxamApp(); }

    /// Takes the unit of force of this scene from the next update on: for hosts in which forces are
    /// edited, whatever the first ones were. Compliances stay in the scene's units. Returns whether
    /// the unit is another one, and so an update is needed.
    bool rescale(const Scene& scene);

    /// Sends everything that a scene says about the problem; the design stays.
    void update(const Scene& scene);

    /// Starts afresh, or goes on with the design and starts only the schedules of the library anew.
    void restart(const Scene& scene, bool keepsDesign);

    struct Outcome {
        std::string message;    ///< empty on success; the rest is valid on success only
        double compliance = 0;  ///< of the design before the iteration
        double change = 0;      ///< largest change of a density
        RuntimeStat times = {};
    };

    /// Runs one iteration, and then moves the blob when it is to move.
    Outcome iterate(double penalty, bool movesBlob);

    /// The design after the last successful iteration, 0 (void) to 1 (solid), at the resolution of
    /// the picture.
    Field material() const;

    /// Where the blob was after the last iteration that moved it.
    Area blob() const;

private:
    void start(const Scene& scene);
    Outcome iterateOnce(double penalty, bool movesBlob);

    Scene told;              // the last update, until there is a design
    bool hasDesign = false;  // an iteration succeeded
    int width;
    int height;
    double softness = 1;  // of the plate: that much larger is the unit than the largest force
    double unitOfForce;
    int refinement = 1;  // picture cells per edge of an element
    int restartId = 1;
    std::vector<float> picture;
    std::vector<int> blobMask;
};

}  // namespace voxam::inline run
