// What CHOLMOD calls instead of the BLAS when both are linked into the library, under the names
// that cmake/EmbeddedCholmod.cmake gives to it. Small matrices go to the kernels of small_blas.h,
// and so does every vector; the rest goes to the BLAS, with arguments that only a future CHOLMOD
// may use.

#include "embedded_blas.h"
#include "small_blas.h"

#pragma GCC visibility push(hidden)

extern "C" {
void dgemm_(const char* transA, const char* transB, const int* m, const int* n, const int* k,
            const double* alpha, const double* A, const int* lda, const double* B, const int* ldb,
            const double* beta, double* C, const int* ldc);
void dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
            const double* A, const int* lda, const double* beta, double* C, const int* ldc);
void dtrsm_(const char* side, const char* uplo, const char* trans, const char* diag, const int* m,
            const int* n, const double* alpha, const double* L, const int* ldl, double* B,
            const int* ldb);
void dpotrf_(const char* uplo, const int* n, double* A, const int* lda, int* info);
void dgemv_(const char* trans, const int* m, const int* n, const double* alpha, const double* A,
            const int* lda, const double* x, const int* incx, const double* beta, double* y,
            const int* incy);
void dtrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* L,
            const int* ldl, double* x, const int* incx);
}

namespace {

const smallblas::Kernels& chosenKernels() {
#ifdef __x86_64__
    switch (voxam_blas_vectors()) {
        case VOXAM_AVX512:
            return smallblas::AVX512;
        case VOXAM_AVX2:
            return smallblas::AVX2;
        default:
            break;
    }
#endif
    return smallblas::PORTABLE;
}

const smallblas::Kernels KERNELS = chosenKernels();

bool isTransposed(const char* trans) { return *trans != 'N'; }

bool isLower(const char* uplo) { return *uplo == 'L'; }

}  // namespace

extern "C" {

void voxam_cholmod_dgemm(const char* transA, const char* transB, const int* m, const int* n,
                         const int* k, const double* alpha, const double* A, const int* lda,
                         const double* B, const int* ldb, const double* beta, double* C,
                         const int* ldc) {
    if (*k <= KERNELS.limit && !isTransposed(transA) && isTransposed(transB) && *alpha == 1.0 &&
        *beta == 0.0) {
        KERNELS.multiply(*m, *n, *k, A, *lda, B, *ldb, C, *ldc);
    } else {
        dgemm_(transA, transB, m, n, k, alpha, A, lda, B, ldb, beta, C, ldc);
    }
}

void voxam_cholmod_dsyrk(const char* uplo, const char* trans, const int* n, const int* k,
                         const double* alpha, const double* A, const int* lda, const double* beta,
                         double* C, const int* ldc) {
    if (*k <= KERNELS.limit && isLower(uplo) && !isTransposed(trans) && *alpha == 1.0 &&
        *beta == 0.0) {
        KERNELS.square(*n, *k, A, *lda, C, *ldc);
    } else {
        dsyrk_(uplo, trans, n, k, alpha, A, lda, beta, C, ldc);
    }
}

void voxam_cholmod_dtrsm(const char* side, const char* uplo, const char* trans, const char* diag,
                         const int* m, const int* n, const double* alpha, const double* L,
                         const int* ldl, double* B, const int* ldb) {
    if (*n <= KERNELS.limit && *side == 'R' && isLower(uplo) && isTransposed(trans) &&
        *diag == 'N' && *alpha == 1.0) {
        KERNELS.solveRight(*m, *n, L, *ldl, B, *ldb);
    } else {
        dtrsm_(side, uplo, trans, diag, m, n, alpha, L, ldl, B, ldb);
    }
}

void voxam_cholmod_dpotrf(const char* uplo, const int* n, double* A, const int* lda, int* info) {
    if (*n <= KERNELS.limit && isLower(uplo)) {
        *info = KERNELS.factorise(*n, A, *lda);
    } else {
        dpotrf_(uplo, n, A, lda, info);
    }
}

void voxam_cholmod_dgemv(const char* trans, const int* m, const int* n, const double* alpha,
                         const double* A, const int* lda, const double* x, const int* incx,
                         const double* beta, double* y, const int* incy) {
    if (*alpha != -1.0 || *beta != 1.0 || *incx != 1 || *incy != 1) {
        dgemv_(trans, m, n, alpha, A, lda, x, incx, beta, y, incy);
    } else if (isTransposed(trans)) {
        KERNELS.subtractTransposedProduct(*m, *n, A, *lda, x, y);
    } else {
        KERNELS.subtractProduct(*m, *n, A, *lda, x, y);
    }
}

void voxam_cholmod_dtrsv(const char* uplo, const char* trans, const char* diag, const int* n,
                         const double* L, const int* ldl, double* x, const int* incx) {
    if (!isLower(uplo) || *diag != 'N' || *incx != 1) {
        dtrsv_(uplo, trans, diag, n, L, ldl, x, incx);
    } else if (isTransposed(trans)) {
        KERNELS.solveTransposed(*n, L, *ldl, x);
    } else {
        KERNELS.solve(*n, L, *ldl, x);
    }
}

}  // extern "C"
