#include "ElementStiffnessMatrix.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "CheckedProduct.h"
#include "GridNumbering.h"

namespace {

// Single precision, widened: every constant below carries the widened value.
constexpr double POISSON_RATIO = 0.3F;
constexpr double PLANE_STRESS_FACTOR = 1.0 / (1.0 - POISSON_RATIO * POISSON_RATIO);

// Which of the eight distinct coefficients of the exact matrix stands where, counted from 1.
constexpr std::array<int, ELEMENT_MATRIX_SIZE> COEFFICIENT_NUMBER = {
    1, 2, 3, 4, 5, 6, 7, 8,  //
    2, 1, 8, 7, 6, 5, 4, 3,  //
    3, 8, 1, 6, 7, 4, 5, 2,  //
    4, 7, 6, 1, 8, 3, 2, 5,  //
    5, 6, 7, 8, 1, 2, 3, 4,  //
    6, 5, 4, 3, 2, 1, 8, 7,  //
    7, 4, 5, 2, 3, 8, 1, 6,  //
    8, 3, 2, 5, 4, 7, 6, 1,
};

// The integral of B' D B over the element in closed form.
void fillExact(double* block) {
    constexpr double nu = POISSON_RATIO;
    constexpr std::array<double, 9> k = {
        0.0,  // never selected
        1.0 / 2.0 - nu / 6.0,
        1.0 / 8.0 + nu / 8.0,
        -1.0 / 4.0 - nu / 12.0,
        -1.0 / 8.0 + 3.0 * nu / 8.0,
        -1.0 / 4.0 + nu / 12.0,
        -1.0 / 8.0 - nu / 8.0,
        nu / 6.0,
        1.0 / 8.0 - 3.0 * nu / 8.0,
    };
    for (std::size_t i = 0; i < ELEMENT_MATRIX_SIZE; ++i) {
        block[i] = PLANE_STRESS_FACTOR * k[static_cast<std::size_t>(COEFFICIENT_NUMBER[i])];
    }
}

// Natural coordinates of the four nodes.
constexpr std::array<double, 4> NODE_XI = {-1.0, 1.0, 1.0, -1.0};
constexpr std::array<double, 4> NODE_ETA = {-1.0, -1.0, 1.0, 1.0};

// B' D B at one point in natural coordinates. With the derivatives of two shape functions a and b
// in (xi, eta), each 2 x 2 block of the product follows in closed form.
void fillAtPoint(double xi, double eta, double* block) {
    constexpr double d11 = PLANE_STRESS_FACTOR;
    constexpr double d12 = PLANE_STRESS_FACTOR * POISSON_RATIO;
    constexpr double d33 = PLANE_STRESS_FACTOR * (1.0 - POISSON_RATIO) / 2.0;
    std::array<double, 4> dXi{};
    std::array<double, 4> dEta{};
    for (std::size_t k = 0; k < 4; ++k) {
        dXi[k] = NODE_XI[k] * (1.0 + NODE_ETA[k] * eta) / 4.0;
        dEta[k] = NODE_ETA[k] * (1.0 + NODE_XI[k] * xi) / 4.0;
    }
    for (std::size_t a = 0; a < 4; ++a) {
        for (std::size_t b = 0; b < 4; ++b) {
            double* xRow = block + 2 * a * ELEMENT_DOFS + 2 * b;
            double* yRow = xRow + ELEMENT_DOFS;
            xRow[0] = d11 * dXi[a] * dXi[b] + d33 * dEta[a] * dEta[b];
            xRow[1] = d12 * dXi[a] * dEta[b] + d33 * dEta[a] * dXi[b];
            yRow[0] = d12 * dEta[a] * dXi[b] + d33 * dXi[a] * dEta[b];
            yRow[1] = d11 * dEta[a] * dEta[b] + d33 * dXi[a] * dXi[b];
        }
    }
}

// One-point rule in each sub-square, weighted with its area in natural coordinates, 4 / n^2.
// The blocks sum to the midpoint rule, which is softer than the exact matrix.
void fillSubSquares(int n, double* blocks) {
    const float side = 2.0F / static_cast<float>(n);
    const double h = side;
    const auto centre = [h](int i) { return h * i + (h / 2.0 - 1.0); };
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j, blocks += ELEMENT_MATRIX_SIZE) {
            fillAtPoint(centre(j), centre(i), blocks);
            std::for_each_n(blocks, ELEMENT_MATRIX_SIZE, [n](double& m) { m = m * 4.0 / n / n; });
        }
    }
}

}  // namespace

double* ElementStiffnessMatrix::createElementStiffnessMatrix(int subdivisions) {
    const auto n = static_cast<uint64_t>(std::abs(int64_t{subdivisions}));
    auto* blocks = new double[checkedProduct({n, n, ELEMENT_MATRIX_SIZE})];
    if (subdivisions == 1) fillExact(blocks);
    if (subdivisions > 1) fillSubSquares(subdivisions, blocks);
    return blocks;
}
