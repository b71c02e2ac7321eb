#include "SolverAnalysis.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "CheckedProduct.h"
#include "ElementDeformation.h"
#include "LooseElements.h"
#include "config_singleton.h"
#include "silent_cholmod.h"

using kmat::DenseMatrix;

namespace {

using Status = SolverAnalysis::Status;

// Of the energy norm; the last correction improves on it by its own factor once more.
constexpr double ACCURACY = 1e-15;
constexpr int MOST_CORRECTIONS = 60;

// The integer element matrix, in the order of ELEMENT_UPPER_PAIRS.
constexpr auto INTEGER_UPPER_ENTRIES = [] {
    std::array<double, ELEMENT_UPPER_ENTRIES> entries{};
    for (std::size_t i = 0; i < ELEMENT_UPPER_ENTRIES; ++i) {
        const auto& [row, column] = ELEMENT_UPPER_PAIRS[i];
        entries[i] = INTEGER_ELEMENT_MATRIX[ELEMENT_DOFS * row + column];
    }
    return entries;
}();

unsigned notNegative(int size) { return static_cast<unsigned>(std::max(size, 0)); }

// The work of forces on displacements.
double work(const double* forces, const DenseMatrix& displacements) {
    double sum = 0.0;
    for (unsigned i = 0; i < displacements.getRows(); ++i) sum += forces[i] * displacements(i, 0);
    return sum;
}

// A sum of many numbers, with the rounding errors of each step added at the end.
class CompensatedSum {
public:
    void add(double value) {
        const double next = sum + value;
        errors += std::fabs(sum) >= std::fabs(value) ? (sum - next) + value : (value - next) + sum;
        sum = next;
    }
    // Beyond the range of double the errors are differences of infinities.
    double value() const { return std::isfinite(sum) ? sum + errors : sum; }

private:
    double sum = 0.0;
    double errors = 0.0;
};

}  // namespace

SolverAnalysis::SolverAnalysis(int nelx, int nely,
                               const std::vector<TopologyOptimizationComponentData>& loads,
                               const std::vector<TopologyOptimizationComponentData>& supports,
                               int numberOfLoadCases)
    : equilibrium(notNegative(nelx), notNegative(nely), 1, numberOfLoadCases),
      held(equilibrium.ndof),
      touchesHeld(checkedProduct({equilibrium.nelx, equilibrium.nely})),
      loadCases(equilibrium.F.size()),
      moduli(touchesHeld.size()),
      hasForces(equilibrium.ndof) {
    equilibrium.loads = loads;
    equilibrium.supports = supports;
    valid = equilibrium.locateRecords(Equilibrium::truncatedDof);
    if (!valid) return;
    for (const unsigned dof : equilibrium.heldDofs) held[dof] = 1;
    findHeldElements();
    setForces();
}

void SolverAnalysis::findHeldElements() {
    for (unsigned e = 0; e < touchesHeld.size(); ++e) {
        const ElementDofs dofs =
            elementDofs(e / equilibrium.nely, e % equilibrium.nely, equilibrium.nodesY);
        touchesHeld[e] =
            std::any_of(dofs.begin(), dofs.end(), [this](unsigned dof) { return held[dof] != 0; });
    }
}

// Scaled by a power of two, which changes no digit, so that forces of any size solve alike.
void SolverAnalysis::setForces() {
    equilibrium.addLoads();
    for (std::size_t k = 0; k < loadCases.size(); ++k) {
        LoadCase& loadCase = loadCases[k];
        loadCase.displacements = SplitDisplacements(equilibrium.ndof);
        loadCase.forces.assign(equilibrium.F[k].begin(), equilibrium.F[k].end());
        double largest = 0.0;
        for (std::size_t dof = 0; dof < held.size(); ++dof) {
            if (held[dof]) loadCase.forces[dof] = 0.0;
            largest = std::max(largest, std::fabs(loadCase.forces[dof]));
        }
        loadCase.isLoaded = largest > 0.0;
        if (!loadCase.isLoaded) continue;
        loadCase.exponent = std::ilogb(largest);
        for (double& force : loadCase.forces) force = std::ldexp(force, -loadCase.exponent);
    }
}

