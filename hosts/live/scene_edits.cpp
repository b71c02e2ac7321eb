#include "scene_edits.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "format/grid.h"
#include "format/input_error.h"
#include "format/refinement.h"

using namespace voxam;

namespace {

// Directions in which a node is held.
constexpr std::uint8_t HELD_X = 1;
constexpr std::uint8_t HELD_Y = 2;
constexpr int FORCE_DIGITS = 7;  // decimals of a force's components, relative to the force

std::uint8_t heldDirections(bool fixX, bool fixY) {
    return static_cast<std::uint8_t>((fixX ? HELD_X : 0) | (fixY ? HELD_Y : 0));
}

Mask heldNodes(const Scene& scene) {
    Mask held(scene.width + 1, scene.height + 1);
    for (const Support& support : scene.supports)
        for (int x = support.x.from; x <= support.x.to; ++x)
            for (int y = support.y.from; y <= support.y.to; ++y)
                held.at(x, y) |= heldDirections(support.fixX, support.fixY);
    return held;
}

/// The largest rectangle of equal nodes that begins at (x, y) with the longer of the two sides.
Support rectangleAt(const Mask& held, int x, int y) {
    const std::uint8_t directions = held.at(x, y);
    const auto isSame = [&](int column, int row) { return held.get(column, row) == directions; };
    int right = x;
    int bottom = y;
    while (isSame(right + 1, y)) ++right;
    while (isSame(x, bottom + 1)) ++bottom;
    const auto isSameColumn = [&](int column) {
        for (int row = y; row <= bottom; ++row)
            if (!isSame(column, row)) return false;
        return true;
    };
    const auto isSameRow = [&](int row) {
        for (int column = x; column <= right; ++column)
            if (!isSame(column, row)) return false;
        return true;
    };
    if (right - x > bottom - y)
        for (bottom = y; isSameRow(bottom + 1);) ++bottom;
    else
        for (right = x; isSameColumn(right + 1);) ++right;
    return {{x, right}, {y, bottom}, (directions & HELD_X) != 0, (directions & HELD_Y) != 0};
}

std::vector<Support> supportsOf(Mask held) {
    std::vector<Support> supports;
    for (int x = 0; x < held.width; ++x)
        for (int y = 0; y < held.height; ++y) {
            if (held.at(x, y) == 0) continue;
            const Support support = rectangleAt(held, x, y);
            for (int column = support.x.from; column <= support.x.to; ++column)
                for (int row = support.y.from; row <= support.y.to; ++row) held.at(column, row) = 0;
            supports.push_back(support);
        }
    return supports;
}

/// Nodes that are already held stay held in the directions `keeps`.
void holdNodes(Scene& scene, const std::vector<Node>& nodes, std::uint8_t directions,
               std::uint8_t keeps) {
    const Mask before = heldNodes(scene);
    Mask held = before;
    for (const Node& node : nodes)
        if (held.contains(node.x, node.y))
            held.at(node.x, node.y) =
                static_cast<std::uint8_t>((held.at(node.x, node.y) & keeps) | directions);
    // Supports that nobody touched keep the form that they have in their file.
    if (!(held == before)) scene.supports = supportsOf(held);
}

bool actsOn(const Load& load, const Node& node) {
    return load.x.contains(node.x) && load.y.contains(node.y);
}

void checkLoadsRemain(const std::vector<Load>& loads) {
    if (loads.empty())
        throw InputError("The plate needs at least one load: add another one first, or move this");
}

/// Takes away a load case with its loads, and moves those above it down.
void withoutLoadCase(Settings& settings, int loadCase, bool hasLoads = true) {
    auto& loads = settings.loads;
    std::erase_if(loads, [&](const Load& load) { return load.loadCase == loadCase; });
    if (hasLoads) checkLoadsRemain(loads);
    for (Load& load : loads)
        if (load.loadCase > loadCase) --load.loadCase;
    auto& inUse = settings.loadCasesInUse;
    std::erase(inUse, loadCase);
    for (int& used : inUse)
        if (used > loadCase) --used;
    if (inUse.empty()) inUse.push_back(0);
}

/// Gives all cells of an element of the scene this density.
void fillElement(Field& drawing, const Scene& scene, const Cell& element, float density) {
    const int refinement = refinementOf(drawing, scene);
    for (int y = element.y * refinement; y < (element.y + 1) * refinement; ++y)
        for (int x = element.x * refinement; x < (element.x + 1) * refinement; ++x)
            drawing.at(x, y) = density;
}

}  // namespace

void moveLoad(Scene& scene, std::size_t index, Node node) {
    Load& load = scene.loads.at(index);
    const auto move = [](Range& range, int to, int last) {
        const int extent = range.to - range.from;
        range.from = std::clamp(to, 0, last - extent);
        range.to = range.from + extent;
    };
    move(load.x, node.x, scene.width);
    move(load.y, node.y, scene.height);
}

