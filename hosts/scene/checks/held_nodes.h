#pragma once

#include "format/grid.h"
#include "format/scene.h"

/// Which nodes of a grid the supports hold, in which direction.
class HeldNodes {
public:
    explicit HeldNodes(const Scene& scene);

    /// Whether a load does work at a node of its own.
    bool leaveWork(const Load& load, int x, int y) const {
        return (load.fx != 0 && inX.at(x, y) == 0) || (load.fy != 0 && inY.at(x, y) == 0);
    }

private:
    Mask inX;
    Mask inY;
};
