#pragma once

#include "dense_matrix.h"
#include "sparse_matrix.h"

namespace kmat {

/// Sparse Cholesky factorisation of a symmetric positive definite matrix: analyse once, refactorise
/// many times. SparseMatrix::analyze() makes the symbolic part from a built matrix; factorize()
/// computes the values, again whenever the matrix values change and its pattern does not. Nothing
/// re-analyses by itself. The matrix must be stored as symmetric: of an ASYMMETRIC matrix A,
/// CHOLMOD factorises A A'. Movable, not copyable; one thread at a time.
class Factor {
public:
    /// An empty factor: nothing analysed yet.
    Factor() = default;
    /// Adopts a record; null is an empty factor.
    explicit Factor(cholmod_factor* record) : factor(record) {}

    Factor(Factor&& other) noexcept = default;
    Factor& operator=(Factor&& other) noexcept = default;
    virtual ~Factor() = default;

    /// Whether a symbolic analysis is held.
    bool isInitialized() const { return factor != nullptr; }

    /// Computes the numeric factorisation of the built matrix A, whose pattern must be the analysed
    /// one. Any warning or error of CHOLMOD is recorded as a KmatException with its message, and so
    /// is a diagonal entry of A that is not positive. The factor keeps what CHOLMOD left in it.
    ///
    /// Not every matrix that is not positive definite is noticed: small ones CHOLMOD factorises
    /// into LDL', where a negative pivot is no error. Throws std::bad_alloc when there is no room
    /// for the buffers of the BLAS.
    void factorize(const SparseMatrix& A);

private:
    friend DenseMatrix solve(const Factor& F, const DenseMatrix& b);
    friend SparseMatrix solve(const Factor& F, const SparseMatrix& B);

    RecordPtr<cholmod_factor> factor;
};

/// The solution x of A x = b for the factorised A, with as many columns as b. When CHOLMOD cannot
/// solve (an empty factor, a wrong number of rows) the result is 0 x 0 and the message is in
/// ConfigSingleton::getLastError(); no KmatException is recorded.
DenseMatrix solve(const Factor& F, const DenseMatrix& b);
SparseMatrix solve(const Factor& F, const SparseMatrix& B);

/// Analyses, factorises and solves in one call. A failed factorisation stays recorded for the
/// caller, and the solve goes on with what CHOLMOD made.
DenseMatrix solve(const SparseMatrix& A, const DenseMatrix& b);
SparseMatrix solve(const SparseMatrix& A, const SparseMatrix& B);

}  // namespace kmat