void paintSupports(Scene& scene, const std::vector<Node>& nodes, bool fixX, bool fixY) {
    // A roller adds its direction to those in which the node is already held.
    holdNodes(scene, nodes, heldDirections(fixX, fixY), HELD_X | HELD_Y);
}

void eraseSupports(Scene& scene, const std::vector<Node>& nodes) { holdNodes(scene, nodes, 0, 0); }

void eraseLoad(Scene& scene, std::size_t index) {
    auto loads = scene.loads;
    loads.erase(loads.begin() + static_cast<std::ptrdiff_t>(index));
    checkLoadsRemain(loads);
    scene.loads = std::move(loads);
}

void eraseLoads(Scene& scene, const std::vector<Node>& nodes) {
    auto loads = scene.loads;
    std::erase_if(loads, [&](const Load& load) {
        return std::any_of(nodes.begin(), nodes.end(),
                           [&](const Node& node) { return actsOn(load, node); });
    });
    checkLoadsRemain(loads);
    scene.loads = std::move(loads);
}

void setForce(Load& load, double force, double radians) {
    force = std::min(force, Scene::MAX_FORCE);
    // Relative to the force: small forces keep their magnitude as large ones do.
    const int power = force > 0 ? static_cast<int>(std::floor(std::log10(force))) : 0;
    const int decimals = FORCE_DIGITS - power;
    const double scale = std::pow(10.0, std::abs(decimals));
    const auto rounded = [=](double component) {
        // Dividing by a whole power of ten gives the double that files write with few digits.
        const double value = decimals < 0 ? std::round(component / scale) * scale
                                          : std::round(component * scale) / scale;
        return value == 0 ? 0.0 : std::clamp(value, -Scene::MAX_FORCE, Scene::MAX_FORCE);
    };
    load.fx = rounded(force * std::cos(radians));
    load.fy = rounded(force * std::sin(radians));
}

void paintPassive(Scene& scene, const Area& area, std::optional<PassiveKind> kind) {
    for (const PassiveKind each : PASSIVE_KINDS) {
        Area& changed = areaOf(scene.passive, each);
        each == kind ? addArea(changed, area, scene) : takeAway(changed, area, scene);
    }
}

void paintBlob(Scene& scene, const Area& blob, const Cells& cells, bool adds) {
    Area result = blob;
    if (adds)
        addArea(result, {newCells(blob, cells), {}}, scene);
    else
        takeAway(result, {cells, {}}, scene);
    scene.blob = std::move(result);
}

void keepAreas(Field& drawing, const Scene& scene) {
    for (const Area* voids : {&scene.passive.voids, &scene.blob})
        for (const Cell& cell : voids->cells) fillElement(drawing, scene, cell, 0);
    for (const Area* solids : {&scene.passive.solids, &scene.passive.secondSolids})
        for (const Cell& cell : solids->cells) fillElement(drawing, scene, cell, 1);
}

void paintDrawing(Scene& scene, const Cells& cells, float density) {
    if (!scene.densities) scene.densities = Field(scene.width, scene.height);
    for (const Cell& cell : cells)
        if (cell.x >= 0 && cell.y >= 0 && cell.x < scene.width && cell.y < scene.height)
            fillElement(*scene.densities, scene, cell, density);
    keepAreas(*scene.densities, scene);
}

void addLoadCase(Scene& scene) {
    if (scene.loadCaseCount() >= Scene::MAX_LOAD_CASES)
        throw InputError("There are " + std::to_string(scene.loadCaseCount()) +
                         " load cases, more are not allowed");
    scene.loadCasesInUse.push_back(scene.loadCaseCount());
    scene.loadCases.emplace_back();
}

void removeLoadCase(Scene& scene, int loadCase) {
    if (scene.loadCaseCount() == 1) throw InputError("The only load case cannot be deleted");
    Scene result = scene;
    result.loadCases.erase(result.loadCases.begin() + loadCase);
    withoutLoadCase(result, loadCase);
    for (Change& change : result.timeline) {
        // What a change leaves as it is has no loads of its own.
        if (change.has("loads") || change.has("loadCasesInUse"))
            withoutLoadCase(change.settings, loadCase, change.has("loads"));
    }
    scene = std::move(result);
}

void useLoadCase(Scene& scene, int loadCase, bool isUsed) {
    auto inUse = scene.loadCasesInUse;
    std::erase(inUse, loadCase);
    if (isUsed) inUse.push_back(loadCase);
    if (inUse.empty()) throw InputError("At least one load case has to be in use");
    std::sort(inUse.begin(), inUse.end());
    scene.loadCasesInUse = std::move(inUse);
}
