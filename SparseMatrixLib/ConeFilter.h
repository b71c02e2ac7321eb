#pragma once

#include <vector>

#include "dense_matrix.h"

/// Cone filter of a grid of nx x ny cells, counted column by column: a weighted mean of each cell
/// and its neighbours, in which the weight of two cells is the radius less their distance, at
/// least 0. The weights form a symmetric matrix. They depend only on the distance, so the filter
/// stores one cone of weights instead of the matrix, and a product reads no matrix from memory.
class ConeFilter {
public:
    /// A cell at a distance in columns and rows, and its weight, which is above 0.
    struct Neighbour {
        int dx;
        int dy;
        double weight;
    };

    /// A filter of a grid without cells.
    ConeFilter();

    /// `radius` in cells; with 0 no cell has a weight. The normaliser is the row sums. Throws
    /// std::bad_alloc when there are more weights than an int can count, or memory is short.
    ConeFilter(unsigned nx, unsigned ny, double radius);

    /// Gives the first `count` cells the largest of their row sums for a normaliser, at least 1e-8.
    ///
    /// With one fine cell per coarse element this makes the normaliser one constant, so that cells
    /// near the border receive less than full weight. Every design depends on it.
    void applyMaximumRule(unsigned count);

    /// filtered = (weights * field) / normaliser. The two fields have one value per cell.
    void apply(const kmat::DenseMatrix& field, kmat::DenseMatrix& filtered) const;

    /// spread = weights * (field / normaliser), the transposed filter. `share` receives the
    /// quotient: it is the caller's, so that nothing is allocated.
    void applyTransposed(const kmat::DenseMatrix& field, kmat::DenseMatrix& share,
                         kmat::DenseMatrix& spread) const;

    /// One value per cell.
    const kmat::DenseMatrix& getNormaliser() const { return normaliser; }

private:
    void sum(const double* field, double* sums) const;

    int columns;  ///< 0 if the grid has no cells
    int rows;
    std::vector<Neighbour> cone;  ///< the cell itself included
    kmat::DenseMatrix normaliser;
};
