#pragma once

#include "cholmod_records.h"
#include "dense_matrix.h"
#include "sparse_matrix.h"

/// CHOLMOD alone: numeric factorisation and one solution, on one thread like the library's, called
/// without it. Whoever solves the equations of each design with CHOLMOD takes at least this long.
class CholmodFloor {
public:
    /// Copies and analyses a built symmetric matrix, and copies a force vector.
    CholmodFloor(const kmat::SparseMatrix& K, const kmat::DenseMatrix& source);

    /// Factorises and solves; in milliseconds. Throws std::runtime_error when CHOLMOD fails.
    double measure();

private:
    kmat::RecordPtr<cholmod_sparse> matrix;
    kmat::RecordPtr<cholmod_dense> force;
    kmat::RecordPtr<cholmod_factor> factor;
};
