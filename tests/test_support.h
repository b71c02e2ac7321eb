// References for everything that computes (textbook loops), repeatable random input, and the loads
// and supports of test plates. Independent of the library.
#pragma once

#include <algorithm>
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
        : rows(rows), columns(columns), values(size_t{rows} * columns) {}
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
    double& operator()(unsigned r, unsigned c) { return values[r + size_t{c} * rows]; }
    double operator()(unsigned r, unsigned c) const { return values[r + size_t{c} * rows]; }
    bool operator==(const Matrix&) const = default;
};

inline Matrix combination(double s, const Matrix& a, double t, const Matrix& b) {
    Matrix sum = a;
    for (size_t i = 0; i < a.values.size(); ++i) sum.values[i] = s * a.values[i] + t * b.values[i];
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

/// Largest absolute difference; infinite when the sizes differ or a value is NaN.
inline double distance(const Matrix& a, const Matrix& b) {
    if (a.rows != b.rows || a.columns != b.columns) return INFINITY;
    double largest = 0.0;
    for (size_t i = 0; i < a.values.size(); ++i) {
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

/// Load or support records as the flat array that a host hands over.
struct Records {
    std::vector<float> floats;

    Records& add(float x, float y, float fx, float fy = 0, float loadCase = 0) {
        floats.insert(floats.end(), {x, y, fx, fy, loadCase});
        return *this;
    }
    int count() const { return static_cast<int>(floats.size() / 5); }
    const float* data() const { return floats.data(); }
};

/// Holds the left edge in x and its upper end in y: a stretched plate contracts unhindered.
inline Records slidingLeftEdge(int nely) {
    Records supports;
    for (int y = 0; y <= nely; ++y) supports.add(0, static_cast<float>(y), 0);
    return supports.add(0, 0, 1);
}

/// Uniform tension of the right edge as consistent nodal loads: half a share at the corners.
inline Records tension(int nelx, int nely, float stress) {
    Records loads;
    for (int y = 0; y <= nely; ++y) {
        const float share = y == 0 || y == nely ? 0.5F : 1.0F;
        loads.add(static_cast<float>(nelx), static_cast<float>(y), share * stress);
    }
    return loads;
}

/// What a host sends to the optimiser in one update.
struct Settings {
    Records loads;
    Records supports;
    float volumeFraction = 0.5F;
    std::vector<short> passive = {0, 0, 0};
    std::vector<char> loadCases = {0};
    std::vector<short> blob = {0};
};

/// A plate whose left edge is held, pulled down in the middle of the right edge.
inline Settings cantilever(int nelx, int nely) {
    Settings settings;
    for (int y = 0; y <= nely; ++y) {
        for (const float direction : {0.0F, 1.0F}) {
            settings.supports.add(0, static_cast<float>(y), direction);
        }
    }
    const int middle = nely / 2;
    settings.loads.add(static_cast<float>(nelx), static_cast<float>(middle), 0, 1);
    return settings;
}

}  // namespace test