SolverAnalysis::Answer SolverAnalysis::solve(const double* newModuli, const Results& results) {
    // 1. What is there, and what of it is held.
    if (!valid) {
        return {Status::INVALID,
                "A load or a support is invalid: its node is outside the plate, its load case does "
                "not exist, or its force is not finite"};
    }
    if (!takeModuli(newModuli)) {
        return {Status::INVALID, "A modulus is negative or not finite, or there are none"};
    }
    Answer material = checkMaterial(results.looseElements);
    if (material.status != Status::SOLVED && material.status != Status::LOOSE_PART) return material;

    // 2. The equations of the material that is held.
    if (largestModulus > 0.0) {
        const kmat::SilentCholmod silence;  // the status says it
        assemble();
        Answer solution = factorizeAndSolve();
        if (solution.status != Status::SOLVED) return solution;
    }

    // 3. What follows from the displacements.
    write(results);
    return material;
}

// Divided by the largest one, so that a plate of one material has moduli of 1 and 0.
bool SolverAnalysis::takeModuli(const double* newModuli) {
    if (moduli.empty()) return true;
    if (!newModuli || !std::all_of(newModuli, newModuli + moduli.size(), [](double modulus) {
            return std::isfinite(modulus) && modulus >= 0.0;
        })) {
        return false;
    }
    largestModulus = *std::max_element(newModuli, newModuli + moduli.size());
    std::transform(newModuli, newModuli + moduli.size(), moduli.begin(), [this](double modulus) {
        return modulus > 0.0 ? modulus / largestModulus : 0.0;
    });
    return true;
}

// Takes loose parts away, and looks whether every load acts on something that is left.
SolverAnalysis::Answer SolverAnalysis::checkMaterial(unsigned char* looseElements) {
    std::vector<unsigned char> solid(moduli.size());
    std::transform(moduli.begin(), moduli.end(), solid.begin(),
                   [](double modulus) { return modulus > 0.0; });
    const auto loose = findLooseElements(equilibrium.nelx, equilibrium.nely, solid, held);
    if (looseElements) std::copy(loose.begin(), loose.end(), looseElements);
    const auto at = [](const TopologyOptimizationComponentData& load) {
        return " at node (" + std::to_string(load.x) + ", " + std::to_string(load.y) + ")";
    };

    for (const auto& load : equilibrium.loads) {
        if (leavesWork(load) && !hasMaterialAt(equilibrium.nodeOf(load))) {
            return {Status::LOAD_WITHOUT_MATERIAL,
                    "There is no material under the load" + at(load)};
        }
    }
    const auto looseCount = std::count(loose.begin(), loose.end(), 1);
    if (looseCount == 0) return {Status::SOLVED, ""};
    for (std::size_t e = 0; e < loose.size(); ++e) {
        if (loose[e]) moduli[e] = 0.0;
    }
    for (const auto& load : equilibrium.loads) {
        if (leavesWork(load) && !hasMaterialAt(equilibrium.nodeOf(load))) {
            return {Status::MECHANISM,
                    "The supports leave the material free to move that is under "
                    "the load" +
                        at(load)};
        }
    }
    if (looseCount == std::count(solid.begin(), solid.end(), 1)) largestModulus = 0.0;
    return {Status::LOOSE_PART,
            "Left out, because the supports leave it free to move: material of " +
                std::to_string(looseCount) + (looseCount == 1 ? " element" : " elements")};
}

bool SolverAnalysis::leavesWork(const TopologyOptimizationComponentData& load) const {
    const std::size_t dof = 2 * std::size_t{equilibrium.nodeOf(load)};
    return (load.fx != 0.0F && !held[dof]) || (load.fy != 0.0F && !held[dof + 1]);
}

