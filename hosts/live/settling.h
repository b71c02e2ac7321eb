#pragma once

#include <deque>
#include <optional>

#include "format/area.h"
#include "frame.h"

/// Decides when a run has settled, so that the window can stop computing.
class Settling {
public:
    /// Call this after an edit, or to continue a settled run.
    void restart();
    /// Call this after each iteration. `lastChange` is the iteration of the last change of the
    /// timeline, 0 without one: no run rests before it.
    void add(const Frame& frame, int lastChange);

    bool isSettled() const { return settled; }
    /// Whether it has settled only because it took too many iterations.
    bool hasGivenUp() const { return settled && !isStill(); }

private:
    bool isStill() const;

    std::deque<double> compliances;  // of the last iterations
    std::optional<voxam::Area> blob;
    int iterations = 0;
    bool settled = false;
};
