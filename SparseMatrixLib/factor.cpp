#include "factor.h"

#include <cblas.h>
#include <sys/mman.h>

#include <new>
#include <utility>

#include "kmat_exception.h"
#include "metis_guard.h"
#include "single_threaded_cholmod.h"

// Null when CHOLMOD is built without METIS.
#pragma weak cholmod_metis

namespace kmat {

namespace {

double diagonalEntry(const cholmod_sparse& A, std::size_t column) {
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
    for (std::size_t column = 0; column < A.ncol; ++column) {
        if (diagonalEntry(A, column) <= 0.0) return true;
    }
    return false;
}

// Each thread that computes in OpenBLAS maps this much at its first use and keeps it, but where it
// is refused, OpenBLAS tries again for ever. So OpenBLAS has to map its buffers before CHOLMOD
// takes the room.
#ifdef __EMSCRIPTEN__
constexpr std::size_t BLAS_BUFFER_SIZE = std::size_t{17}
                                         << 20;  // as scripts/wasm-dependencies builds it
#else
constexpr std::size_t BLAS_BUFFER_SIZE = std::size_t{sizeof(void*) > 4 ? 129 : 33} << 20;
#endif

// OpenBLAS may have started its own threads a moment ago: in a forked process it starts them again.
// They need room, too, although they get no work.
void takeBlasBuffer(int blasThreads) {
    static bool taken = false;
    if (taken) return;
    const std::size_t buffers = blasThreads > 1 ? 1 + static_cast<std::size_t>(blasThreads) : 1;
    const std::size_t size = buffers * BLAS_BUFFER_SIZE;
    void* const room = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (room == MAP_FAILED) throw std::bad_alloc();
    munmap(room, size);
    const double one = 1.0;
    double product = 0.0;
    cblas_dsyrk(CblasColMajor, CblasLower, CblasNoTrans, 1, 1, 1.0, &one, 1, 0.0, &product, 1);
    taken = true;
}

// Where CHOLMOD keeps AMD and METIS among the orderings that it tries by default.
constexpr int AMD = 1;
constexpr int METIS = 2;

// Whether CHOLMOD wanted an ordering that it could not make. It goes on with another one then, and
// the results would depend on how much memory there was. It tries METIS after AMD has left many
// operations for each entry of the factor, and many entries for each of the matrix.
bool lacksOrdering(const cholmod_common& common) {
    if (common.nmethods != 0) return false;  // the orderings are a host's choice
    const auto& amd = common.method[AMD];
    if (amd.lnz < 0) return true;
    const bool wantsMetis = amd.fl >= 500 * amd.lnz && amd.lnz >= 5 * common.anz;
    return wantsMetis && cholmod_metis && common.method[METIS].lnz < 0;
}

Factor factorizeOnce(const SparseMatrix& A) {
    Factor factor = A.analyze();
    factor.factorize(A);
    return factor;
}

}  // namespace

Factor SparseMatrix::analyze() const {
    const SingleThreadedCholmod guard;
    const MetisGuard metisGuard;
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    for (const int method : {AMD, METIS})
        common->method[method].lnz = -1;  // may be of another matrix
    cholmod_factor* factor = cholmod_analyze(sparse.get(), common);
    if (factor && lacksOrdering(*common)) {
        cholmod_free_factor(&factor, common);
        cholmod_error(CHOLMOD_OUT_OF_MEMORY, "SparseMatrixLib/factor.cpp", __LINE__,
                      "out of memory for an ordering", common);
    }
    return Factor(factor);
}

void Factor::factorize(const SparseMatrix& A) {
    const SingleThreadedCholmod guard;
    takeBlasBuffer(guard.getHostsBlasThreads());
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
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    const cholmod_factor* L = F.factor.get();
    // If there is memory for the second of the two workspaces of a supernodal solution, but not for
    // the first one, CHOLMOD goes on without it, and crashes. So CHOLMOD gets both.
    cholmod_dense* Y = nullptr;
    cholmod_dense* E = nullptr;
    bool hasWorkspaces = true;
    if (L && L->is_super && b.dense) {
        const std::size_t columns = b.getColumns();
        Y = cholmod_allocate_dense(L->n, columns, L->n, CHOLMOD_REAL, common);
        E = cholmod_allocate_dense(columns, L->maxesize, columns, CHOLMOD_REAL, common);
        hasWorkspaces = Y && E;
    }
    cholmod_dense* x = nullptr;
    if (!hasWorkspaces || !cholmod_solve2(CHOLMOD_A, F.factor.get(), b.dense.get(), nullptr, &x,
                                          nullptr, &Y, &E, common)) {
        cholmod_free_dense(&x, common);
    }
    cholmod_free_dense(&Y, common);
    cholmod_free_dense(&E, common);
    return DenseMatrix(x);
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
