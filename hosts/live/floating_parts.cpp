#include "floating_parts.h"

#include <array>

#include "refinement.h"

namespace {

constexpr float SOLID = 0.5f;

/// Walks over the solid elements that are joined to places which were handed in.
class Walk {
public:
    explicit Walk(const Field& walked)
        : drawing(walked), isReached(drawing.width, drawing.height) {}

    void enter(int x, int y) {
        if (x < 0 || y < 0 || x >= drawing.width || y >= drawing.height) return;
        if (drawing.at(x, y) < SOLID || isReached.at(x, y) > 0) return;
        isReached.at(x, y) = 1;
        open.push_back({x, y});
    }

    /// The elements around nodes of a grid that the drawing refines.
    void enterAround(const Range& columns, const Range& rows, int refinement) {
        for (int x = columns.from * refinement - 1; x <= columns.to * refinement; ++x)
            for (int y = rows.from * refinement - 1; y <= rows.to * refinement; ++y) enter(x, y);
    }

    Cells unreached() {
        while (!open.empty()) {
            const Cell cell = open.back();
            open.pop_back();
            enter(cell.x - 1, cell.y);
            enter(cell.x + 1, cell.y);
            enter(cell.x, cell.y - 1);
            enter(cell.x, cell.y + 1);
        }
        Cells cells;
        for (int x = 0; x < drawing.width; ++x)
            for (int y = 0; y < drawing.height; ++y)
                if (drawing.at(x, y) >= SOLID && isReached.at(x, y) == 0) cells.push_back({x, y});
        return cells;
    }

private:
    const Field& drawing;
    Field isReached;
    Cells open;
};

}  // namespace

Cells floatingParts(const Field& drawing, const Scene& scene) {
    Walk walk(drawing);
    const int refinement = refinementOf(drawing, scene);
    for (const Load& load : scene.loads) walk.enterAround(load.x, load.y, refinement);
    for (const Support& support : scene.supports)
        walk.enterAround(support.x, support.y, refinement);
    return walk.unreached();
}
