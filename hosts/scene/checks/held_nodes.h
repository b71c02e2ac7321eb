#pragma once

#include "format/grid.h"
#include "format/scene.h"

namespace voxam::inline checks {

/// Which nodes of a grid the supports hold, in which direction.
class HeldNodes {
public:
    explicit HeldNodes(const Scene& scene) : inX(scene.width + 1, scene.height + 1), inY(inX) {
        for (const Support& support : scene.supports)
            for (int x = support.x.from; x <= support.x.to; ++x)
                for (int y = support.y.from; y <= support.y.to; ++y) {
                    if (support.fixX) inX.at(x, y) = 1;
                    if (support.fixY) inY.at(x, y) = 1;
                }
    }

    /// Whether a load does work at a node of its own.
    bool leaveWork(const Load& load, int x, int y) const {
        return (load.fx != 0 && inX.at(x, y) == 0) || (load.fy != 0 && inY.at(x, y) == 0);
    }

private:
    Mask inX;
    Mask inY;
};

}  // namespace voxam::inline checks
