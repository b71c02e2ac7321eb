// Dense kernels for the small matrices of a supernodal factorisation.
//
// On plates of interactive size, nine of ten updates have a side below 16. For these, a general
// BLAS spends more time on checking arguments, packing and choosing a kernel than on arithmetic.
// The kernels here implement the few operations that CHOLMOD calls, read the matrices in place, and
// keep the result in registers. All matrices are stored by columns; a leading dimension is the
// distance between two columns.
#pragma once

#include <cstddef>

namespace smallblas {

/// A leading dimension. Wider than an int, because it is multiplied by numbers of columns.
using Distance = std::ptrdiff_t;

struct Kernels {
    /// The inner dimension (k, or n of solveRight and factorise) up to which they are faster than
    /// OpenBLAS. Larger ones are allowed. Products and solutions with a vector are faster always.
    int limit;
    /// C = A B', with A m x k, B n x k and C m x n.
    void (*multiply)(int m, int n, int k, const double* A, Distance lda, const double* B,
                     Distance ldb, double* C, Distance ldc);
    /// The lower triangle of C = A A', with A n x k. What is above the diagonal has no meaning.
    void (*square)(int n, int k, const double* A, Distance lda, double* C, Distance ldc);
    /// B = B inv(L'), with the lower triangle L n x n and B m x n.
    void (*solveRight)(int m, int n, const double* L, Distance ldl, double* B, Distance ldb);
    /// The lower triangle of A n x n becomes its Cholesky factor. Returns 0, or the number of the
    /// first column, counted from 1, whose pivot is not positive.
    int (*factorise)(int n, double* A, Distance lda);
    /// y = y - A x, with A m x n.
    void (*subtractProduct)(int m, int n, const double* A, Distance lda, const double* x,
                            double* y);
    /// y = y - A' x, with A m x n.
    void (*subtractTransposedProduct)(int m, int n, const double* A, Distance lda, const double* x,
                                      double* y);
    /// x = inv(L) x, and x = inv(L') x, with the lower triangle L n x n.
    void (*solve)(int n, const double* L, Distance ldl, double* x);
    void (*solveTransposed)(int n, const double* L, Distance ldl, double* x);
};

/// For any processor, for those with AVX2 and FMA, and for those with AVX-512 (F, DQ, BW and VL).
extern const Kernels PORTABLE;
#ifdef __x86_64__
extern const Kernels AVX2;
extern const Kernels AVX512;
#endif

}  // namespace smallblas
