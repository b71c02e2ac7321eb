#pragma once

#include <vector>

#include "format/field.h"
#include "format/scene.h"

namespace voxam::inline run {

/// A state of plane stress; tension is positive.
struct Stress {
    double x = 0;
    double y = 0;
    double shear = 0;

    double vonMises() const;
};

/// A plate under one load case.
struct PlateState {
    double compliance = 0;              ///< force times displacement, without the weight
    std::vector<double> energies;       ///< share of each element in the compliance
    std::vector<double> displacements;  ///< x and y (down) of each node; NaN without material
    std::vector<double> stresses;       ///< x, y and shear at the centre of each element
    int width = 0;                      ///< of the plate; elements and nodes run down its columns
    int height = 0;

    double energy(int x, int y) const { return energies[element(x, y)]; }
    Stress stress(int x, int y) const;
    double displacementX(int x, int y) const { return displacements[2 * node(x, y)]; }
    double displacementY(int x, int y) const { return displacements[2 * node(x, y) + 1]; }

private:
    std::size_t element(int x, int y) const { return index(x, y, height); }
    std::size_t node(int x, int y) const { return index(x, y, height + 1); }
    static std::size_t index(int x, int y, int rows) {
        return static_cast<std::size_t>(x) * static_cast<std::size_t>(rows) +
               static_cast<std::size_t>(y);
    }
};

/// The result of an analysis.
struct Analysis {
    enum Outcome {
        SOLVED,         ///< after leaving out loose material
        NOT_SUPPORTED,  ///< a load acts where there is no material, or on loose material
        NOT_ACCURATE    ///< the densities are too far apart for the digits of the computation
    };

    Outcome outcome = SOLVED;
    Field loose;                     ///< 1 for material that the supports leave free to move
    std::vector<PlateState> states;  ///< of each load case, if solved
};

/// The compliance of a plate under some of its load cases: the sum of weight times compliance.
/// `states` are those of all load cases of the scene.
double weightedCompliance(const std::vector<PlateState>& states, const Scene& scene,
                          const std::vector<int>& loadCases);

/// The share of an element in weightedCompliance().
double weightedEnergy(const std::vector<PlateState>& states, const Scene& scene,
                      const std::vector<int>& loadCases, int x, int y);

/// Analyses a design on a plate of its size: the stiffness of an element is its density times
/// the stiffness of solid material. Displacements and stresses are computed only if `withFields`.
/// Throws std::runtime_error if there is not enough memory. Call it from one thread at a time.
Analysis analyse(const Field& densities, const Scene& plate, bool withFields);

}  // namespace voxam::inline run
