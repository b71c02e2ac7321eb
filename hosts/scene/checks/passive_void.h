#pragma once

#include <algorithm>
#include <optional>

#include "format/scene.h"

namespace voxam::inline checks {

/// The nodes whose elements are all kept void.
class PassiveVoid {
public:
    explicit PassiveVoid(const Scene& scene) : isVoid(scene.width, scene.height) {
        mark(isVoid, scene.passive.voids.cells);
    }

    bool surrounds(int x, int y) const {
        for (int i = std::max(0, x - 1); i <= std::min(x, isVoid.width - 1); ++i)
            for (int j = std::max(0, y - 1); j <= std::min(y, isVoid.height - 1); ++j)
                if (isVoid.at(i, j) == 0) return false;
        return true;
    }

    std::optional<Cell> firstInside(const Range& columns, const Range& rows) const {
        for (int x = columns.from; x <= columns.to; ++x)
            for (int y = rows.from; y <= rows.to; ++y)
                if (surrounds(x, y)) return Cell{x, y};
        return std::nullopt;
    }

private:
    Mask isVoid;
};

}  // namespace voxam::inline checks
