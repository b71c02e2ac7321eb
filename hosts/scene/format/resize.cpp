#include "format/resize.h"

#include <cmath>
#include <utility>

#include "format/limits.h"

namespace voxam::inline format {

namespace {

Range resized(const Range& range, int before, int after) {
    const auto place = [&](int at) {
        return static_cast<int>(std::lround(static_cast<double>(at) * after / before));
    };
    return {place(range.from), place(range.to)};
}

/// Changes what a scene and a change of its timeline have in common.
class Resizing {
public:
    Resizing(const Scene& scene, int newWidth, int newHeight)
        : oldWidth(scene.width), oldHeight(scene.height), width(newWidth), height(newHeight) {}

    template <typename Component>
    void operator()(std::vector<Component>& components) const {
        for (Component& component : components) {
            component.x = resized(component.x, oldWidth, width);
            component.y = resized(component.y, oldHeight, height);
        }
    }

    void operator()(PassiveAreas& passive) const {
        for (Area* area : {&passive.voids, &passive.solids, &passive.secondSolids}) (*this)(*area);
    }

    void operator()(Area& area) const {
        Field marks(oldWidth, oldHeight);
        for (const Cell& cell : area.cells) marks.at(cell.x, cell.y) = 1;
        (*this)(marks);
        area = {};
        for (int x = 0; x < width; ++x)
            for (int y = 0; y < height; ++y)
                if (marks.at(x, y) == 1) area.cells.push_back({x, y});
    }

    void operator()(Settings& settings) const {
        (*this)(settings.loads);
        (*this)(settings.supports);
        (*this)(settings.passive);
        (*this)(settings.blob);
    }

    /// Each new cell takes what lies at its centre.
    void operator()(Field& field) const {
        const int refinement = field.width / oldWidth;
        Field result(width * refinement, height * refinement);
        for (int y = 0; y < result.height; ++y)
            for (int x = 0; x < result.width; ++x)
                result.at(x, y) = field.at((2 * x + 1) * field.width / (2 * result.width),
                                           (2 * y + 1) * field.height / (2 * result.height));
        field = std::move(result);
    }

private:
    int oldWidth;
    int oldHeight;
    int width;
    int height;
};

}  // namespace

void resizeGrid(Scene& scene, int width, int height) {
    const Resizing resize(scene, width, height);
    Scene result = scene;
    resize(static_cast<Settings&>(result));
    if (result.densities) resize(*result.densities);
    for (Change& change : result.timeline) resize(change.settings);
    result.width = width;
    result.height = height;
    checkLimits(result);
    scene = std::move(result);
}

}  // namespace voxam::inline format
