#include <immintrin.h>

#include "small_blas_kernels.h"

namespace smallblas {

namespace {

struct Vectors {
    using Vector = __m256d;
    using Mask = __m256i;
    static constexpr int WIDTH = 4;
    static constexpr int ROWS = 3;
    static constexpr int COLUMNS = 4;
    static constexpr int LIMIT = 128;

    static Mask mask(int count) {
        return _mm256_cmpgt_epi64(_mm256_set1_epi64x(count), _mm256_setr_epi64x(0, 1, 2, 3));
    }
    static Vector broadcast(double value) { return _mm256_set1_pd(value); }
    static Vector load(const double* p) { return _mm256_loadu_pd(p); }
    static Vector load(const double* p, Mask part) { return _mm256_maskload_pd(p, part); }
    static void store(double* p, Vector v) { _mm256_storeu_pd(p, v); }
    static void store(double* p, Vector v, Mask part) { _mm256_maskstore_pd(p, part, v); }
    static Vector multiply(Vector a, Vector b) { return _mm256_mul_pd(a, b); }
    static Vector addProduct(Vector sum, Vector a, Vector b) { return _mm256_fmadd_pd(a, b, sum); }
    static Vector subtractProduct(Vector sum, Vector a, Vector b) {
        return _mm256_fnmadd_pd(a, b, sum);
    }
    static double sum(Vector v) {
        const __m128d pairs = _mm_add_pd(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1));
        return _mm_cvtsd_f64(_mm_add_sd(pairs, _mm_unpackhi_pd(pairs, pairs)));
    }
};

}  // namespace

const Kernels AVX2 = Implementation<Vectors>::kernels();

}  // namespace smallblas
