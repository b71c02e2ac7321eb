// The kernels of small_blas.h, for vectors of a kind V; small_blas.cpp documents what V has. Each
// source that includes this is compiled for another processor. Hence nothing here is visible to
// other sources, and nothing of the standard library is used: the linker keeps one copy of an
// inline function, and it could keep one that this processor cannot run.
#pragma once

#include "small_blas.h"

namespace smallblas {
namespace {

// A whole number that is known to the compiler.
template <int NUMBER>
struct Count {
    static constexpr int VALUE = NUMBER;
};

constexpr int smaller(int a, int b) { return a < b ? a : b; }

// Calls use(Count<count>) for a count from 1 to MOST.
template <int MOST, typename Use>
inline void withCount(int count, const Use& use) {
    if constexpr (MOST == 1) {
        use(Count<1>());
    } else if (count == MOST) {
        use(Count<MOST>());
    } else {
        withCount<MOST - 1>(count, use);
    }
}

// Splits m rows into panels of up to V::ROWS vectors; the last vector of a panel may be partial.
// Calls use(first row, number of vectors as a Count, mask of the last one).
template <typename V, typename Use>
inline void forPanels(int begin, int end, const Use& use) {
    for (int i = begin; i < end; i += V::ROWS * V::WIDTH) {
        const int rows = smaller(V::ROWS * V::WIDTH, end - i);
        const int vectors = (rows + V::WIDTH - 1) / V::WIDTH;
        const auto last = V::mask(rows - (vectors - 1) * V::WIDTH);
        withCount<V::ROWS>(vectors, [&](auto count) { use(i, count, last); });
    }
}

// R vectors of rows by N columns of a matrix, in registers.
template <typename V, int R, int N>
struct Tile {
    using Vector = typename V::Vector;
    using Mask = typename V::Mask;
    Vector at[R][N];

    static Vector vectorOf(const double* column, int r, Mask last) {
        return r < R - 1 ? V::load(column + r * V::WIDTH) : V::load(column + r * V::WIDTH, last);
    }

    void clear() {
#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) {
#pragma GCC unroll 8
            for (int r = 0; r < R; ++r) at[r][j] = V::broadcast(0.0);
        }
    }
    void load(const double* C, Distance ldc, Mask last) {
#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) {
#pragma GCC unroll 8
            for (int r = 0; r < R; ++r) at[r][j] = vectorOf(C + j * ldc, r, last);
        }
    }
    void store(double* C, Distance ldc, Mask last) const {
#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) {
#pragma GCC unroll 8
            for (int r = 0; r < R - 1; ++r) V::store(C + j * ldc + r * V::WIDTH, at[r][j]);
            V::store(C + j * ldc + (R - 1) * V::WIDTH, at[R - 1][j], last);
        }
    }
    // Adds A B', or subtracts it, with k columns each.
    template <bool SUBTRACT>
    void accumulate(int k, const double* A, Distance lda, const double* B, Distance ldb,
                    Mask last) {
        for (int l = 0; l < k; ++l, A += lda, B += ldb) {
            Vector a[R];
#pragma GCC unroll 8
            for (int r = 0; r < R; ++r) a[r] = vectorOf(A, r, last);
#pragma GCC unroll 8
            for (int j = 0; j < N; ++j) {
                const Vector b = V::broadcast(B[j]);
#pragma GCC unroll 8
                for (int r = 0; r < R; ++r) {
                    at[r][j] = SUBTRACT ? V::subtractProduct(at[r][j], a[r], b)
                                        : V::addProduct(at[r][j], a[r], b);
                }
            }
        }
    }
    // Multiplies by inv(L') from the right, with the N x N triangle L.
    void solveRight(const double* L, Distance ldl) {
#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) {
            const Vector inverse = V::broadcast(1.0 / L[j + j * ldl]);
#pragma GCC unroll 8
            for (int r = 0; r < R; ++r) at[r][j] = V::multiply(at[r][j], inverse);
#pragma GCC unroll 8
            for (int i = j + 1; i < N; ++i) {
                const Vector l = V::broadcast(L[i + j * ldl]);
#pragma GCC unroll 8
                for (int r = 0; r < R; ++r) {
                    at[r][i] = V::subtractProduct(at[r][i], at[r][j], l);
                }
            }
        }
    }
};

