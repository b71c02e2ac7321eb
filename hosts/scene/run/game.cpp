#include "run/game.h"

#include <voxam.h>

#include <limits>
#include <stdexcept>
#include <vector>

#include "run/records.h"

Game::Game(const Scene& scene)
    : width(scene.width), height(scene.height), unitOfForce(forceUnit(scene)) {
    const auto loads = loadRecords(scene, unitOfForce);
    const auto supports = supportRecords(scene);
    _InitVoxamGame(width, height, 1, 1, static_cast<int>(loads.size() / 5), loads.data(),
                   static_cast<int>(supports.size() / 5), supports.data(), scene.loadCases);
}

Game::~Game() { _DestroyVoxamGame(); }

Score Game::score(const Field& densities) {
    // Without a solver nothing is written, which tells want of memory from want of supports.
    constexpr float unwritten = -1;
    std::vector<float> values(densities.values.size(), unwritten);
    Score result;
    result.compliance = _SolveVoxamGame(toElementOrder(densities).data(), values.data());
    if (values.front() == unwritten) throw std::runtime_error("not enough memory to solve");
    result.supported = result.compliance < std::numeric_limits<float>::max();
    result.energies = fromElementOrder(values, width, height);
    if (!result.supported) return result;
    const double unit = unitOfForce * unitOfForce;
    result.compliance *= unit;
    for (float& energy : result.energies.values) energy = static_cast<float>(energy * unit);
    return result;
}
