#include "RigidMotions.h"

#include <utility>

namespace {

constexpr uint64_t PRIME = 4294967291;  // the largest whose products fit 64 bits

uint64_t product(uint64_t a, uint64_t b) { return a * b % PRIME; }

uint64_t negative(uint64_t a) { return a == 0 ? 0 : PRIME - a; }

// By Fermat's little theorem.
uint64_t inverse(uint64_t a) {
    uint64_t result = 1;
    for (uint64_t exponent = PRIME - 2; exponent > 0; exponent /= 2) {
        if (exponent % 2 == 1) result = product(result, a);
        a = product(a, a);
    }
    return result;
}

}  // namespace

void RigidMotions::hold(std::size_t body, unsigned x, unsigned y, int direction) {
    const std::size_t first = 3 * body;
    const uint64_t rotation = direction == 0 ? negative(y) : x;
    Row row = {{direction == 0 ? first : first + 1, 1}};
    if (rotation != 0) row.push_back({first + 2, rotation});
    insert(std::move(row));
}

void RigidMotions::join(std::size_t one, std::size_t other, unsigned x, unsigned y) {
    if (one > other) std::swap(one, other);
    for (const std::size_t direction : {std::size_t{0}, std::size_t{1}}) {
        const uint64_t rotation = direction == 0 ? negative(y) : x;
        Row row = {{3 * one + direction, 1}};
        if (rotation != 0) row.push_back({3 * one + 2, rotation});
        row.push_back({3 * other + direction, negative(1)});
        if (rotation != 0) row.push_back({3 * other + 2, negative(rotation)});
        insert(std::move(row));
    }
}

// Gaussian elimination, one row at a time: what is left of the row after the unknowns that other
// rows determine becomes the row of its first unknown.
void RigidMotions::insert(Row row) {
    while (!row.empty() && work < mostWork) {
        Row& pivot = pivotRows[row.front().unknown];
        if (pivot.empty()) {
            const uint64_t factor = inverse(row.front().coefficient);
            for (Term& term : row) term.coefficient = product(term.coefficient, factor);
            pivot = std::move(row);
            return;
        }
        row = difference(row, pivot);
    }
}

// The row less the multiple of the pivot row that removes its first unknown.
RigidMotions::Row RigidMotions::difference(const Row& row, const Row& pivot) {
    const uint64_t factor = negative(row.front().coefficient);
    Row result;
    result.reserve(row.size() + pivot.size());
    auto term = row.begin();
    for (const Term& other : pivot) {
        while (term != row.end() && term->unknown < other.unknown) result.push_back(*term++);
        const bool both = term != row.end() && term->unknown == other.unknown;
        const uint64_t sum =
            (product(factor, other.coefficient) + (both ? (term++)->coefficient : 0)) % PRIME;
        if (sum != 0) result.push_back({other.unknown, sum});
    }
    result.insert(result.end(), term, row.end());
    work += row.size() + pivot.size();
    return result;
}

// A body is held when it does not move although all unknowns that are free move at random.
std::optional<std::vector<bool>> RigidMotions::heldBodies() const {
    if (work >= mostWork) return std::nullopt;
    std::vector<uint64_t> motion(pivotRows.size());
    uint64_t random = 1;
    for (std::size_t unknown = motion.size(); unknown-- > 0;) {
        const Row& row = pivotRows[unknown];
        random = random * 6364136223846793005 + 1442695040888963407;
        uint64_t value = row.empty() ? (random >> 32) % PRIME : 0;
        for (std::size_t i = 1; i < row.size(); ++i) {
            value += product(negative(row[i].coefficient), motion[row[i].unknown]);
            value %= PRIME;
        }
        motion[unknown] = value;
    }
    std::vector<bool> held(motion.size() / 3);
    for (std::size_t body = 0; body < held.size(); ++body) {
        held[body] =
            motion[3 * body] == 0 && motion[3 * body + 1] == 0 && motion[3 * body + 2] == 0;
    }
    return held;
}