template <typename V>
struct Implementation {
    static constexpr int COLUMNS = V::COLUMNS;

    template <int R>
    static void multiplyPanel(int n, int k, const double* A, Distance lda, const double* B,
                              Distance ldb, double* C, Distance ldc, typename V::Mask last) {
        for (int j = 0; j < n; j += COLUMNS) {
            withCount<COLUMNS>(smaller(COLUMNS, n - j), [&](auto columns) {
                Tile<V, R, decltype(columns)::VALUE> tile;
                tile.clear();
                tile.template accumulate<false>(k, A, lda, B + j, ldb, last);
                tile.store(C + j * ldc, ldc, last);
            });
        }
    }

    static void multiply(int m, int n, int k, const double* A, Distance lda, const double* B,
                         Distance ldb, double* C, Distance ldc) {
        forPanels<V>(0, m, [&](int i, auto vectors, auto last) {
            multiplyPanel<decltype(vectors)::VALUE>(n, k, A + i, lda, B, ldb, C + i, ldc, last);
        });
    }

    static void square(int n, int k, const double* A, Distance lda, double* C, Distance ldc) {
        forPanels<V>(0, n, [&](int i, auto vectors, auto last) {
            constexpr int R = decltype(vectors)::VALUE;
            multiplyPanel<R>(smaller(n, i + R * V::WIDTH), k, A + i, lda, A, lda, C + i, ldc, last);
        });
    }

    // Columns j to j + N of a panel of B inv(L'), when those before are known.
    template <int R, int N>
    static void solveColumns(int j, const double* L, Distance ldl, double* B, Distance ldb,
                             typename V::Mask last) {
        Tile<V, R, N> tile;
        tile.load(B + j * ldb, ldb, last);
        tile.template accumulate<true>(j, B, ldb, L + j, ldl, last);
        tile.solveRight(L + j + j * ldl, ldl);
        tile.store(B + j * ldb, ldb, last);
    }

    static void solveRight(int m, int n, const double* L, Distance ldl, double* B, Distance ldb) {
        forPanels<V>(0, m, [&](int i, auto vectors, auto last) {
            for (int j = 0; j < n; j += COLUMNS) {
                withCount<COLUMNS>(smaller(COLUMNS, n - j), [&](auto columns) {
                    solveColumns<decltype(vectors)::VALUE, decltype(columns)::VALUE>(
                        j, L, ldl, B + i, ldb, last);
                });
            }
        });
    }

    // The n x n triangle at column j, when the columns before are known.
    static int factoriseDiagonal(int j, int n, double* A, Distance lda) {
        double block[COLUMNS * COLUMNS];
        const int vectors = (n + V::WIDTH - 1) / V::WIDTH;
        const auto last = V::mask(n - (vectors - 1) * V::WIDTH);
        withCount<COLUMNS / V::WIDTH>(vectors, [&](auto rows) {
            withCount<COLUMNS>(n, [&](auto columns) {
                Tile<V, decltype(rows)::VALUE, decltype(columns)::VALUE> tile;
                tile.load(A + j + j * lda, lda, last);
                tile.template accumulate<true>(j, A + j, lda, A + j, lda, last);
                tile.store(block, COLUMNS, last);
            });
        });
        for (int c = 0; c < n; ++c) {
            double* const column = block + c * COLUMNS;
            double* const result = A + j + (j + c) * lda;
            if (!(column[c] > 0.0)) return j + c + 1;
            result[c] = __builtin_sqrt(column[c]);
            for (int r = c + 1; r < n; ++r) result[r] = column[r] / result[c];
            for (int d = c + 1; d < n; ++d) {
                for (int r = d; r < n; ++r) block[r + d * COLUMNS] -= result[r] * result[d];
            }
        }
        return 0;
    }