bool SolverAnalysis::hasMaterialAt(unsigned node) const {
    const unsigned x = node / equilibrium.nodesY;
    const unsigned y = node % equilibrium.nodesY;
    const auto isMaterial = [this](unsigned column, unsigned row) {
        return column < equilibrium.nelx && row < equilibrium.nely &&
               moduli[std::size_t{column} * equilibrium.nely + row] > 0.0;
    };
    return isMaterial(x - 1, y - 1) || isMaterial(x, y - 1) || isMaterial(x - 1, y) ||
           isMaterial(x, y);
}

void SolverAnalysis::assemble() {
    // 1. The pattern, once.
    equilibrium.fillWithZeros();
    if (diagonal.empty()) {
        diagonal.resize(equilibrium.ndof);
        for (unsigned dof = 0; dof < equilibrium.ndof; ++dof) {
            diagonal[dof] = equilibrium.K.find(dof, dof);
        }
    }

    // 2. The elements; nothing couples with what is held.
    double* const values = equilibrium.K.getValues();
    std::fill(hasForces.begin(), hasForces.end(), 0);
    forEachElement([&](std::size_t e, const ElementDofs& dofs) {
        if (touchesHeld[e]) {
            addHeldElement(e, dofs);
        } else {
            const ElementEntries& entries = equilibrium.elementEntries[e];
            const double modulus = moduli[e];
            for (std::size_t i = 0; i < ELEMENT_UPPER_ENTRIES; ++i) {
                values[entries[i]] += modulus * INTEGER_UPPER_ENTRIES[i];
            }
        }
        for (const unsigned dof : dofs) hasForces[dof] = 1;
    });

    // 3. Rows of the identity, of the size of the others.
    for (std::size_t dof = 0; dof < held.size(); ++dof) {
        if (held[dof] || !hasForces[dof]) values[diagonal[dof]] = 1.0;
    }
    equilibrium.analyzeOnce();
}

// Without the entries of degrees of freedom that are held.
void SolverAnalysis::addHeldElement(std::size_t e, const ElementDofs& dofs) {
    double* const values = equilibrium.K.getValues();
    for (std::size_t i = 0; i < ELEMENT_UPPER_ENTRIES; ++i) {
        const auto& [a, b] = ELEMENT_UPPER_PAIRS[i];
        if (held[dofs[a]] || held[dofs[b]]) continue;
        values[equilibrium.elementEntries[e][i]] += moduli[e] * INTEGER_UPPER_ENTRIES[i];
    }
}

SolverAnalysis::Answer SolverAnalysis::factorizeAndSolve() {
    Answer notConverged = {
        Status::NOT_CONVERGED,
        "The moduli are too far apart: the displacements cannot be computed accurately"};
    if (!equilibrium.factor.isInitialized()) throw std::bad_alloc();
    if (!equilibrium.factorize()) {
        const std::string reason = kmat::ConfigSingleton::getLastError();
        if (reason.find("positive definite") == std::string::npos) throw std::bad_alloc();
        return notConverged;
    }
    for (int k = 0; k < equilibrium.numLoadCases(); ++k) {
        if (refine(k) != Status::SOLVED) return notConverged;
    }
    return {Status::SOLVED, ""};
}

