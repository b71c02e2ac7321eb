#pragma once

#include <cholmod.h>

#include <memory>
#include <string>

#include "dense_matrix.h"
#include "sparse_matrix.h"

/// CHOLMOD alone: numeric factorisation and one solution by its shared library as the system has
/// it, with its team of OpenMP and the BLAS held at one thread. OpenBLAS uses the best kernels for
/// the processor, unless the environment has VOXAM_FLOOR=system, or OPENBLAS_CORETYPE. However the
/// library is linked, this is the cost of solving the equations of a design with the CHOLMOD of the
/// system.
class CholmodFloor {
public:
    /// Copies and analyses a built symmetric matrix, and copies a force vector. Throws
    /// std::runtime_error when there is no shared library of CHOLMOD.
    CholmodFloor(const kmat::SparseMatrix& K, const kmat::DenseMatrix& source);

    /// The name of the kernels that OpenBLAS uses for it.
    static std::string kernels();

    /// What the symbolic analysis took, in milliseconds.
    double getAnalysisTime() const { return analysisTime; }

    /// Factorises and solves; in milliseconds. Throws std::runtime_error when CHOLMOD fails.
    double measure();

private:
    std::shared_ptr<cholmod_sparse> matrix;
    std::shared_ptr<cholmod_dense> force;
    std::shared_ptr<cholmod_factor> factor;
    double analysisTime;
};
