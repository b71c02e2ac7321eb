#pragma once

#include <voxam.h>

#include <string>
#include <vector>

#include "format/field.h"
#include "format/scene.h"

namespace voxam::inline run {

/// The library's optimiser. The library has only one, so only one object can exist at a time.
class Optimiser {
public:
    /// Starts with a uniform design. Throws std::runtime_error if there is not enough memory.
    ///
    /// Forces are passed to the library with the weights of their load cases, and divided by the
    /// largest weighted force of the scene and its timeline; see weightedLoadRecords().
    /// If the plate bends too far, the divisor is larger. It stays for the lifetime of this object,
    /// or until rescale().
    explicit Optimiser(const Scene& scene);
    Optimiser(const Optimiser&) = delete;
    Optimiser& operator=(const Optimiser&) = delete;
    ~Optimiser() { _DestroyVoxamApp(); }

    /// Divides forces by the largest force of this scene from the next update on, for hosts in
    /// which users edit forces. Compliances stay in the scene's units. Returns whether the divisor
    /// changed; an update is then needed.
    bool rescale(const Scene& scene);

    /// Sends the settings of the scene to the library; the design stays.
    void update(const Scene& scene);

    /// Starts with a uniform design, or keeps the design and restarts only the library's schedules.
    void restart(const Scene& scene, bool keepsDesign);

    struct Outcome {
        std::string message;    ///< empty on success; the other members are valid on success only
        double compliance = 0;  ///< of the design before the iteration
        double change = 0;      ///< largest change of a density
        RuntimeStat times = {};
    };

    /// Runs one iteration, and then moves the blob if `movesBlob`.
    Outcome iterate(double penalty, bool movesBlob);

    /// The design after the last successful iteration, 0 (void) to 1 (solid), at the resolution of
    /// the picture.
    Field material() const;

    /// Where the blob was after the last iteration that moved it.
    Area blob() const;

private:
    void start(const Scene& scene);
    Outcome iterateOnce(double penalty, bool movesBlob);

    Scene lastUpdate;        // the last update, kept until there is a design
    bool hasDesign = false;  // an iteration succeeded
    int width;
    int height;
    double softness = 1;  // the divisor of forces is the largest force times this
    double unitOfForce;
    int refinement = 1;  // picture cells per edge of an element
    int restartId = 1;
    std::vector<float> picture;
    std::vector<int> blobMask;
};

}  // namespace voxam::inline run
