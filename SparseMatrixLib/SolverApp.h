#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "PassiveBlock.h"
#include "StiffnessPattern.h"
#include "Timer.h"
#include "TopologyOptimizationComponentData.h"
#include "dense_matrix.h"
#include "factor.h"
#include "sparse_matrix.h"

struct RuntimeStat;

/// The interactive topology optimiser: the whole state of one design problem on a rectangular plate
/// of square bilinear elements, advanced one iteration per call.
///
/// Three grids, all counted column by column (index = column * height + row):
///  - coarse, nelx x nely elements: the finite-element analysis. Loads, supports, passive cells and
///    blob cells are given on it. Two degrees of freedom per node, x before y.
///  - fine, each coarse element split into subdivision x subdivision cells: the design.
///  - mesh, each fine cell shown as meshFactor x meshFactor cells: the picture.
///
/// Every vector is a column of doubles, one per cell of its grid.
///
/// The sources follow the concerns: SolverApp.cpp state and construction; ...Filters the cone
/// filters and their use; ...Assembly the stiffness matrix; ...Analysis the state solve, compliance
/// and sensitivities; ...DesignUpdate the optimality criteria; ...Publishing the picture and texts;
/// ...Iteration the driver; ...Settings what the host changes; ...Blob the moving hole.
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

    // --- SolverApp.cpp: state -----------------------------------------------------------------

    /// Restores the uniform starting design; the counters stay.
    void reset();

    /// Sets the iteration counters to 0; the design stays.
    void restartIteration();

    /// The coarse cell of fine cell i by coarseCellOfFineCell(); see there where it is exact.
    int getCoarseGridIndex(int i) const;

    /// Sum of all entries in index order.
    static double sum(const kmat::DenseMatrix& v);

    void setVolumeFraction(double fraction) { volumeFraction = fraction; }
    void setPenalty(double exponent) { penalty = exponent; }

    // --- SolverAppSettings.cpp ----------------------------------------------------------------

    /// Takes over everything that the host can change while the optimiser runs and withdraws an
    /// error text. The design is kept.
    ///
    /// volumeFraction is what the design moves towards, by at most 5 % per iteration. passiveData
    /// is a record of PassiveBlock::update() or null. loadCaseIndices holds loadCaseCount indices
    /// of the load cases in use; duplicates and indices that do not exist are dropped. blobData
    /// holds a count and then that many pairs (x, y) of coarse cells; null means no blob, cells
    /// outside the grid are ignored.
    void updateSettings(const std::vector<TopologyOptimizationComponentData>& loads,
                        const std::vector<TopologyOptimizationComponentData>& supports,
                        float volumeFraction, const short* passiveData, int loadCaseCount,
                        const signed char* loadCaseIndices, const short* blobData);

    // --- SolverAppIteration.cpp, SolverAppBlob.cpp: the drivers --------------------------------

    /// One design iteration. Returns the compliance of the design that it started from, or -1.0
    /// when loads and supports are invalid. `output` receives the picture and `stat` the timings,
    /// or messageBuffer an error text, as createAndPublishResult() says. `change` is the largest
    /// change of a design density; it is not written when the iteration ends early.
    double runIteration(int messageLength, char* messageBuffer, float* output, double& change,
                        RuntimeStat* stat);

    /// runIteration() and then one step of the blob. blobOut receives the blob mask, row by row.
    double runIterationWithBlob(int messageLength, char* messageBuffer, float* output,
                                double& change, RuntimeStat* stat, int* blobOut);

    // --- SolverAppFilters.cpp: cone filters, weight max(0, radius - distance) ------------------

    /// Builds the filters of the fine, coarse and mesh grid with their normalisers.
    void setFilterMat();
    /// Builds the blob's filter on the coarse grid.
    void setFilterMatBlob();
    /// Filters `dc` (sensitivity filter), or `dc` and `dv` (density filter).
    void filterSensitivities();
    /// The sensitivity filter on the coarse grid for the blob, with the blob's complement in the
    /// role of the density. Nothing is done under the density filter.
    void filterBlobSensitivities();
    /// Smooths blobMask (mode 0) or circleMask (mode 2) with the blob's filter.
    void filterBlobDensities(int mode);
    /// Smooths meshRho into meshRhoFiltered.
    void densityFilterWithModifiedRadius();

    // --- SolverAppAssembly.cpp ----------------------------------------------------------------

    /// Fills K from rhoPhys. The first call builds the pattern; later ones refill it in parallel.
    void assemble();

    // --- SolverAppAnalysis.cpp ----------------------------------------------------------------

    /// Builds the loads, assembles, imposes the supports, factorises and solves every load case in
    /// use into U. False when a record does not fit the plate or the factorisation fails, and U
    /// then keeps its values, or when a solve fails, and U keeps those from that load case on.
    bool solveStateCHOL();
    /// Compliance and its sensitivities, summed over the load cases in use, of the densities that
    /// the last solveStateCHOL() assembled.
    void setObjectivePlusSens();
    /// Relative excess of the volume of rhoPhys over volumeFraction.
    void computeConstraint();
    /// Whether the solution makes sense; sets `message` when it does not.
    bool verifyValidLoadAndSupports();

    // --- SolverAppDesignUpdate.cpp ------------------------------------------------------------

    /// Optimality-criteria update of `rho` with a warm-started bisection on the multiplier.
    void optimalityCriteriaUpdateOfRHO();
    /// Continuation of the stiffness floor: high after a change of settings, then lowered.
    void adjustEminBasedOnMovementChanges();
    /// Largest |a[i] - b[i]|; both must have the same number of entries (assertion).
    static double maxDelta(const kmat::DenseMatrix& a, const kmat::DenseMatrix& b);

    // --- SolverAppPublishing.cpp --------------------------------------------------------------

    /// Replicates rhoPhys onto the mesh grid.
    void projectToMesh();
    /// Sharpens meshRhoFiltered by a smoothed Heaviside step, for display only.
    void projectHeaviside();
    /// Replicates each value of an nx x ny field onto factor x factor cells of `target`. Both are
    /// counted column by column.
    static void map2Mesh(const double* source, int nx, int ny, int factor, double* target);
    /// Without an error text fills `stat` and writes the picture to `output`: one float per mesh
    /// cell, row by row, 1 - meshRhoFiltered, so that 0 is solid. Otherwise writes the text only,
    /// cut to the buffer. Null pointers, or a length below 1, are skipped.
    void createAndPublishResult(float* output, int messageLength, char* messageBuffer,
                                RuntimeStat* stat);

    // --- SolverAppBlob.cpp --------------------------------------------------------------------

    /// Marks the elements at the boundary of the blob (mode 0) or of the circle (mode 1).
    void findBlobInterface(int mode);
    /// Adapts how many elements may move per step to how the compliance goes.
    void updateBlobMoveLimit();
    /// Chooses the elements that leave the blob and those that join it.
    void prepareInterfaceRedistribution();
    /// Moves the chosen elements.
    void updateBlob();
    /// prepareInterfaceRedistribution() and updateBlob().
    void redistributeBlob();
    /// Polar moment of inertia and squared radius of the disc of the blob's area.
    void equivalentCircleMoI();
    /// Size of the interface of that disc, in elements.
    void interfaceSizeOfEquivalentCircle();
    /// Writes the blob mask, nelx * nely ints of 0 or 1 row by row. Null is skipped.
    void createAndPublishBlobResult(int* out) const;

    /// x limited to lo .. hi.
    static double clamp(double x, double lo, double hi);
    /// x limited to lo1 .. hi1 and then to lo2 .. hi2.
    static double clamp(double x, double lo1, double lo2, double hi1, double hi2);

