// Between the library's matrices and those of the textbook.
#pragma once

#include <utility>
#include <vector>

#include "dense_matrix.h"
#include "sparse_matrix.h"
#include "support/textbook.h"

namespace test {

using Entries = std::vector<kmat::SparseEntry>;

inline kmat::DenseMatrix dense(const Matrix& m) { return m.to<kmat::DenseMatrix>(); }

/// A column of these values.
inline kmat::DenseMatrix column(const std::vector<double>& values) {
    kmat::DenseMatrix result(static_cast<unsigned>(values.size()), 1);
    result.set(values.data());
    return result;
}

inline std::vector<double> listOf(const kmat::DenseMatrix& m) { return {m.begin(), m.end()}; }

/// All values of a built matrix, a symmetric one mirrored.
inline Matrix valuesOf(const kmat::SparseMatrix& m) { return Matrix(m.toDense()); }

/// The stored entries in the order of storage.
inline Entries stored(const kmat::SparseMatrix& m) {
    Entries entries;
    for (const auto& entry : m) entries.push_back(entry);
    return entries;
}

/// A triplet list of the values that are not 0; of a symmetric matrix, those of the upper triangle.
inline kmat::SparseMatrix triplets(const Matrix& m, bool symmetric) {
    kmat::SparseMatrix result(m.rows, m.columns, symmetric, 0);
    for (unsigned c = 0; c < m.columns; ++c) {
        for (unsigned r = 0; r < (symmetric ? c + 1 : m.rows); ++r) {
            if (m(r, c) != 0.0) result.getValue(r, c) += m(r, c);
        }
    }
    return result;
}

inline kmat::SparseMatrix built(const Matrix& m, bool symmetric = false) {
    kmat::SparseMatrix result = triplets(m, symmetric);
    result.build();
    return result;
}

inline void fillRandom(kmat::DenseMatrix& m, Random& random, double low, double high) {
    for (double& v : m) v = random.number(low, high);
}

/// Every mix of named (0) and temporary (1) operands.
inline constexpr std::pair<int, int> MIXES[] = {{0, 0}, {0, 1}, {1, 0}, {1, 1}};

/// op(x, y) with that mix.
template <typename Operand, typename Op>
Operand applied(const std::pair<int, int>& mix, Op op, Operand& x, Operand& y) {
    if (mix.first) return mix.second ? op(std::move(x), std::move(y)) : op(std::move(x), y);
    return mix.second ? op(x, std::move(y)) : op(x, y);
}

/// Whether all values are NaN, and there are some.
inline bool isUnset(const kmat::DenseMatrix& m) {
    bool unset = m.getRows() > 0 && m.getColumns() > 0;
    for (const double v : m) unset = unset && v != v;
    return unset;
}

}  // namespace test
