#include "factor.h"

#include <cblas.h>
#include <sys/mman.h>

#include <new>
#include <utility>

#include "kmat_exception.h"
#include "single_threaded_cholmod.h"

namespace kmat {

namespace {

double diagonalEntry(const cholmod_sparse& A, size_t column) {
    const auto* starts = static_cast<const int*>(A.p);
    const auto* rows = static_cast<const int*>(A.i);
    // Backwards, because the diagonal ends each column of an upper triangle.
    for (int k = starts[column + 1] - 1; k >= starts[column]; --k) {
        if (rows[k] == static_cast<int>(column)) return static_cast<const double*>(A.x)[k];
    }
    return 0.0;
}

bool hasNonPositiveDiagonal(const cholmod_sparse& A) {
    if (A.stype == ASYMMETRIC) return false;  // CHOLMOD factorises A * A'
    for (size_t column = 0; column < A.ncol; ++column) {
        if (diagonalEntry(A, column) <= 0.0) return true;
    }
    return false;
}

// OpenBLAS maps this much at its first use and keeps it, but where it is refused, OpenBLAS tries again
// for ever. So OpenBLAS has to map its buffer before CHOLMOD takes the room.
#ifdef __EMSCRIPTEN__
constexpr size_t BLAS_BUFFER_SIZE = size_t{17} << 20;  // as scripts/wasm-dependencies builds it
#else
constexpr size_t BLAS_BUFFER_SIZE = size_t{sizeof(void*) > 4 ? 129 : 33} << 20;
#endif

void takeBlasBuffer() {
    static bool taken = false;
    if (taken) return;
    void* const buffer =
        mmap(nullptr, BLAS_BUFFER_SIZE, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (buffer == MAP_FAILED) throw std::bad_alloc();
    munmap(buffer, BLAS_BUFFER_SIZE);
    const double one = 1.0;
    double product = 0.0;
    cblas_dsyrk(CblasColMajor, CblasLower, CblasNoTrans, 1, 1, 1.0, &one, 1, 0.0, &product, 1);
    taken = true;
}

Factor factorizeOnce(const SparseMatrix& A) {
    Factor factor = A.analyze();
    factor.factorize(A);
    return factor;
}

}  // namespace

Factor SparseMatrix::analyze() const {
    const SingleThreadedCholmod guard;
    return Factor(cholmod_analyze(sparse.get(), ConfigSingleton::getCommonPtr()));
}

void Factor::factorize(const SparseMatrix& A) {
    const SingleThreadedCholmod guard;
    takeBlasBuffer();
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    cholmod_factorize(A.sparse.get(), factor.get(), common);
    // By its defaults CHOLMOD factorises small matrices into LDL', where a negative pivot is no
    // error. A diagonal entry that is not positive proves the matrix not positive definite.
    if (common->status == CHOLMOD_OK && hasNonPositiveDiagonal(*A.sparse)) {
        cholmod_error(CHOLMOD_NOT_POSDEF, "SparseMatrixLib/factor.cpp", __LINE__,
                      "not positive definite", common);
    }
    const int status = std::exchange(common->status, CHOLMOD_OK);
    if (status != CHOLMOD_OK) KmatException::createKmatException(ConfigSingleton::getLastError());
}

DenseMatrix solve(const Factor& F, const DenseMatrix& b) {
    const SingleThreadedCholmod guard;
    return DenseMatrix(
        cholmod_solve(CHOLMOD_A, F.factor.get(), b.dense.get(), ConfigSingleton::getCommonPtr()));
}

SparseMatrix solve(const Factor& F, const SparseMatrix& B) {
    const SingleThreadedCholmod guard;
    return SparseMatrix(cholmod_spsolve(CHOLMOD_A, F.factor.get(), B.sparse.get(),
                                        ConfigSingleton::getCommonPtr()));
}

DenseMatrix solve(const SparseMatrix& A, const DenseMatrix& b) {
    return solve(factorizeOnce(A), b);
}

SparseMatrix solve(const SparseMatrix& A, const SparseMatrix& B) {
    return solve(factorizeOnce(A), B);
}

}  // namespace kmat
