#pragma once

#include "ConeFilter.h"
#include "GridNumbering.h"
#include "dense_matrix.h"

/// The picture of a design, on the mesh grid. It is for display only and does not affect the
/// design. The phases are in the order of an iteration.
struct Picture {
    /// Builds the filter; the densities are unset. Throws std::bad_alloc.
    explicit Picture(const DesignGrids& grids);

    /// Replicates the fine densities onto the mesh grid.
    void projectToMesh(const kmat::DenseMatrix& rhoPhys);
    /// Replicates each value of an nx x ny field onto factor x factor cells of `target`. Both are
    /// counted column by column.
    static void map2Mesh(const double* source, int nx, int ny, int factor, double* target);
    /// Smooths meshRho into meshRhoFiltered by the filter of radius meshRmin, which is the side of
    /// a fine cell: hence the name, it is not the radius of the design's filter.
    void densityFilterWithModifiedRadius();
    /// Sharpens meshRhoFiltered by a smoothed Heaviside step.
    void projectHeaviside();
    /// Writes one float per mesh cell, row by row: 1 - meshRhoFiltered, so that 0 is solid.
    void publish(float* output) const;

    bool useHeaviside = true;  ///< sharpen the picture
    double meshRmin;           ///< radius of meshH in mesh cells
    kmat::DenseMatrix meshRho;
    kmat::DenseMatrix meshRhoFiltered;  ///< what is published
    ConeFilter meshH;

private:
    DesignGrids grids;
    unsigned width;  ///< in mesh cells
    unsigned height;
};
