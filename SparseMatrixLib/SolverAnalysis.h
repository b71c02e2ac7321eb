#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "Equilibrium.h"
#include "SplitDisplacements.h"
#include "TopologyOptimizationComponentData.h"

/// Analyses designs on a fixed plate with fixed loads and supports, with the accuracy of a double.
/// The first solve orders the equations. Later solves only refill and refactorise them, because
/// void and held degrees of freedom stay in the system as rows of the identity.
///
/// On a slender plate, the condition number makes a plain solution inaccurate. Two things keep the
/// results exact. The stiffness matrix of a black and white design consists of whole numbers and is
/// assembled without rounding; the loads are scaled instead. The solution is refined with residuals
/// of almost twice the digits (SplitDisplacements) until it no longer changes.
class SolverAnalysis {
public:
    /// The values are those of VOXAM_ANALYSIS_... in voxam.h.
    enum class Status {
        SOLVED,
        LOOSE_PART,
        LOAD_WITHOUT_MATERIAL,
        MECHANISM,
        INVALID,
        OUT_OF_MEMORY,
        NOT_CONVERGED,
        NONE,
    };

    struct Answer {
        Status status;
        std::string text;  ///< empty when solved
    };

    /// The host's arrays for the results; see _SolveVoxamAnalysis. A null array is not written.
    struct Results {
        double* compliances = nullptr;
        double* displacements = nullptr;
        double* energies = nullptr;
        double* stresses = nullptr;
        unsigned char* looseElements = nullptr;
    };

    /// A plate of nelx x nely elements; a negative number counts as 0. Throws std::bad_alloc when
    /// the plate is too large.
    SolverAnalysis(int nelx, int nely, const std::vector<TopologyOptimizationComponentData>& loads,
                   const std::vector<TopologyOptimizationComponentData>& supports,
                   int numberOfLoadCases);

    /// Analyses the design with these moduli, one for each element; 0 means no element. May throw
    /// std::bad_alloc; then at most looseElements was written.
    Answer solve(const double* moduli, const Results& results);

private:
    struct LoadCase {
        std::vector<double> forces;  ///< what acts on free degrees of freedom, over 2^exponent
        int exponent = 0;
        bool isLoaded = false;
        SplitDisplacements displacements{0};  ///< over unitDisplacement()
    };

    void findHeldElements();
    void setForces();

    bool takeModuli(const double* moduli);
    Answer checkMaterial(unsigned char* looseElements);
    bool leavesWork(const TopologyOptimizationComponentData& load) const;
    bool hasMaterialAt(unsigned node) const;

    void assemble();
    void addHeldElement(std::size_t e, const ElementDofs& dofs);
    Answer factorizeAndSolve();
    Status refine(int index);

    void write(const Results& results) const;
    double writeEnergies(const LoadCase& loadCase, double* energies) const;
    void writeDisplacements(const LoadCase& loadCase, double* displacements) const;
    void writeStresses(const LoadCase& loadCase, double* stresses) const;
    template <typename Visit>
    void forEachElement(const Visit& visit) const;

    double unitDisplacement(const LoadCase& loadCase) const;

    Equilibrium equilibrium;
    bool valid;                       ///< the records fit the plate
    std::vector<unsigned char> held;  ///< by degree of freedom: a support holds it
    std::vector<unsigned char>
        touchesHeld;            ///< by element: some of its degrees of freedom are held
    std::vector<int> diagonal;  ///< where K holds it
    std::vector<LoadCase> loadCases;
    SplitDisplacements::Workspace workspace;

    // The design of the solve.
    double largestModulus = 0.0;
    std::vector<double> moduli;            ///< over the largest one; 0 for loose elements
    std::vector<unsigned char> hasForces;  ///< by degree of freedom: some element resists it
};
