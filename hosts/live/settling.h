#pragma once

#include <deque>
#include <optional>

#include "format/area.h"
#include "frame.h"

using namespace voxam;

/// Judges when a run has come to rest, so that nothing is computed that nobody would see.
class Settling {
public:
    /// After an edit, or where an old run is to go on.
    void restart();
    /// After each iteration. `lastChange` is the iteration of the last change of the timeline, 0
    /// without one: no run rests before it.
    void add(const Frame& frame, int lastChange);

    bool isSettled() const { return settled; }

private:
    bool isStill() const;

    std::deque<double> compliances;  // of the last iterations
    std::optional<Area> blob;
    int iterations = 0;
    bool settled = false;
};
