#include "small_blas.h"

#include "small_blas_kernels.h"

namespace smallblas {

namespace {

// Vectors of one number.
struct Vectors {
    using Vector = double;
    struct Mask {};
    static constexpr int WIDTH = 1;  ///< numbers in a vector
    static constexpr int ROWS = 4;   ///< vectors and columns of a tile, to fill the registers
    static constexpr int COLUMNS = 4;
    static constexpr int LIMIT = 16;  ///< see Kernels

    /// Selects the first `count` numbers. What is loaded beyond them is 0, and nothing is stored.
    static Mask mask(int /*count*/) { return {}; }
    static Vector broadcast(double value) { return value; }
    static Vector load(const double* p) { return *p; }
    static Vector load(const double* p, Mask /*part*/) { return *p; }
    static void store(double* p, Vector v) { *p = v; }
    static void store(double* p, Vector v, Mask /*part*/) { *p = v; }
    static Vector multiply(Vector a, Vector b) { return a * b; }
    static Vector addProduct(Vector sum, Vector a, Vector b) { return sum + a * b; }
    static Vector subtractProduct(Vector sum, Vector a, Vector b) { return sum - a * b; }
    static double sum(Vector v) { return v; }
};

}  // namespace

const Kernels PORTABLE = Implementation<Vectors>::kernels();

}  // namespace smallblas
