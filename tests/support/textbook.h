// References for everything that computes, by textbook loops, and repeatable random input.
// Independent of the library.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

namespace test {

/// The same numbers in every run.
class Random {
public:
    double number(double low = -1.0, double high = 1.0) {
        return std::uniform_real_distribution<double>(low, high)(engine);
    }
    unsigned below(unsigned limit) { return static_cast<unsigned>(engine() % limit); }

private:
    std::mt19937_64 engine;
};

/// Column-major reference matrix.
struct Matrix {
    unsigned rows;
    unsigned columns;
    std::vector<double> values;

    Matrix(unsigned rows, unsigned columns)
        : rows(rows), columns(columns), values(std::size_t{rows} * columns) {}
    Matrix(unsigned rows, unsigned columns, Random& random) : Matrix(rows, columns) {
        for (double& v : values) v = random.number();
    }
    /// Copies from, or to, a matrix of the library.
    template <typename Dense>
    explicit Matrix(const Dense& source) : Matrix(source.getRows(), source.getColumns()) {
        source.get(values.data());
    }
    template <typename Dense>
    Dense to() const {
        Dense result(rows, columns, 0.0);
        result.set(values.data());
        return result;
    }
    double& operator()(unsigned r, unsigned c) { return values[r + std::size_t{c} * rows]; }
    double operator()(unsigned r, unsigned c) const { return values[r + std::size_t{c} * rows]; }
    bool operator==(const Matrix&) const = default;
};

inline Matrix combination(double s, const Matrix& a, double t, const Matrix& b) {
    Matrix sum = a;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        sum.values[i] = s * a.values[i] + t * b.values[i];
    return sum;
}

inline Matrix transposed(const Matrix& a) {
    Matrix result(a.columns, a.rows);
    for (unsigned r = 0; r < a.rows; ++r) {
        for (unsigned c = 0; c < a.columns; ++c) result(c, r) = a(r, c);
    }
    return result;
}

inline Matrix product(const Matrix& a, const Matrix& b) {
    Matrix result(a.rows, b.columns);
    for (unsigned r = 0; r < a.rows; ++r) {
        for (unsigned c = 0; c < b.columns; ++c) {
            for (unsigned k = 0; k < a.columns; ++k) result(r, c) += a(r, k) * b(k, c);
        }
    }
    return result;
}

/// Largest absolute difference; infinite when the sizes differ or a value is NaN. The one
/// comparison of matrices by tolerance: a maximum of differences alone would not see a NaN.
inline double distance(const Matrix& a, const Matrix& b) {
    if (a.rows != b.rows || a.columns != b.columns) return INFINITY;
    double largest = 0.0;
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        const double difference = std::fabs(a.values[i] - b.values[i]);
        if (!(difference <= largest)) largest = std::isnan(difference) ? INFINITY : difference;
    }
    return largest;
}

/// Gauss-Jordan elimination without pivoting, for a positive definite `a`.
inline Matrix gaussSolve(Matrix a, Matrix b) {
    for (unsigned k = 0; k < a.rows; ++k) {
        for (unsigned r = 0; r < a.rows; ++r) {
            const double factor = a(r, k) / a(k, k);
            if (r == k || factor == 0.0) continue;
            for (unsigned c = k; c < a.columns; ++c) a(r, c) -= factor * a(k, c);
            for (unsigned c = 0; c < b.columns; ++c) b(r, c) -= factor * b(k, c);
        }
    }
    for (unsigned c = 0; c < b.columns; ++c) {
        for (unsigned r = 0; r < b.rows; ++r) b(r, c) /= a(r, r);
    }
    return b;
}

/// B' D B of the bilinear plane-stress element in natural coordinates, by explicit multiplication
/// of the 3 x 8 strain-displacement matrix.
inline Matrix stiffnessAt(double xi, double eta) {
    constexpr double nu = 0.300000011920928955078125;  // 0.3 in single precision
    constexpr double corner[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    Matrix B(3, 8);
    for (unsigned k = 0; k < 4; ++k) {
        B(0, 2 * k) = B(2, 2 * k + 1) = corner[k][0] * (1 + corner[k][1] * eta) / 4;
        B(1, 2 * k + 1) = B(2, 2 * k) = corner[k][1] * (1 + corner[k][0] * xi) / 4;
    }
    Matrix D(3, 3);
    D(0, 0) = D(1, 1) = 1 / (1 - nu * nu);
    D(0, 1) = D(1, 0) = nu / (1 - nu * nu);
    D(2, 2) = (1 - nu) / 2 / (1 - nu * nu);
    return product(transposed(B), product(D, B));
}

/// The exact element matrix, by 2 x 2 Gauss points.
inline Matrix exactElementMatrix() {
    Matrix sum(8, 8);
    const double g = 1 / std::sqrt(3.0);
    for (const double xi : {-g, g}) {
        for (const double eta : {-g, g}) sum = combination(1, sum, 1, stiffnessAt(xi, eta));
    }
    return sum;
}

/// Degrees of freedom of element (x, y), corner by corner in the order of the element matrix.
inline std::array<unsigned, 8> dofsOfElement(unsigned x, unsigned y, unsigned nely) {
    const unsigned p = 2 * (x * (nely + 1) + y);
    const unsigned q = p + 2 * (nely + 1);
    return {p, p + 1, q, q + 1, q + 2, q + 3, p + 2, p + 3};
}

/// The matrix of the sub-square in the given column and row of an element that is split into
/// n x n of them. The side is rounded to single precision.
inline Matrix subElementMatrix(unsigned n, unsigned column, unsigned row) {
    if (n == 1) return exactElementMatrix();
    const double h = 2.0F / static_cast<float>(n);
    const Matrix centre = stiffnessAt(h * column + h / 2 - 1, h * row + h / 2 - 1);
    return combination(4.0 / (n * n), centre, 0, centre);
}

/// Stiffness of a plate whose elements are split into n x n cells. `modulus` gives that of a cell,
/// counted column by column.
template <typename Modulus>
Matrix plateStiffness(unsigned nelx, unsigned nely, unsigned n, const Modulus& modulus) {
    const unsigned ndof = 2 * (nelx + 1) * (nely + 1);
    Matrix K(ndof, ndof);
    for (unsigned e = 0; e < nelx * nely * n * n; ++e) {
        const unsigned column = e / (nely * n);
        const unsigned row = e % (nely * n);
        const Matrix KE = subElementMatrix(n, column % n, row % n);
        const auto dof = dofsOfElement(column / n, row / n, nely);
        for (unsigned i = 0; i < 64; ++i) {
            K(dof[i % 8], dof[i / 8]) += KE.values[i] * modulus(e);
        }
    }
    return K;
}

/// Weights of a cone of that radius between all pairs of cells of an nx x ny grid.
inline Matrix coneWeights(unsigned nx, unsigned ny, double radius) {
    const unsigned n = nx * ny;
    Matrix weights(n, n);
    for (unsigned i = 0; i < n * n; ++i) {
        const int dx = static_cast<int>(i / n / ny) - static_cast<int>(i % n / ny);
        const int dy = static_cast<int>(i / n % ny) - static_cast<int>(i % n % ny);
        weights.values[i] = std::fmax(0.0, radius - std::sqrt(dx * dx + dy * dy));
    }
    return weights;
}

inline Matrix rowSums(const Matrix& a) {
    Matrix ones(a.columns, 1);
    ones.values.assign(a.columns, 1.0);
    return product(a, ones);
}

}  // namespace test