// Each correction is smaller than the one before by the accuracy of the factor. So the error after
// the last one is known before it is computed once more.
SolverAnalysis::Status SolverAnalysis::refine(int index) {
    LoadCase& loadCase = loadCases[static_cast<std::size_t>(index)];
    loadCase.displacements.setZero();
    if (!loadCase.isLoaded) return Status::SOLVED;
    DenseMatrix& force = equilibrium.F[static_cast<std::size_t>(index)];
    DenseMatrix& correction = equilibrium.U[static_cast<std::size_t>(index)];
    force.set(loadCase.forces.data());
    double total = 0.0;
    double before = 0.0;
    for (int count = 0; count < MOST_CORRECTIONS; ++count) {
        if (!equilibrium.solveLoadCase(index)) throw std::bad_alloc();
        const double energyNorm = std::sqrt(std::fabs(work(force.begin(), correction)));
        loadCase.displacements.add(correction.begin());
        if (count == 0) {
            total = energyNorm;
        } else {
            if (!(energyNorm < 0.5 * before)) return Status::NOT_CONVERGED;
            if (energyNorm * (energyNorm / before) <= ACCURACY * total) return Status::SOLVED;
        }
        before = energyNorm;
        loadCase.displacements.residual(equilibrium.nelx, equilibrium.nely, moduli, loadCase.forces,
                                        workspace, force.begin());
        for (std::size_t dof = 0; dof < held.size(); ++dof) {
            if (held[dof]) force(static_cast<unsigned>(dof), 0) = 0.0;
        }
    }
    return Status::NOT_CONVERGED;
}

double SolverAnalysis::unitDisplacement(const LoadCase& loadCase) const {
    return std::ldexp(ELEMENT_STIFFNESS_DIVISOR / largestModulus, loadCase.exponent);
}

void SolverAnalysis::write(const Results& results) const {
    const std::size_t elements = moduli.size();
    for (std::size_t k = 0; k < loadCases.size(); ++k) {
        double* const energies = results.energies ? results.energies + k * elements : nullptr;
        const double compliance = writeEnergies(loadCases[k], energies);
        if (results.compliances) results.compliances[k] = compliance;
        if (results.displacements) {
            writeDisplacements(loadCases[k], results.displacements + k * held.size());
        }
        if (results.stresses) writeStresses(loadCases[k], results.stresses + 3 * k * elements);
    }
}

// The compliance is the sum of the energies, none of which is negative: as the work of the loads it
// would be a small difference of large numbers wherever loads balance on a part that moves far.
double SolverAnalysis::writeEnergies(const LoadCase& loadCase, double* energies) const {
    if (energies) std::fill_n(energies, moduli.size(), 0.0);
    if (!loadCase.isLoaded) return 0.0;
    const double unit = std::ldexp(unitDisplacement(loadCase), loadCase.exponent);
    CompensatedSum sum;
    forEachElement([&](std::size_t e, const ElementDofs& dofs) {
        const double energy =
            unit * (moduli[e] * deformationEnergy(loadCase.displacements.deformation(dofs)));
        if (energies) energies[e] = energy;
        sum.add(energy);
    });
    return sum.value();
}

void SolverAnalysis::writeDisplacements(const LoadCase& loadCase, double* displacements) const {
    std::fill_n(displacements, held.size(), std::numeric_limits<double>::quiet_NaN());
    if (largestModulus == 0.0) return;
    const double unit = unitDisplacement(loadCase);
    for (std::size_t dof = 0; dof < held.size(); ++dof) {
        if (hasForces[dof]) displacements[dof] = unit * loadCase.displacements.get(dof);
    }
}

void SolverAnalysis::writeStresses(const LoadCase& loadCase, double* stresses) const {
    std::fill_n(stresses, 3 * moduli.size(), 0.0);
    if (!loadCase.isLoaded) return;
    const double unit = std::ldexp(1.0, loadCase.exponent);
    forEachElement([&](std::size_t e, const ElementDofs& dofs) {
        const auto stress = centreStresses(loadCase.displacements.deformation(dofs));
        for (std::size_t i = 0; i < stress.size(); ++i) {
            stresses[3 * e + i] = unit * (moduli[e] * stress[i]);
        }
    });
}

// Calls visit(element, degrees of freedom) for each element with material.
template <typename Visit>
void SolverAnalysis::forEachElement(const Visit& visit) const {
    if (largestModulus == 0.0) return;
    std::size_t e = 0;
    for (unsigned x = 0; x < equilibrium.nelx; ++x) {
        for (unsigned y = 0; y < equilibrium.nely; ++y, ++e) {
            if (moduli[e] > 0.0) visit(e, elementDofs(x, y, equilibrium.nodesY));
        }
    }
}
