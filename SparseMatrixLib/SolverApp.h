#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Blob.h"
#include "ConeFilter.h"
#include "DensityPowers.h"
#include "Equilibrium.h"
#include "GridNumbering.h"
#include "IterationTimers.h"
#include "PassiveBlock.h"
#include "Picture.h"
#include "StrainEnergies.h"
#include "TopologyOptimizationComponentData.h"
#include "dense_matrix.h"

/// The interactive topology optimiser: the whole state of one design problem on a rectangular plate
/// of square bilinear elements, advanced one iteration per call. Loads, supports, passive cells and
/// blob cells are given on the coarse grid of DesignGrids, the design lives on the fine grid and
/// the picture on the mesh grid. Every vector is a column of doubles, one per cell of its grid.
///
/// The sources follow an iteration: SolverApp.cpp state and construction; ...Settings what the host
/// changes; ...Iteration the drivers; ...Assembly the stiffness; ...Analysis the state solve,
/// compliance and sensitivities; ...DesignUpdate the optimality criteria; ...Result what the host
/// gets. Blob and Picture have what only they need.
class SolverApp {
public:
    /// A uniform design of the given volume fraction. updateSettings() must follow before the first
    /// iteration. Throws std::bad_alloc when a size exceeds the range of int or memory is short,
    /// and std::invalid_argument when the volume fraction is not finite.
    SolverApp(unsigned nelx, unsigned nely, unsigned subdivision, unsigned meshFactor,
              float volumeFraction, int numLoadCases);

    SolverApp(const SolverApp&) = delete;
    SolverApp& operator=(const SolverApp&) = delete;
    ~SolverApp() = default;

    // --- SolverApp.cpp: state and filters -----------------------------------------------------

    /// Restores the uniform starting design; the counters stay.
    void reset();

    /// Sets the iteration counters to 0; the design stays.
    void restartIteration();

    /// The coarse cell of fine cell i, see DesignGrids.
    int getCoarseGridIndex(int i) const { return grids.getCoarseGridIndex(i); }

    /// Sum of all entries in index order.
    static double sum(const kmat::DenseMatrix& v);

    /// x limited to lo .. hi.
    static double clamp(double x, double lo, double hi);
    /// x limited to lo1 .. hi1 and then to lo2 .. hi2.
    static double clamp(double x, double lo1, double lo2, double hi1, double hi2);

    void setVolumeFraction(double fraction) { volumeFraction = fraction; }
    void setPenalty(double exponent) { penalty = exponent; }

    /// Builds the filter of the fine grid. Blob and Picture build those of the other grids.
    void setFilterMat();

    // --- SolverAppSettings.cpp ----------------------------------------------------------------

    /// Takes over everything that the host can change while the optimiser runs and withdraws an
    /// error text. The design is kept. Throws std::bad_alloc when memory is short; nothing has
    /// changed then.
    ///
    /// askedVolumeFraction is what the design moves towards, by at most 5 % per iteration.
    /// passiveData is a record of PassiveBlock::update() or null. loadCaseIndices holds
    /// loadCaseCount indices of the load cases in use; duplicates and indices that do not exist are
    /// dropped. blobData is a record of Blob::restart() or null.
    void updateSettings(const std::vector<TopologyOptimizationComponentData>& loads,
                        const std::vector<TopologyOptimizationComponentData>& supports,
                        float askedVolumeFraction, const short* passiveData, int loadCaseCount,
                        const signed char* loadCaseIndices, const short* blobData);

    // --- SolverAppIteration.cpp: the drivers --------------------------------------------------

    /// One design iteration. Returns the compliance of the design that it started from, or -1.0
    /// when loads and supports are invalid. `output` receives the picture and `stat` the timings,
    /// or messageBuffer an error text, as createAndPublishResult() says. `change` is the largest
    /// change of a design density; it is not written when the iteration ends early.
    double runIteration(int messageLength, char* messageBuffer, float* output, double& change,
                        RuntimeStat* stat);

    /// runIteration() and then one step of the blob. blobOut receives the blob mask, row by row.
    double runIterationWithBlob(int messageLength, char* messageBuffer, float* output,
                                double& change, RuntimeStat* stat, int* blobOut);

    // --- SolverAppAssembly.cpp ----------------------------------------------------------------

    /// Fills K with the stiffness of rhoPhys, and keeps the powers of the densities for the
    /// sensitivities. The first call builds the pattern; later ones refill it in parallel.
    void assemble();

    // --- SolverAppAnalysis.cpp ----------------------------------------------------------------

