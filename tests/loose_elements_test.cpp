// Material that can move, against the null space of the stiffness matrix.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "LooseElements.h"
#include "RigidMotions.h"
#include "support/exact_plate.h"
#include "support/textbook.h"

namespace {

using Flags = std::vector<unsigned char>;

// A field of integers: the stiffness matrix has whole coefficients, so what its null space moves
// follows without rounding.
constexpr uint64_t PRIME = 2147483647;

uint64_t power(uint64_t base, uint64_t exponent) {
    uint64_t result = 1;
    for (; exponent > 0; exponent /= 2, base = base * base % PRIME) {
        if (exponent % 2 == 1) result = result * base % PRIME;
    }
    return result;
}

// A random vector of the null space, by Gauss-Jordan elimination.
std::vector<uint64_t> nullVector(std::vector<std::vector<uint64_t>> K, test::Random& random) {
    const std::size_t n = K.size();
    std::vector<std::size_t> pivotOf(n, n);
    std::size_t rank = 0;
    for (std::size_t column = 0; column < n; ++column) {
        std::size_t row = rank;
        while (row < n && K[row][column] == 0) ++row;
        if (row == n) continue;
        std::swap(K[row], K[rank]);
        const uint64_t scale = power(K[rank][column], PRIME - 2);
        for (uint64_t& v : K[rank]) v = v * scale % PRIME;
        for (std::size_t r = 0; r < n; ++r) {
            const uint64_t factor = PRIME - K[r][column];
            if (r == rank || factor == PRIME) continue;
            for (std::size_t c = column; c < n; ++c)
                K[r][c] = (K[r][c] + factor * K[rank][c]) % PRIME;
        }
        pivotOf[column] = rank++;
    }
    std::vector<uint64_t> u(n);
    for (std::size_t i = 0; i < n; ++i) u[i] = pivotOf[i] < n ? 0 : 1 + random.below(1000000);
    std::vector<uint64_t> result = u;
    for (std::size_t i = 0; i < n; ++i) {
        if (pivotOf[i] == n) continue;
        for (std::size_t j = 0; j < n; ++j) {
            if (pivotOf[j] == n) result[i] += K[pivotOf[i]][j] * (PRIME - u[j]) % PRIME;
        }
        result[i] %= PRIME;
    }
    return result;
}

struct Plate {
    unsigned nelx;
    unsigned nely;
    Flags solid;
    Flags held;

    Flags loose() const { return findLooseElements(nelx, nely, solid, held); }
};

// Takes away what the null space moves until it moves nothing.
Flags looseByNullSpace(const Plate& plate, test::Random& random) {
    Flags solid = plate.solid;
    Flags loose(solid.size());
    for (bool found = true; found;) {
        found = false;
        const std::size_t ndof = plate.held.size();
        std::vector<std::vector<uint64_t>> K(ndof, std::vector<uint64_t>(ndof));
        Flags used(ndof);
        for (unsigned e = 0; e < solid.size(); ++e) {
            if (!solid[e]) continue;
            const auto dof = test::dofsOfElement(e / plate.nely, e % plate.nely, plate.nely);
            for (std::size_t i = 0; i < 64; ++i) {
                const std::size_t row = dof[i / 8];
                const std::size_t column = dof[i % 8];
                used[row] = 1;
                if (plate.held[row] || plate.held[column]) continue;
                const auto stiffness =
                    static_cast<uint64_t>(int64_t{PRIME} + test::wholeStiffness(i / 8, i % 8));
                K[row][column] = (K[row][column] + stiffness) % PRIME;
            }
        }
        for (std::size_t i = 0; i < ndof; ++i) {
            if (!used[i] || plate.held[i]) K[i][i] = 1;
        }
        const auto u = nullVector(K, random);
        for (unsigned e = 0; e < solid.size(); ++e) {
            const auto dof = test::dofsOfElement(e / plate.nely, e % plate.nely, plate.nely);
            const bool moves = std::ranges::any_of(dof, [&](unsigned d) { return u[d] != 0; });
            if (!solid[e] || !moves) continue;
            loose[e] = 1;
            solid[e] = 0;
            found = true;
        }
    }
    return loose;
}

TEST(LooseElementsTest, AreWhatTheNullSpaceMoves) {
    test::Random random;
    int mixed = 0;
    for (int trial = 0; trial < 600; ++trial) {
        Plate plate = {1 + random.below(5), 1 + random.below(5), {}, {}};
        plate.solid.resize(std::size_t{plate.nelx} * plate.nely);
        plate.held.resize(2 * std::size_t{plate.nelx + 1} * (plate.nely + 1));
        const double density = random.number(0.3, 0.8);
        const double support = random.number(0.0, 0.3);
        for (unsigned e = 0; e < plate.solid.size(); ++e) {
            // Every other trial on a chequered ground, where there are many pins.
            const bool white = (e / plate.nely + e % plate.nely) % 2 == 0;
            plate.solid[e] = random.number(0, 1) < (trial % 2 == 0 || white ? density : 0.1);
        }
        for (unsigned char& flag : plate.held) flag = random.number(0, 1) < support;
        const Flags loose = plate.loose();
        ASSERT_EQ(loose, looseByNullSpace(plate, random)) << trial;
        const auto count = std::ranges::count(loose, 1);
        mixed += count > 0 && count < std::ranges::count(plate.solid, 1);
    }
    EXPECT_GT(mixed, 50);
}

// Bars of one element, welded to nothing, in the corners of a chequered plate.
Plate chequered(unsigned nelx, unsigned nely) {
    Plate plate = {nelx, nely, Flags(std::size_t{nelx} * nely),
                   Flags(2 * std::size_t{nelx + 1} * (nely + 1))};
    for (unsigned e = 0; e < plate.solid.size(); ++e) {
        plate.solid[e] = (e / nely + e % nely) % 2 == 0;
    }
    return plate;
}

TEST(LooseElementsTest, ManyPinnedBodiesAreSettled) {
    Plate plate = chequered(300, 201);
    for (unsigned i = 0; i < 2 * 202; ++i) plate.held[i] = 1;
    EXPECT_EQ(std::ranges::count(plate.loose(), 1), 0) << "the left edge holds one after another";
    plate = chequered(40, 30);
    plate.held[0] = plate.held[1] = plate.held.back() = 1;
    EXPECT_EQ(plate.loose(), plate.solid) << "chequered plates collapse around three supports";
}

TEST(RigidMotionsTest, GiveUpWhenTheWorkIsTooMuch) {
    test::Random random;
    for (const uint64_t work : {10'000, 100'000'000}) {
        RigidMotions motions(100, work);
        for (int i = 0; i < 180; ++i) {
            const unsigned one = random.below(100);
            const unsigned other = (one + 1 + random.below(99)) % 100;
            motions.join(one, other, random.below(99), random.below(99));
        }
        EXPECT_EQ(motions.heldBodies().has_value(), work > 10'000);
    }
}

}  // namespace