    static int factorise(int n, double* A, Distance lda) {
        for (int j = 0; j < n; j += COLUMNS) {
            const int count = smaller(COLUMNS, n - j);
            const int failure = factoriseDiagonal(j, count, A, lda);
            if (failure) return failure;
            forPanels<V>(j + count, n, [&](int i, auto vectors, auto last) {
                // There are rows below only if the block of columns is whole.
                solveColumns<decltype(vectors)::VALUE, COLUMNS>(j, A, lda, A + i, lda, last);
            });
        }
        return 0;
    }

    // Calls step(row) for whole vectors of m rows, and step(row, mask) for the rest.
    template <typename Step>
    static void forVectors(int m, const Step& step) {
        int i = 0;
        for (; i + V::WIDTH <= m; i += V::WIDTH) step(i);
        if (i < m) step(i, V::mask(m - i));
    }

    // Both products with a vector go through A once, along a few columns at a time: the solution
    // of large systems waits for memory.
    static void subtractProduct(int m, int n, const double* A, Distance lda, const double* x,
                                double* y) {
        for (int j = 0; j < n; j += COLUMNS) {
            withCount<COLUMNS>(smaller(COLUMNS, n - j), [&](auto columns) {
                constexpr int N = decltype(columns)::VALUE;
                typename V::Vector factors[N];
#pragma GCC unroll 8
                for (int c = 0; c < N; ++c) factors[c] = V::broadcast(x[j + c]);
                forVectors(m, [&](int i, auto... part) {
                    auto sum = V::load(y + i, part...);
#pragma GCC unroll 8
                    for (int c = 0; c < N; ++c) {
                        const auto a = V::load(A + i + (j + c) * lda, part...);
                        sum = V::subtractProduct(sum, a, factors[c]);
                    }
                    V::store(y + i, sum, part...);
                });
            });
        }
    }

    static void subtractTransposedProduct(int m, int n, const double* A, Distance lda,
                                          const double* x, double* y) {
        for (int j = 0; j < n; j += COLUMNS) {
            withCount<COLUMNS>(smaller(COLUMNS, n - j), [&](auto columns) {
                constexpr int N = decltype(columns)::VALUE;
                Tile<V, 1, N> sums;
                sums.clear();
                forVectors(m, [&](int i, auto... part) {
                    const auto factors = V::load(x + i, part...);
#pragma GCC unroll 8
                    for (int c = 0; c < N; ++c) {
                        const auto a = V::load(A + i + (j + c) * lda, part...);
                        sums.at[0][c] = V::addProduct(sums.at[0][c], a, factors);
                    }
                });
#pragma GCC unroll 8
                for (int c = 0; c < N; ++c) y[j + c] -= V::sum(sums.at[0][c]);
            });
        }
    }

    static void solve(int n, const double* L, Distance ldl, double* x) {
        for (int j = 0; j < n; j += COLUMNS) {
            const int end = smaller(j + COLUMNS, n);
            for (int c = j; c < end; ++c) {
                x[c] /= L[c + c * ldl];
                for (int r = c + 1; r < end; ++r) x[r] -= L[r + c * ldl] * x[c];
            }
            subtractProduct(n - end, end - j, L + end + j * ldl, ldl, x + j, x + end);
        }
    }

    static void solveTransposed(int n, const double* L, Distance ldl, double* x) {
        for (int end = n; end > 0;) {
            const int j = (end - 1) / COLUMNS * COLUMNS;
            subtractTransposedProduct(n - end, end - j, L + end + j * ldl, ldl, x + end, x + j);
            for (int c = end - 1; c >= j; --c) {
                for (int r = c + 1; r < end; ++r) x[c] -= L[r + c * ldl] * x[r];
                x[c] /= L[c + c * ldl];
            }
            end = j;
        }
    }

    static constexpr Kernels kernels() {
        return {V::LIMIT,
                multiply,
                square,
                solveRight,
                factorise,
                subtractProduct,
                subtractTransposedProduct,
                solve,
                solveTransposed};
    }
};

}  // namespace
}  // namespace smallblas
