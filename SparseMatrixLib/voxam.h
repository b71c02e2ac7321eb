/*
 * Voxam: two-dimensional structural topology optimisation for interactive hosts.
 *
 * This is the one header a host needs. It is valid C11 and C++. (A C++ host that wants to call
 * printVoxamData also includes TopologyOptimizationComponentData.h beside it.)
 *
 * The plate
 * ---------
 * A plate is a rectangle of nelx x nely square elements of unit side, plane stress, unit thickness,
 * Young's modulus 1 for solid material and Poisson's ratio 0.3. Elements and nodes are numbered
 * column by column. Picture the plate with x counting columns from the left and y counting rows
 * from the top:
 *
 *     node 0 ------ node nely+1 ---- ...        element (x, y) has index  x * nely + y
 *       | element 0 | element nely |            node    (x, y) has number x * (nely + 1) + y
 *     node 1 ------ node nely+2 ---- ...        with 0 <= x < nelx, 0 <= y < nely for elements
 *       | element 1 | element nely+1 |          and  0 <= x <= nelx, 0 <= y <= nely for nodes
 *     node 2 ------ node nely+3 ---- ...
 *
 * Element 1 is below element 0, and element nely is to its right. A positive fx points towards
 * larger x, a positive fy towards larger y. A host whose y axis points up may read the same picture
 * upside down.
 *
 * Component records
 * -----------------
 * A load or a support is a record of five consecutive floats; an array of n records is 5 * n floats
 * without header or padding. Node coordinates and the load case are rounded to the nearest integer,
 * halves away from zero.
 *
 *     index     0       1       2                        3          4
 *     load      node x  node y  force in x               force y    load case, from 0
 *     support   node x  node y  direction: 0 = x, 1 = y  not used   not used
 *
 * A support holds one direction of one node. To hold both directions, use two records. A direction
 * d other than 0 and 1 means the degree of freedom 2 * node + d, if the plate has it.
 *
 * Ownership, null and zero
 * ------------------------
 * Every array belongs to the host. The library reads or writes it during the call and keeps no
 * pointer. A count below 1, or a null array, means "no records".
 *
 * Errors
 * ------
 * A node, load case or force that is not a finite number is invalid, and so is a node or a load
 * case that does not exist. Each function documents the values by which it reports invalid input.
 * No exception leaves a function. CHOLMOD, which solves the equations, also prints warnings on
 * standard output. Violating a precondition that is marked below as an assertion ends the process,
 * with a report on standard error.
 *
 * Threads
 * -------
 * Calls must not overlap: the library has one solver of each kind and no lock. Calls may come from
 * different threads in turn. Worker threads finish their tasks before the call returns. Once
 * loaded, the library stays loaded until the process ends.
 */
#ifndef VOXAM_H
#define VOXAM_H

/*
 * The version of this header and of the library that belongs to it. A host runs with any library of
 * the same major number that is not older than the header it was compiled with. The minor number
 * grows with each new function, the patch number with each release that only fixes something. Any
 * version may change the last digits of a result.
 *
 * VOXAM_BANNER_VERSION is the text that _InitVoxamApp and _InitVoxamGame print. It identifies the
 * behaviour of the App and the Game, on which hosts rely, and changes only with that behaviour, not
 * with the macros above.
 */
#define VOXAM_VERSION_MAJOR 1
#define VOXAM_VERSION_MINOR 2
#define VOXAM_VERSION_PATCH 0
#define VOXAM_VERSION "1.2.0"
#define VOXAM_BANNER_VERSION "1.1.2"

#if defined(__GNUC__)
#define VOXAM_API __attribute__((visibility("default")))
#else
#define VOXAM_API
#endif

#ifdef __cplusplus
#include <string>
#include <vector>

class TopologyOptimizationComponentData;

