#include "checks/held_nodes.h"

HeldNodes::HeldNodes(const Scene& scene) : inX(scene.width + 1, scene.height + 1), inY(inX) {
    for (const Support& support : scene.supports)
        for (int x = support.x.from; x <= support.x.to; ++x)
            for (int y = support.y.from; y <= support.y.to; ++y) {
                if (support.fixX) inX.at(x, y) = 1;
                if (support.fixY) inY.at(x, y) = 1;
            }
}
