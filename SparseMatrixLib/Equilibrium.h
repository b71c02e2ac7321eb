// The linear-elastic equilibrium of a plate, K u = f, as all solvers set it up and solve it.
#pragma once

#include <memory>
#include <vector>

#include "StiffnessPattern.h"
#include "TopologyOptimizationComponentData.h"
#include "dense_matrix.h"
#include "factor.h"
#include "sparse_matrix.h"

/// Loads and supports of a plate of nelx x nely elements, its stiffness matrix with the factor, and
/// the displacements of every load case. The pattern of the matrix never changes, so it is built
/// and analysed once.
///
/// A solve calls the operations in the order of this header; it may analyse before it holds. The
/// solvers differ in two rules, which they pass in: how to round the direction of a support, and
/// how a support changes the stiffness. A solver adds the stiffness of its elements to K between
/// fillWithZeros() and hold().
struct Equilibrium {
    /// How a solver reads the direction of a support: the degree of freedom that a support at
    /// `node` holds, or a number outside the system when it holds none.
    using HeldDof = double (*)(unsigned node, float direction);

    /// Truncates the direction towards zero: 0.9 and -0.5 hold x, 1.7 holds y.
    static double truncatedDof(unsigned node, float direction);

    /// How a support changes the stiffness on the diagonal (penalty method).
    enum class SupportStiffness { REPLACES, ADDS };

    /// Stiffness on the diagonal of a supported degree of freedom.
    static constexpr double SUPPORT_STIFFNESS = 1.0e8;

    /// Forces and displacements are NaN until they are set. KE holds the matrices of an element
    /// that is split into subdivision x subdivision sub-elements. Throws std::bad_alloc when a size
    /// exceeds the range of int or memory is short. A negative numLoadCases counts as 0.
    Equilibrium(unsigned nelx, unsigned nely, unsigned subdivision, int numLoadCases);

    int numLoadCases() const { return static_cast<int>(F.size()); }

    /// Whether every record fits the plate: its node is on the grid, a load names a load case that
    /// exists and has finite forces, a support holds a degree of freedom of the system. Remembers
    /// the degrees of freedom that are held, in the order of the supports.
    bool locateRecords(HeldDof heldDof);

    /// Whether the held degrees of freedom leave the plate as a whole no rigid motion.
    bool isHeldAsRigidBody() const;

    /// Clears the force vectors, then adds the loads.
    void addLoads();

    /// Makes the stiffness matrix zero; the first call builds its pattern, and returns true.
    bool fillWithZeros();

    /// Imposes the supports on the diagonal of the filled matrix.
    void hold(SupportStiffness rule);

    /// Analyses the pattern, unless that was done.
    void analyzeOnce();

    /// Factorises the stiffness matrix. False on failure; nothing stays recorded then.
    bool factorize();

    /// Solves one load case into U. On failure returns false, and U keeps its values.
    bool solveLoadCase(int loadCase);

    /// The number of the node of a located record.
    unsigned nodeOf(const TopologyOptimizationComponentData& record) const;

    unsigned nelx;
    unsigned nely;
    unsigned nodesX;
    unsigned nodesY;
    unsigned ndof;
    bool assembled = false;  ///< K has its pattern
    std::vector<TopologyOptimizationComponentData> loads;
    std::vector<TopologyOptimizationComponentData> supports;
    std::vector<unsigned> heldDofs;  ///< of the supports, as last located
    std::unique_ptr<double[]> KE;    ///< subdivision^2 element matrices
    kmat::SparseMatrix K;
    std::vector<ElementEntries> elementEntries;  ///< where K holds each element's upper triangle
    kmat::Factor factor;
    std::vector<kmat::DenseMatrix> F;  ///< forces per load case, ndof values
    std::vector<kmat::DenseMatrix> U;  ///< displacements per load case, ndof values

private:
    bool isOnGrid(const TopologyOptimizationComponentData& record) const;
    bool isValidLoad(const TopologyOptimizationComponentData& load) const;
};