extern "C" {
#endif

/* ------------------------------------------------------------------------------------------------
 * App: optimise a design, one iteration per call
 * --------------------------------------------------------------------------------------------- */

/** Where the time of one iteration went, in milliseconds of wall time. */
typedef struct RuntimeStat {
    float totalTime;       /**< the whole iteration */
    float updateTime;      /**< design update with its volume constraint */
    float stateTime;       /**< state solve: the next three, and the work between them */
    float assembleTime;    /**< assembly of the stiffness matrix */
    float factorizeTime;   /**< numeric factorisation */
    float solveTime;       /**< solution of all load cases in use */
    float sensitivityTime; /**< compliance, sensitivities and their filtering */
    float meshTime;        /**< the picture, and the measure of change */
} RuntimeStat;

/**
 * Creates the optimiser with a uniform design, or restarts the existing one.
 * The first call of a process prints one version line on standard output. If textureWidth was 0,
 * the next call prints the line again.
 *
 * textureWidth, textureHeight  nelx and nely, the coarse grid: loads, supports, passive cells and
 *                              the blob are given on it
 * subdivision     fine cells per element edge, 1 or more: the design has this much more detail
 * meshFactor      picture cells per fine cell edge, 1 or more
 * volumeFraction  material of the starting design, above 0 and up to 1. With 0, the plate turns
 *                 solid: a constraint of volume 0 has no meaning, and the volume, which changes by
 *                 factors, never leaves 0
 * numLoadCases    independent force vectors that may be used
 * restartId       any number
 *
 * THE OPTIMISER IS KEPT if there is one, and textureWidth, textureHeight and restartId equal those
 * of the last create call. The call then sets only the volume fraction and the iteration counters.
 * The design and the settings stay. subdivision, meshFactor AND numLoadCases ALSO STAY: new values
 * are ignored, and the picture keeps its old size. To change them, or to start again with a uniform
 * design, pass another restartId.
 *
 * The picture has textureWidth * subdivision * meshFactor columns and textureHeight * subdivision *
 * meshFactor rows, with the values in force.
 *
 * If memory does not suffice, or the volume fraction is not a finite number, there is no optimiser
 * afterwards. A call that keeps the optimiser ignores a volume fraction that is not finite. Call
 * _UpdateVoxamApp before the first iteration.
 */
VOXAM_API void _InitVoxamApp(int textureWidth, int textureHeight, int subdivision, int meshFactor,
                             float volumeFraction, int numLoadCases, int restartId);

/**
 * Sends all settings to the optimiser, at any time between iterations. The design stays, and an
 * error text is cleared. Without an optimiser, or without memory for a copy of the records, the
 * call does nothing.
 *
 * PASSIVE AND BLOB CELLS ARE IN THE RIGHT PLACE ONLY IF meshFactor EQUALS subdivision. Otherwise
 * the optimiser maps them to cells of other columns.
 *
 * loadCount, loadData        loads, 5 * loadCount floats
 * supportCount, supportData  supports, 5 * supportCount floats; the direction is rounded
 * volumeFraction   material to use, above 0 and up to 1; the design follows by at most 5 % per
 *                  iteration. If the number is not finite, the volume drifts without limit: NaN
 *                  empties the plate, infinity makes it solid
 * passiveData      fixed elements, or null for none: three counts V, S, T, then V pairs (x, y) of
 *                  elements that stay void, S that stay solid, T that stay solid of a second kind:
 *                  3 + 2 * (V + S + T) shorts; a negative count is 0. An element outside the grid
 *                  is an assertion
 * loadCaseCount    number of entries in loadCaseIndices
 * loadCaseIndices  load cases in use, from 0, read as signed char; those that do not exist are
 *                  ignored. A valid load of a case that is not in use has no effect; an invalid
 *                  one makes the iteration fail
 * blobData         elements of the blob: a count c and then c pairs (x, y), 1 + 2 * c shorts; null
 *                  or a count below 1 means no blob. Elements outside the grid are ignored
 */
VOXAM_API void _UpdateVoxamApp(int loadCount, const float* loadData, int supportCount,
                               const float* supportData, float volumeFraction,
                               const short* passiveData, int loadCaseCount,
                               const char* loadCaseIndices, const short* blobData);

/**
 * Runs one iteration.
 *
 * messageLength  length in bytes of messageBuffer
 * messageBuffer  receives a text, cut to fit and always null-terminated: empty on success. With
 *                null, or a length below 1, no text is written
 * output         the picture, one float per cell, row by row from the top: 0 solid, 1 void. Written
 *                on success only; may be null
 * change         largest change of a density in this iteration; not written if this iteration
 *                itself fails; may be null
 * stat           timings, written on success only; may be null
 * penalty        exponent of the stiffness interpolation (SIMP) from this call on, usually 3
 *
 * Returns the compliance of the design that the iteration started from. If the problem cannot be
 * optimised, the buffer receives a text, and the picture is not written. Each further iteration
 * repeats the text until _UpdateVoxamApp is called:
 *   "Change load / support"             the plate cannot be solved (a record is invalid, the
 *                                       supports leave a larger plate free to move, or memory does
 *                                       not suffice); returns the last compliance, 0 if there was
 *                                       none
 *   "Change load/support"               the displacements are too large: the compliance, the sum of
 *                                       the squared displacements or its ratio to the compliance is
 *                                       above 1e15. The structure is not held, the forces are too
 *                                       large (scale them to about 1: the compliance is
 *                                       proportional to the square of the force), or the design has
 *                                       torn and only void connects its parts (restart it with
 *                                       another restartId); returns -1.0
 *   "Load cannot be on top of support"  the loads do almost no work: the compliance is below 1e-10.
 *                                       They act on supports, or the forces are too small (scale
 *                                       them); returns -1.0
 * The compliance can be NaN or infinite only if the host passed numbers that are not finite or far
 * out of range (a penalty that is not finite, or below 0 with passive void cells or a blob; a
 * volume fraction of 0). `change` is always a number.
 * Without an optimiser, it returns -1.0 with "No optimiser: call _InitVoxamApp first". Any other
 * failure, such as lack of memory outside the solution of the equations, returns -1.0 with its own
 * text.
 */
VOXAM_API double _IterateVoxamApp(int messageLength, char* messageBuffer, float* output,
                                  double* change, RuntimeStat* stat, float penalty);

/**
 * Runs one iteration like _IterateVoxamApp and then moves the blob along its boundary, to where
 * material is least useful.
 *
 * blobResult     textureWidth * textureHeight ints, row by row from the top: 1 in the blob, else 0;
 *                written by each call that finds an optimiser and does not run out of memory; may
 *                be null
 */
VOXAM_API double _IterateVoxamAppWithBlob(int messageLength, char* messageBuffer, float* output,
                                          double* change, RuntimeStat* stat, int* blobResult,
                                          float penalty);

/** Releases the optimiser. Without one it does nothing. */
VOXAM_API void _DestroyVoxamApp(void);

/* ------------------------------------------------------------------------------------------------
 * Game: score a design from outside, in single precision
 * --------------------------------------------------------------------------------------------- */

/**
 * Creates the game solver for a plate, its loads and its supports, replacing any earlier one.
 * The first call of a process prints one version line on standard output.
 *
 * nelx, nely         elements in x and y; negative counts as 0
 * ndopt, ndvis       refinement of the design and display grids: both must be 1 (assertion)
 * loadCount          number of records in loadData
 * loadData           5 * loadCount floats
 * supportCount       number of records in supportData
 * supportData        5 * supportCount floats; the direction is truncated towards zero
 * numberOfLoadCases  independent force vectors; each load names one of 0 .. numberOfLoadCases - 1;
 *                    negative counts as 0
 *
 * When memory does not suffice, or 2 * (nelx + 1) * (nely + 1) exceeds the range of int, there is
 * no solver afterwards. If a record lies outside the plate or names a load case that does not
 * exist, each _SolveVoxamGame fails.
 */
VOXAM_API void _InitVoxamGame(int nelx, int nely, int ndopt, int ndvis, int loadCount,
                              const float* loadData, int supportCount, const float* supportData,
                              int numberOfLoadCases);

/**
 * Scores one density field: the compliance, summed over the load cases. Among designs whose
 * densities are near 0 and 1, a smaller score means a stiffer design. The score of a solid plate is
 * force times displacement. Between 0 and 1 the stiffness is linear in the density, but the score
 * weights each element's energy by the cube of its density, so partly filled designs score too low.
 *
 * THE SCORE IS FOR GAMES. Its single precision makes every element a weak negative spring. The
 * score of a sound design is therefore wrong by a relative error of about
 *
 *     3.6e-8 * solid elements * compliance for a force of 1
 *
 * or less. This is valid while it is below 0.1, and the score is then too high. It was measured on
 * 60 designs: the factor is 1.1e-8 to 3.6e-8 for a force at one node, and less for a force that is
 * spread along an edge. So a score is accurate to 1 % while solid elements times compliance is
 * below 3e5, as for a compact plate of 60 x 40 elements. From 3e6 on, which 100 x 10 elements
 * exceed, it may be any number, too high or too low. To rate designs for users, call
 * _SolveVoxamAnalysis.
 *
 * A part of the design that touches nothing may make the plate unsolvable: in single precision, the
 * void around the part can fail to hold it. The call then returns the largest float on plates of
 * about 500 elements and more, and a score on smaller ones. Leave such parts out before scoring.
 *
 * Scale the forces to about 1: below about 1e-20 a score loses its digits and finally becomes 0,
 * and from about 1e18 on it is infinite. Densities below 0 or above 1 are used as they are, and the
 * score is then meaningless.
 *
 * densities      nelx * nely floats in element order, 0 (void) to 1 (solid). With null, or with a
 *                density that is not a finite number, the call fails
 * elementValues  receives nelx * nely floats in element order: each element's share of the
 *                compliance; may be null
 *
 * Returns the compliance, in units of force squared per modulus and thickness. If the plate cannot
 * be solved (its supports leave it free to move, or a record is invalid), it returns the largest
 * float, 3.4028234663852886e38, with all element values 0; the next call starts clean. Without a
 * solver, it returns the same number and writes nothing.
 */
VOXAM_API double _SolveVoxamGame(const float* densities, float* elementValues);

/** Releases the game solver. Without one it does nothing. */
VOXAM_API void _DestroyVoxamGame(void);

/* ------------------------------------------------------------------------------------------------
 * Analysis: the compliance of a design, in double precision
 * --------------------------------------------------------------------------------------------- */

/** What _SolveVoxamAnalysis returns. */
enum VoxamAnalysisStatus {
    VOXAM_ANALYSIS_SOLVED = 0,     /**< all results are written */
    VOXAM_ANALYSIS_LOOSE_PART = 1, /**< all results are written, without loose material */
    VOXAM_ANALYSIS_LOAD_WITHOUT_MATERIAL = 2, /**< a load acts where there is no material */
    VOXAM_ANALYSIS_MECHANISM = 3,             /**< a load acts on material that is free to move */
    VOXAM_ANALYSIS_INVALID = 4,               /**< a record or a modulus is invalid */
    VOXAM_ANALYSIS_OUT_OF_MEMORY = 5,         /**< memory does not suffice for the plate */
    VOXAM_ANALYSIS_NOT_CONVERGED = 6,         /**< the moduli are too far apart for the digits of
                                                   the computation */
    VOXAM_ANALYSIS_NONE = 7                   /**< there is no analysis */
};

/**
 * Creates the analysis of a plate with its loads and its supports, replacing any earlier one.
 * Prints nothing.
 *
 * nelx, nely         elements in x and y; negative counts as 0
 * loadCount          number of records in loadData
 * loadData           5 * loadCount floats
 * supportCount       number of records in supportData
 * supportData        5 * supportCount floats; the direction is truncated towards zero. Held degrees
 *                    of freedom do not move at all
 * numberOfLoadCases  independent force vectors; each load names one of 0 .. numberOfLoadCases - 1;
 *                    negative counts as 0
 *
 * When memory does not suffice, or 2 * (nelx + 1) * (nely + 1) exceeds the range of int, there is
 * no analysis afterwards, and _SolveVoxamAnalysis returns VOXAM_ANALYSIS_OUT_OF_MEMORY. That
 * function also reports records that are invalid.
 */
VOXAM_API void _InitVoxamAnalysis(int nelx, int nely, int loadCount, const float* loadData,
                                  int supportCount, const float* supportData,
                                  int numberOfLoadCases);

/**
 * Analyses one design: small displacements of linear elastic material, plane stress, bilinear
 * elements. Call it as often as the design changes; the first call takes longer, because it orders
 * the equations.
 *
 * An element has the Young's modulus that the host gives it. With a modulus of 0 there is no
 * element: void is empty, not soft. Elements that share an edge are welded together; elements that
 * share a corner only are pinned there.
 *
 * ACCURACY. If every modulus is 0 or the same positive number, the compliance has a relative error
 * of at most 1e-10, however slender the plate is (measured up to 1000 x 10 and 900 x 1 elements).
 * Other moduli, from 1e-9 to 1 times the largest one, give the same accuracy on plates of ordinary
 * shape. A result that is not accurate is not written.
 *
 * Material that the supports leave free to move (it touches nothing, or it turns about a corner) is
 * found by an exact rule, whatever the moduli. If no load acts on such material, the rest is solved
 * without it.
 *
 * moduli          nelx * nely doubles in element order, each 0 or positive and finite
 * messageLength   length in bytes of messageBuffer
 * messageBuffer   receives a text, cut to fit and always null-terminated: empty if the status is
 *                 VOXAM_ANALYSIS_SOLVED, else one line of fewer than 160 characters. With null, or
 *                 a length below 1, no text is written
 *
 * The results belong to the host. Each may be null and is then not written. All but looseElements
 * are written only with the status VOXAM_ANALYSIS_SOLVED or VOXAM_ANALYSIS_LOOSE_PART:
 *
 * compliances     numberOfLoadCases doubles: the work of the loads of each load case, force times
 *                 displacement; 0 for a load case without loads. A force on a held degree of
 *                 freedom does no work
 * displacements   numberOfLoadCases times 2 * (nelx + 1) * (nely + 1) doubles: for each load case
 *                 the displacements by degree of freedom, 2 * node for x and 2 * node + 1 for y;
 *                 NaN at nodes without material
 * energies        numberOfLoadCases times nelx * nely doubles: for each load case the share of each
 *                 element in the compliance, that is twice its strain energy, in element order. The
 *                 shares sum to the compliance, up to rounding; 0 without material
 * stresses        numberOfLoadCases times nelx * nely * 3 doubles: for each load case and element
 *                 the stress in x, the stress in y and the shear stress at its centre. Tension is
 *                 positive. 0 without material
 * looseElements   nelx * nely bytes in element order: 1 for material that is free to move, else 0.
 *                 Written with every status from VOXAM_ANALYSIS_SOLVED to VOXAM_ANALYSIS_MECHANISM
 *                 and with VOXAM_ANALYSIS_NOT_CONVERGED; it may be written with
 *                 VOXAM_ANALYSIS_OUT_OF_MEMORY
 *
 * Returns one of VoxamAnalysisStatus. After a failure the next call starts clean. Results that
 * exceed the range of double are infinite: scale forces and moduli.
 */
VOXAM_API int _SolveVoxamAnalysis(const double* moduli, int messageLength, char* messageBuffer,
                                  double* compliances, double* displacements, double* energies,
                                  double* stresses, unsigned char* looseElements);

/** Releases the analysis. Without one it does nothing. */
VOXAM_API void _DestroyVoxamAnalysis(void);

/* ------------------------------------------------------------------------------------------------
 * Performance test
 * --------------------------------------------------------------------------------------------- */

/**
 * Times four ways of assembling the stiffness matrix on five plates, and prints one table per plate
 * on standard output, with a line per way. The columns are 1, 2, 4 and 8 assemblies. Each column
 * gives the total time and, in parentheses, the time to build the pattern, in milliseconds. Takes
 * about a second, and never frees the element matrices of the assemblies, 0.6 MB a call. Needs no
 * solver and affects none.
 */
VOXAM_API void _VoxamPerformanceTest(void);

#ifdef __cplusplus
/**
 * Prints a titled list of component records on standard output, for diagnosis in C++ hosts. The
 * records print nothing themselves, so the title line is all that appears.
 */
VOXAM_API void printVoxamData(const std::vector<TopologyOptimizationComponentData>& records,
                              const std::string& title);

}  // extern "C"
#endif

#endif /* VOXAM_H */
