#include <immintrin.h>

#include "small_blas_kernels.h"

namespace smallblas {

namespace {

struct Vectors {
    using Vector = __m512d;
    using Mask = __mmask8;
    static constexpr int WIDTH = 8;
    static constexpr int ROWS = 3;
    static constexpr int COLUMNS = 8;
    static constexpr int LIMIT = 256;

    static Mask mask(int count) { return static_cast<Mask>((1U << count) - 1); }
    static Vector broadcast(double value) { return _mm512_set1_pd(value); }
    static Vector load(const double* p) { return _mm512_loadu_pd(p); }
    static Vector load(const double* p, Mask part) { return _mm512_maskz_loadu_pd(part, p); }
    static void store(double* p, Vector v) { _mm512_storeu_pd(p, v); }
    static void store(double* p, Vector v, Mask part) { _mm512_mask_storeu_pd(p, part, v); }
    static Vector multiply(Vector a, Vector b) { return _mm512_mul_pd(a, b); }
    static Vector addProduct(Vector sum, Vector a, Vector b) { return _mm512_fmadd_pd(a, b, sum); }
    static Vector subtractProduct(Vector sum, Vector a, Vector b) {
        return _mm512_fnmadd_pd(a, b, sum);
    }
    static double sum(Vector v) {
        double x[WIDTH];
        store(x, v);
        return ((x[0] + x[4]) + (x[1] + x[5])) + ((x[2] + x[6]) + (x[3] + x[7]));
    }
};

}  // namespace

const Kernels AVX512 = Implementation<Vectors>::kernels();

}  // namespace smallblas
