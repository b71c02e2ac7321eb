/*
 * Voxam: two-dimensional structural topology optimisation for interactive hosts.
 *
 * This is the one header a host needs. It is valid C11 and C++.
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
 * The first column of elements is complete before the second begins, so element 1 lies below
 * element 0, and element nely lies to its right. A positive fx points towards larger x, a positive
 * fy towards larger y; a host whose y axis points up may read the same picture upside down.
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
 * A support holds one direction of one node; hold both with two records.
 *
 * Ownership, null and zero
 * ------------------------
 * Every array belongs to the host. The library reads or writes it during the call and keeps no
 * pointer. A count below 1, or a null array, means "no records"; the array is then not read.
 *
 * Errors
 * ------
 * No exception leaves a function. A problem of the input comes back as a value that each function
 * names. Only a violated precondition that is called an assertion below ends the process, with a
 * report on standard error.
 *
 * Threads
 * -------
 * Calls must not overlap: the library holds one solver of each kind and takes no lock. Calls may
 * come from different threads in turn. Worker threads that a call uses have finished their tasks
 * when the call returns. Once loaded the library stays loaded until the process ends.
 */
#ifndef VOXAM_H
#define VOXAM_H

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
 * Game: score a design that somebody else made
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
 * numberOfLoadCases  independent force vectors; each load names one of 0 .. numberOfLoadCases - 1
 *
 * When memory does not suffice there is no solver afterwards. A record that lies outside the plate
 * or names a load case that does not exist is reported by each _SolveVoxamGame.
 */
VOXAM_API void _InitVoxamGame(int nelx, int nely, int ndopt, int ndvis, int loadCount,
                              const float* loadData, int supportCount, const float* supportData,
                              int numberOfLoadCases);

/**
 * Scores one density field: the compliance, summed over the load cases. Smaller is stiffer.
 *
 * densities      nelx * nely floats in element order, 0 (void) to 1 (solid); null: the call fails
 * elementValues  nelx * nely floats in element order, written: each element's share of the
 *                compliance; null: not written
 *
 * Returns the compliance (force times displacement, in units of force squared per modulus and
 * thickness). When the plate cannot be solved (its supports leave it free to move, a record is
 * invalid) returns the largest float, 3.4028234663852886e38, with all element values 0; the next
 * call starts clean. Without a solver returns the same number and writes nothing.
 */
VOXAM_API double _SolveVoxamGame(const float* densities, float* elementValues);

/** Releases the game solver. Without one it does nothing. */
VOXAM_API void _DestroyVoxamGame(void);

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
