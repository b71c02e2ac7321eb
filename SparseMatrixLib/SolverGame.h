#pragma once

#include <limits>
#include <memory>
#include <vector>

#include "Equilibrium.h"
#include "TopologyOptimizationComponentData.h"
#include "dense_matrix.h"

/// Single-shot solver: scores density fields that the host proposes, on a fixed plate with fixed
/// loads and supports. The first evaluation builds the stiffness pattern and analyses it; later
/// ones only refill the values and refactorise. One thread.
///
/// Arrays of densities and element values hold nelx * nely floats in element order, x * nely + y,
/// and belong to the caller. The density interpolation is linear in the stiffness and penalised
/// (SIMP, exponent 3) in the objective only; all existing scores depend on this difference.
class SolverGame {
public:
    /// The score of a design that cannot be solved.
    static constexpr float FAILED_OBJECTIVE = std::numeric_limits<float>::max();

    /// A plate of nelx x nely elements (negative counts as 0). ndopt and ndvis must be 1
    /// (assertion). Copies the records. Throws std::bad_alloc when the plate is too large.
    SolverGame(int nelx, int nely, int ndopt, int ndvis,
               const std::vector<TopologyOptimizationComponentData>& loads,
               const std::vector<TopologyOptimizationComponentData>& supports,
               int numberOfLoadCases);

    /// Evaluates one design: writes each element's penalised strain energy, summed over the load
    /// cases, and returns their sum, the compliance. When the plate cannot be solved the values are
    /// 0 and the result is the largest float. Densities that are null or not all finite cannot be
    /// solved; null element values are not written.
    float solve(const float* densities, float* elementValues);

    /// Assembles, applies loads and supports, factorises and solves every load case into U. False
    /// when a record does not fit the plate, when the supports leave the plate a rigid motion, or
    /// when the factorisation fails; nothing stays recorded then.
    bool solveStateCHOL(const float* densities);

    /// Fills the stiffness matrix. The first call also builds its pattern and analyses it.
    void assemble(const float* densities);

    /// Computes the objective and the element values from the displacements of the last solve.
    float setObjective(const float* densities, float* elementValues);

    /// Sets `count` numbers to zero; a count below 1 or a null array does nothing.
    static void zeroArray(int count, float* array);
    static void zeroArray(int count, double* array);

    int getNumberOfElements() const { return static_cast<int>(nelem); }

    /// Displacements of one load case after a successful solveStateCHOL, by degree of freedom.
    const kmat::DenseMatrix& getDisplacements(int loadCase) const {
        return equilibrium.U[loadCase];
    }

private:
    void addElementEnergies(const float* densities, const kmat::DenseMatrix& u, float& objective);

    Equilibrium equilibrium;
    unsigned nelem;
    [[maybe_unused]] float reserved = 1.3F;  ///< set and never read
    float E0 = 1.0F;                         ///< Young's modulus of solid material
    float Emin = 1e-13F;                     ///< Young's modulus of void
    double penal = 3.0;                      ///< penalisation exponent of the objective
    std::vector<int> loadCases;
    std::unique_ptr<float[]> elementEnergy;
};