private:
    friend class SolverAppInspector;  // the tests and benchmarks look inside with it

    void continueVolumeFraction();
    void updatePhysicalDensities();
    void publishPicture(float* output) const;
    void excludePassiveCellsFromInterface();
    double blobMaskOfFineCell(unsigned fineCell) const;
    bool recordsFitPlate() const;
    long fixedDof(const TopologyOptimizationComponentData& support) const;
    void buildForces();
    bool solveLoadCases();
    unsigned fineElement(unsigned ix, unsigned iy, unsigned a, unsigned b) const;
    void makeWorkSpace();
    double modulus(unsigned e, bool withPassiveVoid, double voidFloor);
    void addColumn(unsigned ix, double voidFloor);
    void addSensitivities(const kmat::DenseMatrix& u);
    void addCompliances();
    void computeColumnEnergies(unsigned ix, const kmat::DenseMatrix& u);
    void collectPassiveCells();
    double linearisedVolume(double multiplier);
    void designFor(double multiplier);
    double volumeWithPassiveCells();
    void setBlob(const short* blobData);
    void resetBlobBookkeeping();

    // The order of the members is the order of construction.
    bool assembled;
    unsigned nelx;
    unsigned nely;
    unsigned nodesX;
    unsigned nodesY;
    unsigned numberOfCoarseElements;
    unsigned ndof;
    unsigned meshFactor;
    unsigned subdivision;
    unsigned numberOfElements;
    unsigned numberOfMeshElements;
    bool useHeaviside;            ///< sharpen the picture
    int iteration;                ///< since the last restart; raised at the start of each
    int loop;                     ///< since the last change of settings
    double volumeFraction;        ///< in force this iteration
    double targetVolumeFraction;  ///< asked for
    double rmin;                  ///< radius of the density filter in fine cells
    double meshRmin;              ///< radius of the mesh filter in mesh cells
    double penalty;               ///< exponent of the SIMP interpolation
    double objective;             ///< compliance
    double constraint;            ///< relative excess of volume
    kmat::DenseMatrix rhoPhys;    ///< fine: physical densities
    kmat::DenseMatrix rho;        ///< fine: design variables
    kmat::DenseMatrix rhoOld;     ///< fine: the design before the update
    kmat::DenseMatrix meshRho;
    kmat::DenseMatrix meshRhoFiltered;  ///< what is published
    std::vector<kmat::DenseMatrix> U;   ///< displacements per load case, ndof values
    std::vector<kmat::DenseMatrix> F;   ///< forces per load case, ndof values
    std::unique_ptr<double[]> KE;       ///< subdivision^2 element matrices
    kmat::DenseMatrix dc;               ///< fine: sensitivity of the compliance
    kmat::DenseMatrix dv;               ///< fine: sensitivity of the volume
    kmat::DenseMatrix dcFiltered;
    kmat::DenseMatrix dvFiltered;
    kmat::SparseMatrix K;
    kmat::Factor factor;
    kmat::SparseMatrix H;  ///< fine: filter weights
    kmat::DenseMatrix Hs;  ///< their normaliser
    kmat::SparseMatrix meshH;
    kmat::DenseMatrix meshHs;
    kmat::DenseMatrix rhoNew;      ///< fine: result of the update, exchanged with rho
    kmat::DenseMatrix fineWork;    ///< fine: nothing reads or writes it
    double rminBlob;               ///< radius of the blob's filter in coarse elements
    double circleInterfaceSize;    ///< interface of a disc of the blob's area, in elements
    double objectivePrevious;      ///< compliance of the last blob step
    double objectivePrevious2;     ///< and of the one before
    double blobCellCount;          ///< area of the blob as the host gave it
    double blobInterfaceSize;      ///< elements at the blob's boundary
    double circleMoI;              ///< polar moment of inertia of the disc
    double circleRadiusSquared;    ///< its squared radius
    double blobMoveLimit;          ///< elements that may move per step, even
    double blobMoveLimitMax;       ///< upper bound of it
    double blobMoveLimitFraction;  ///< unrounded, while the limit is below 10
    double blobMoveLimitLarge;     ///< before rounding, while it is 10 or more
    double blobMoveCount;          ///< elements moved by the last redistribution
    double blobPreparedCount;      ///< elements chosen by the last preparation
    int blobCounter;               ///< reset with the settings; nothing reads it
    int blobConverged;             ///< 1 when the last redistribution moved nothing
    int blobConvergedPrevious;     ///< the same of the step before
    int hasBlob;                   ///< 1 when the host gave a blob
    int blobStage;                 ///< blob steps since the last change of settings
    int blobIteration;             ///< plain iterations since the last blob step
    std::vector<unsigned> blobLeaving;
    std::vector<unsigned> blobJoining;
    kmat::DenseMatrix blobMask;  ///< coarse: 1.0 in the blob, else 0.0
    kmat::DenseMatrix circleMask;
    kmat::DenseMatrix blobInterface;
    kmat::DenseMatrix circleInterface;
    kmat::DenseMatrix blobMaskFiltered;
    kmat::DenseMatrix circleMaskFiltered;
    kmat::SparseMatrix Hcoarse;
    kmat::DenseMatrix HsCoarse;
    kmat::SparseMatrix blobH;
    kmat::DenseMatrix blobHs;
    kmat::DenseMatrix blobSensitivity;  ///< coarse: what material would save in each element
    kmat::DenseMatrix blobSensitivityFiltered;
    bool movementChanged;     ///< the settings changed since the last iteration
    int numLoadCases;         ///< load cases that exist
    std::set<int> loadCases;  ///< load cases in use
    std::vector<TopologyOptimizationComponentData> loads;
    std::vector<TopologyOptimizationComponentData> supports;
    PassiveBlock passiveBlock;
    int useDensityFilter;  ///< 0: filter the sensitivities; else: filter the densities
    double E0;             ///< Young's modulus of solid material
    double Emin;           ///< stiffness floor of void
    double EminFactor;
    double EminLowerLimit;
    double lambda;          ///< multiplier of the last update
    double lambdaPrevious;  ///< and of the one before
    std::string message;    ///< error text for the host; suppresses the picture

    // Work space of the iterations, made once.
    //
    // The filters without their explicit zeros serve the products. A zero would only make a
    // difference by spreading a value that is no number to cells that it does not concern.
    kmat::SparseMatrix HNonZero;
    kmat::SparseMatrix HcoarseNonZero;
    kmat::SparseMatrix meshHNonZero;
    kmat::DenseMatrix coarseWork;
    std::vector<double> KEUpper;  ///< upper triangles of KE's blocks, in ELEMENT_UPPER_PAIRS order
    std::vector<ElementEntries> elementEntries;  ///< coarse: where K holds each upper triangle
    std::vector<double> power;                   ///< fine: rhoPhys ^ penalty at the last assembly
    std::vector<double> powerLessOne;            ///< fine: rhoPhys ^ (penalty - 1)
    std::vector<double> columnDisplacements;     ///< of one column of elements, by local dof
    std::vector<double> columnEnergies;          ///< of one column of elements, by sub-element
    std::vector<double> compliances;             ///< fine: shares of one load case
    std::vector<int8_t> passiveKinds;            ///< fine: kind bits during an update
    std::vector<double> fineBlobMask;            ///< fine: blob mask during an update

    Timer assembleTimer;
    Timer factorizeTimer;
    Timer solveTimer;
    Timer stateTimer;
    Timer sensitivityTimer;
    Timer iterationTimer;
    Timer updateTimer;
    Timer meshTimer;
};
