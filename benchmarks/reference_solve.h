#pragma once

#include <vector>

#include "TopologyOptimizationComponentData.h"
#include "factor.h"
#include "plate_stiffness.h"
#include "suite.h"
#include "support/plates.h"

inline std::vector<TopologyOptimizationComponentData> components(const test::Records& records) {
    return TopologyOptimizationComponentData::load(records.data(), records.count());
}

/// Squares of 4 x 4 elements, solid and of a second density in turn.
template <typename Number>
std::vector<Number> chequeredDesign(const Plate& plate, Number second) {
    std::vector<Number> densities;
    for (int x = 0; x < plate.width; ++x) {
        for (int y = 0; y < plate.height; ++y) {
            densities.push_back((x / 4 + y / 4) % 2 == 0 ? Number{1} : second);
        }
    }
    return densities;
}

/// What an iteration of the optimiser takes for the factorisation and the solution of a plate that
/// is held and loaded: the same calls on an equal matrix.
class ReferenceSolve {
public:
    ReferenceSolve(const Plate& plate, const test::Settings& settings,
                   const std::vector<double>& moduli)
        : stiffness(plate, moduli), force(plate.dofs(), 1, 0.0) {
        stiffness.refillByEntries(false);
        const auto nodesY = static_cast<unsigned>(plate.height) + 1;
        for (const auto& support : components(settings.supports)) {
            const unsigned d =
                2 * static_cast<unsigned>(support.x * nodesY + support.y) + (support.fx > 0.0F);
            stiffness.getMatrix().getValue(d, d) += 1e8;
        }
        for (const auto& load : components(settings.loads)) {
            force(2 * static_cast<unsigned>(load.x * nodesY + load.y) + 1, 0) = load.fy;
        }
        factor = stiffness.getMatrix().analyze();
    }

    void factorize() { factor.factorize(stiffness.getMatrix()); }
    void solve() const { kmat::solve(factor, force); }

private:
    PlateStiffness stiffness;
    kmat::DenseMatrix force;
    kmat::Factor factor;
};