    /// Builds the loads, assembles, imposes the supports, factorises and solves every load case in
    /// use into U. False when a record does not fit the plate or the factorisation fails, and U
    /// then keeps its values, or when a solve fails, and U keeps those from that load case on.
    bool solveStateCHOL();
    /// Compliance and its sensitivities, summed over the load cases in use, of the densities that
    /// the last solveStateCHOL() assembled.
    void setObjectivePlusSens();
    /// Whether the solution makes sense; sets the error text when it does not.
    bool verifyValidLoadAndSupports();
    /// Filters `dc` (sensitivity filter), or `dc` and `dv` (density filter).
    void filterSensitivities();
    /// The sensitivity filter on the coarse grid for the blob. Nothing is done under the density
    /// filter.
    void filterBlobSensitivities();

    // --- SolverAppDesignUpdate.cpp ------------------------------------------------------------

    /// Relative excess of the volume of rhoPhys over volumeFraction.
    void computeConstraint();
    /// Optimality-criteria update of `rho` with a warm-started bisection on the multiplier.
    void optimalityCriteriaUpdateOfRHO();
    /// Makes rhoPhys from `rho`: filtered by the density filter, or with the blob cut out.
    void updatePhysicalDensities();
    /// Continuation of the stiffness floor: high after a change of settings, then lowered.
    void adjustEminBasedOnMovementChanges();
    /// Largest |a[i] - b[i]|; both must have the same number of entries (assertion).
    static double maxDelta(const kmat::DenseMatrix& a, const kmat::DenseMatrix& b);

    // --- SolverAppResult.cpp ------------------------------------------------------------------

    /// Without an error text fills `stat` and writes the picture to `output`, see
    /// Picture::publish(). Otherwise writes the text only, cut to the buffer. Null pointers, or a
    /// length below 1, are skipped.
    void createAndPublishResult(float* output, int messageLength, char* messageBuffer,
                                RuntimeStat* stat);

private:
    friend class SolverAppInspector;  // the tests and benchmarks look inside with it

    /// Stiffness floor of void at the start and after each change of settings. The constant is the
    /// widened value of the single-precision literal, here and below.
    static constexpr double EMIN_START = 0.01F;

    /// What is not free, by fine cell: the kind bits, and whether the blob covers it.
    struct FixedCells {
        std::vector<int8_t> kind;
        std::vector<double> blobMask;
    };

    void continueVolumeFraction();
    double blobMaskOfFineCell(unsigned fineCell) const;
    void computePowers(bool inParallel);
    void addColumn(unsigned ix, double voidFloor);
    double modulus(unsigned e, double floor) const;
    void addSensitivities(const kmat::DenseMatrix& u);
    void addCompliances();
    FixedCells findFixedCells() const;
    void designFor(double multiplier, kmat::DenseMatrix& design) const;
    double addedVolume(const kmat::DenseMatrix& design) const;
    double fixCellsAndAddVolume(const FixedCells& fixed, kmat::DenseMatrix& design) const;
    bool fail(std::string_view text);
    void withdrawMessage();

    DesignGrids grids;
    Equilibrium equilibrium;
    int iteration = 0;            ///< since the last restart; raised at the start of each
    int loop = 0;                 ///< since the last change of settings; nothing reads it
    double volumeFraction;        ///< in force this iteration
    double targetVolumeFraction;  ///< asked for
    double rmin = 3.0;            ///< radius of the density filter in fine cells
    double penalty = 3.0;         ///< exponent of the SIMP interpolation
    double objective = 0.0;       ///< compliance
    double constraint = 0.0;      ///< relative excess of volume
    kmat::DenseMatrix rhoPhys;    ///< fine: physical densities
    kmat::DenseMatrix rho;        ///< fine: design variables
    kmat::DenseMatrix rhoOld;     ///< fine: the design before the update
    kmat::DenseMatrix rhoNew;     ///< fine: result of the update, exchanged with rho
    kmat::DenseMatrix dc;         ///< fine: sensitivity of the compliance
    kmat::DenseMatrix dv;         ///< fine: sensitivity of the volume
    kmat::DenseMatrix dcFiltered;
    kmat::DenseMatrix dvFiltered;
    ConeFilter H;  ///< fine
    Blob blob;
    Picture picture;
    bool movementChanged = false;  ///< the settings changed since the last iteration
    std::set<int> loadCases;       ///< load cases in use
    PassiveBlock passiveBlock;
    int useDensityFilter = 0;  ///< 0: filter the sensitivities; else: filter the densities
    double E0 = 1.0;           ///< Young's modulus of solid material
    double Emin = EMIN_START;  ///< stiffness floor of void
    double EminFactor = 0.25;
    double EminLowerLimit = 1e-7F;
    double lambda = 0.0;          ///< multiplier of the last update
    double lambdaPrevious = 0.0;  ///< and of the one before
    std::string message;          ///< error text for the host; suppresses the picture
    DensityPowers powers;         ///< of rhoPhys at the last assembly
    StrainEnergies strainEnergies;
    std::vector<double> KEUpper;      ///< upper triangles of KE, in ELEMENT_UPPER_PAIRS order
    std::vector<double> compliances;  ///< fine: shares of one load case
    IterationTimers timers;
};
