#pragma once

#include <vector>

#include "GridNumbering.h"
#include "dense_matrix.h"

/// The powers of the densities that SIMP interpolation asks for: the stiffness rises with
/// rho ^ penalty, and its derivative with rho ^ (penalty - 1). Computed once for a design, they
/// serve the assembly, the compliance and the sensitivities.
struct DensityPowers {
    explicit DensityPowers(unsigned cells) : power(cells), powerLessOne(cells) {}

    /// Computes both powers of the fine cells of coarse column ix. Columns may be computed at the
    /// same time.
    void computeColumn(const DesignGrids& grids, std::size_t ix, const kmat::DenseMatrix& rhoPhys,
                       double penalty);

    std::vector<double> power;
    /// 0 where it would be infinite, at density 0 with a penalty below 1: no infinity enters the
    /// filters.
    std::vector<double> powerLessOne;
};
