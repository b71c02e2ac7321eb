#include <cmath>
#include <ostream>
#include <utility>

#include "assertion.h"
#include "sparse_matrix.h"

namespace kmat {

namespace {

const double NOT_WRITTEN = std::nan("");

// CHOLMOD takes its scale factors as complex numbers; of real matrices it reads the first part.
struct ScaleFactor {
    explicit ScaleFactor(double real) : parts{real, real} {}
    operator double*() { return parts; }
    double parts[2];
};

// What CHOLMOD computed, or the empty matrix when it failed: never an unwritten one.
DenseMatrix resultOrEmpty(bool computed, DenseMatrix&& result) {
    return computed ? std::move(result) : DenseMatrix(nullptr);
}

}  // namespace

SparseMatrix addScaled(const SparseMatrix& LHS, const SparseMatrix& RHS, double scale) {
    return SparseMatrix(cholmod_add(LHS.sparse.get(), RHS.sparse.get(), ScaleFactor(1.0),
                                    ScaleFactor(scale), /*values=*/1, /*sorted=*/1,
                                    ConfigSingleton::getCommonPtr()));
}

SparseMatrix operator+(const SparseMatrix& LHS, const SparseMatrix& RHS) {
    VOXAM_ASSERT(LHS.sparse && RHS.sparse);
    VOXAM_ASSERT(LHS.nrow == RHS.nrow && LHS.ncol == RHS.ncol);
    return addScaled(LHS, RHS, 1.0);
}

SparseMatrix operator+(SparseMatrix&& LHS, const SparseMatrix& RHS) {
    LHS = std::as_const(LHS) + RHS;
    return std::move(LHS);
}

SparseMatrix operator+(const SparseMatrix& LHS, SparseMatrix&& RHS) { return std::move(RHS) + LHS; }

SparseMatrix operator+(SparseMatrix&& LHS, SparseMatrix&& RHS) {
    return std::move(LHS) + std::as_const(RHS);
}

SparseMatrix operator-(const SparseMatrix& LHS, const SparseMatrix& RHS) {
    VOXAM_ASSERT(LHS.sparse && RHS.sparse);
    VOXAM_ASSERT(LHS.nrow == RHS.nrow && LHS.ncol == RHS.ncol);
    return addScaled(LHS, RHS, -1.0);
}

SparseMatrix operator-(SparseMatrix&& LHS, const SparseMatrix& RHS) {
    LHS = std::as_const(LHS) - RHS;
    return std::move(LHS);
}

SparseMatrix operator-(const SparseMatrix& LHS, SparseMatrix&& RHS) {
    RHS = LHS - std::as_const(RHS);
    return std::move(RHS);
}

SparseMatrix operator-(SparseMatrix&& LHS, SparseMatrix&& RHS) {
    return std::move(LHS) - std::as_const(RHS);
}

SparseMatrix operator-(const SparseMatrix& M) { return M * -1.0; }

SparseMatrix operator-(SparseMatrix&& M) { return std::move(M) * -1.0; }

void SparseMatrix::scale(double scalar) {
    // Not by cholmod_scale(), which needs memory for the factor.
    for (int k = 0; k < getNumberOfElements(); ++k) values[k] *= scalar;
}

SparseMatrix operator*(const SparseMatrix& LHS, double scalar) {
    VOXAM_ASSERT(LHS.sparse);
    SparseMatrix result(cholmod_copy_sparse(LHS.sparse.get(), ConfigSingleton::getCommonPtr()));
    result.scale(scalar);
    return result;
}

SparseMatrix operator*(SparseMatrix&& LHS, double scalar) {
    VOXAM_ASSERT(LHS.sparse);
    LHS.scale(scalar);
    return std::move(LHS);
}

SparseMatrix operator*(double scalar, const SparseMatrix& M) { return M * scalar; }

SparseMatrix operator*(double scalar, SparseMatrix&& M) { return std::move(M) * scalar; }

SparseMatrix operator*(const SparseMatrix& LHS, const SparseMatrix& RHS) {
    VOXAM_ASSERT(LHS.sparse && RHS.sparse);
    VOXAM_ASSERT(LHS.ncol == RHS.nrow);
    return SparseMatrix(cholmod_ssmult(LHS.sparse.get(), RHS.sparse.get(), ASYMMETRIC, /*values=*/1,
                                       /*sorted=*/1, ConfigSingleton::getCommonPtr()));
}

void SparseMatrix::multiply(bool transpose, double alpha, double beta, const DenseMatrix& X,
                            DenseMatrix& Y) const {
    cholmod_sdmult(sparse.get(), transpose, ScaleFactor(alpha), ScaleFactor(beta), X.dense.get(),
                   Y.dense.get(), ConfigSingleton::getCommonPtr());
}

DenseMatrix SparseMatrix::multiply(bool transpose, double alpha, const DenseMatrix& X) const {
    DenseMatrix result(transpose ? ncol : nrow, X.getColumns(), 0.0);
    const int computed =
        cholmod_sdmult(sparse.get(), transpose, ScaleFactor(alpha), ScaleFactor(0.0), X.dense.get(),
                       result.dense.get(), ConfigSingleton::getCommonPtr());
    return resultOrEmpty(computed, std::move(result));
}

DenseMatrix operator*(const SparseMatrix& A, const DenseMatrix& X) {
    DenseMatrix result(A.nrow, X.getColumns(), NOT_WRITTEN);
    const int computed =
        cholmod_sdmult(A.sparse.get(), /*transpose=*/0, ScaleFactor(1.0), ScaleFactor(0.0),
                       X.dense.get(), result.dense.get(), ConfigSingleton::getCommonPtr());
    return resultOrEmpty(computed, std::move(result));
}

// X A is the transpose of A' X'.
DenseMatrix operator*(const DenseMatrix& X, const SparseMatrix& A) {
    const DenseMatrix transposedX = transposed(X);
    DenseMatrix result(A.ncol, transposedX.getColumns(), NOT_WRITTEN);
    const int computed = cholmod_sdmult(A.sparse.get(), /*transpose=*/1, ScaleFactor(1.0),
                                        ScaleFactor(0.0), transposedX.dense.get(),
                                        result.dense.get(), ConfigSingleton::getCommonPtr());
    return transposed(resultOrEmpty(computed, std::move(result)));
}

void SparseMatrix::transpose() {
    VOXAM_ASSERT(symmetry == ASYMMETRIC);
    SparseMatrix result = transposed(std::as_const(*this));
    if (result.sparse) *this = std::move(result);  // else CHOLMOD had nothing to transpose
}

SparseMatrix transposed(const SparseMatrix& M) {
    VOXAM_ASSERT(M.symmetry == ASYMMETRIC);
    return SparseMatrix(
        cholmod_transpose(M.sparse.get(), /*values=*/1, ConfigSingleton::getCommonPtr()));
}

SparseMatrix transposed(SparseMatrix&& M) {
    VOXAM_ASSERT(M.symmetry == ASYMMETRIC);
    M.transpose();
    return std::move(M);
}

void SparseMatrix::symmetrize() {
    if (!sparse) return;
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    const auto entries = static_cast<std::size_t>(cholmod_nnz(sparse.get(), common));
    RecordPtr<cholmod_triplet> upper(
        cholmod_allocate_triplet(nrow, ncol, entries, SYMMETRIC_UPPER, CHOLMOD_REAL, common));
    if (!upper) return;
    for (const SparseEntry entry : *this) {
        if (entry.row > entry.column) continue;
        static_cast<int*>(upper->i)[upper->nnz] = static_cast<int>(entry.row);
        static_cast<int*>(upper->j)[upper->nnz] = static_cast<int>(entry.column);
        static_cast<double*>(upper->x)[upper->nnz] = entry.value;
        ++upper->nnz;
    }
    sparse.reset(cholmod_triplet_to_sparse(upper.get(), upper->nnz, common));
    viewSparse();
    symmetry = SYMMETRIC_UPPER;
}

void SparseMatrix::setNullSpace(const DenseMatrix& fixed) {
    if (!sparse) return;
    for (unsigned c = 0; c < ncol; ++c) {
        for (int k = jColumn[c]; k < jColumn[c + 1]; ++k) {
            values[k] *= fixed(static_cast<unsigned>(iRow[k]), 0) * fixed(c, 0);
        }
    }
    for (unsigned j = 0; j < ncol; ++j) {
        if (fixed(j, 0) == 0.0) getValue(j, j) = 1.0;
    }
}

void SparseMatrix::sumRows(DenseMatrix& result) const {
    if (!sparse) return;
    for (unsigned c = 0; c < ncol; ++c) {
        for (int k = jColumn[c]; k < jColumn[c + 1]; ++k) {
            const auto r = static_cast<unsigned>(iRow[k]);
            result(r, 0) += values[k];
            if (symmetry == SYMMETRIC_UPPER && r != c) result(c, 0) += values[k];
        }
    }
}

void SparseMatrix::dropSmallEntries(double tolerance) {
    if (!sparse) return;
    cholmod_drop(tolerance, sparse.get(), ConfigSingleton::getCommonPtr());
    viewSparse();
}

SparseMatrix SparseMatrix::copy() const {
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    SparseMatrix result(nrow, ncol, false, 0);
    result.symmetry = symmetry;
    result.tripletCapacity = tripletCapacity;
    if (sparse) {
        result.sparse.reset(cholmod_copy_sparse(sparse.get(), common));
        result.viewSparse();
    }
    if (triplet) {
        result.triplet.reset(cholmod_copy_triplet(triplet.get(), common));
        if (result.triplet) result.viewTriplet();
    }
    return result;
}

DenseMatrix SparseMatrix::toDense() const {
    return DenseMatrix(cholmod_sparse_to_dense(sparse.get(), ConfigSingleton::getCommonPtr()));
}

double SparseMatrix::norm(int normType) const {
    return cholmod_norm_sparse(sparse.get(), normType, ConfigSingleton::getCommonPtr());
}

double SparseMatrix::storedValue(unsigned row, unsigned column) const {
    const int index = find(row, column);
    return index >= 0 ? values[index] : 0.0;
}

bool SparseMatrix::operator==(const SparseMatrix& B) const {
    for (unsigned r = 0; r < nrow; ++r) {
        for (unsigned c = 0; c < ncol; ++c) {
            if (storedValue(r, c) != B.storedValue(r, c)) return false;
        }
    }
    return true;
}

std::ostream& operator<<(std::ostream& out, const SparseMatrix& M) {
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    out << std::endl;
    if (!M.sparse && !M.triplet) return out << "[Empty sparse matrix]" << std::endl;
    if (!M.sparse) {
        cholmod_print_triplet(M.triplet.get(), "", common);
        for (const SparseEntry entry : M) {
            out << "( " << entry.row << ", " << entry.column << " ) =\t" << entry.value
                << std::endl;
        }
        return out;
    }
    cholmod_print_sparse(M.sparse.get(), "", common);
    // Taken as unsymmetric, because the conversion would mirror the stored triangle.
    cholmod_sparse stored = *M.sparse;
    stored.stype = ASYMMETRIC;
    const DenseMatrix rows(cholmod_sparse_to_dense(&stored, common));
    printRows(out, rows.getRows(), rows.getColumns(), rows.begin());
    return out;
}

}  // namespace kmat
