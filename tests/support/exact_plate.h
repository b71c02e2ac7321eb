// A plate solved with 113 bits, by a band Cholesky factorisation: the reference for the analysis.
// Independent of the library.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "support/plates.h"
#include "support/textbook.h"

namespace test {

#ifdef __SIZEOF_FLOAT128__
__extension__ using Quad = __float128;
#else
using Quad = long double;
#endif

/// The element matrix for unit modulus and Poisson's ratio 0.3, times 72.8, in the order of
/// dofsOfElement(): eight whole numbers that the textbook derives, and their places.
inline int wholeStiffness(std::size_t row, std::size_t column) {
    constexpr int k[] = {36, 13, -22, -1, -18, -13, 4, 1};
    constexpr int place[8][8] = {{0, 1, 2, 3, 4, 5, 6, 7}, {1, 0, 7, 6, 5, 4, 3, 2},
                                 {2, 7, 0, 5, 6, 3, 4, 1}, {3, 6, 5, 0, 7, 2, 1, 4},
                                 {4, 5, 6, 7, 0, 1, 2, 3}, {5, 4, 3, 2, 1, 0, 7, 6},
                                 {6, 3, 4, 1, 2, 7, 0, 5}, {7, 2, 1, 4, 3, 6, 5, 0}};
    return k[place[row][column]];
}

/// The displacements of a plate whose elements all have material, by degree of freedom.
class ExactPlate {
public:
    ExactPlate(unsigned nelx, unsigned nely, const std::vector<double>& moduli,
               const Records& supports)
        : width(2 * (nely + 1) + 4),
          ndof(2 * (nelx + 1) * (nely + 1)),
          held(ndof),
          band(ndof, std::vector<Quad>(width + 1)) {
        for (std::size_t i = 0; i < supports.floats.size(); i += 5) {
            const float* record = supports.data() + i;
            held[dofOf(record, nely) + static_cast<std::size_t>(record[2])] = true;
        }
        for (unsigned e = 0; e < nelx * nely; ++e) {
            const auto dof = dofsOfElement(e / nely, e % nely, nely);
            for (std::size_t i = 0; i < 64; ++i) {
                const std::size_t row = dof[i / 8];
                const std::size_t column = dof[i % 8];
                if (row < column || held[row] || held[column]) continue;
                at(row, column) += Quad(moduli[e]) * wholeStiffness(i / 8, i % 8);
            }
        }
        for (std::size_t i = 0; i < ndof; ++i) {
            if (held[i]) at(i, i) = 1;
        }
        factorize();
    }

    std::vector<Quad> solve(const Records& loads, unsigned nely, float loadCase) const {
        std::vector<Quad> u(ndof);
        for (std::size_t i = 0; i < loads.floats.size(); i += 5) {
            const float* record = loads.data() + i;
            if (record[4] != loadCase) continue;
            for (const std::size_t d : {0, 1}) {
                const std::size_t dof = dofOf(record, nely) + d;
                if (!held[dof]) u[dof] += Quad(record[2 + d]) * 728 / 10;
            }
        }
        for (std::size_t i = 0; i < ndof; ++i) {
            for (std::size_t j = first(i); j < i; ++j) u[i] -= at(i, j) * u[j];
            u[i] /= at(i, i);
        }
        for (std::size_t i = ndof; i-- > 0;) {
            u[i] /= at(i, i);
            for (std::size_t j = first(i); j < i; ++j) u[j] -= at(i, j) * u[i];
        }
        return u;
    }

private:
    static std::size_t dofOf(const float* record, unsigned nely) {
        return 2 * (static_cast<std::size_t>(record[0]) * (nely + 1) +
                    static_cast<std::size_t>(record[1]));
    }
    std::size_t first(std::size_t row) const { return row < width ? 0 : row - width; }
    Quad& at(std::size_t row, std::size_t column) { return band[row][row - column]; }
    const Quad& at(std::size_t row, std::size_t column) const { return band[row][row - column]; }

    // The root of a double, and two steps of Newton's method.
    static Quad root(Quad a) {
        Quad r = std::sqrt(static_cast<double>(a));
        for (int i = 0; i < 2; ++i) r = (r + a / r) / 2;
        return r;
    }
    void factorize() {
        for (std::size_t i = 0; i < ndof; ++i) {
            for (std::size_t j = first(i); j <= i; ++j) {
                Quad sum = at(i, j);
                for (std::size_t k = first(i); k < j; ++k) sum -= at(i, k) * at(j, k);
                at(i, j) = i == j ? root(sum) : sum / at(j, j);
            }
        }
    }

    std::size_t width;
    std::size_t ndof;
    std::vector<bool> held;
    std::vector<std::vector<Quad>> band;
};

}  // namespace test
