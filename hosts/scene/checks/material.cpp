#include "checks/material.h"

#include <algorithm>

namespace voxam::inline checks {

bool hasMaterialAround(const Field& material, int x, int y) {
    for (int i = std::max(0, x - 1); i <= std::min(x, material.width - 1); ++i)
        for (int j = std::max(0, y - 1); j <= std::min(y, material.height - 1); ++j)
            if (material.at(i, j) > 0) return true;
    return false;
}

Cells takeConnected(Field& material, Cells cells) {
    Cells taken;
    while (!cells.empty()) {
        const Cell cell = cells.back();
        cells.pop_back();
        if (material.at(cell.x, cell.y) <= 0) continue;
        material.at(cell.x, cell.y) = 0;
        taken.push_back(cell);
        for (int x = std::max(0, cell.x - 1); x <= std::min(cell.x + 1, material.width - 1); ++x)
            for (int y = std::max(0, cell.y - 1); y <= std::min(cell.y + 1, material.height - 1);
                 ++y)
                cells.push_back({x, y});
    }
    return taken;
}

}  // namespace voxam::inline checks
