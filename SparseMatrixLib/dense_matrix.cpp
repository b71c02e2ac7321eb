#include "dense_matrix.h"

#include <cblas.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <new>
#include <ostream>
#include <utility>

#include "assertion.h"
#include "sparse_matrix.h"

namespace kmat {

namespace {

int blasCount(std::size_t count) { return static_cast<int>(count); }

// Some BLAS libraries print a message or stop the process when a leading dimension is 0.
int leadingDimension(unsigned rows) { return static_cast<int>(std::max(rows, 1U)); }

CBLAS_TRANSPOSE transposition(bool transpose) { return transpose ? CblasTrans : CblasNoTrans; }

}  // namespace

DenseMatrix::DenseMatrix(unsigned rows, unsigned cols, double value)
    : DenseMatrix(
          cholmod_allocate_dense(rows, cols, rows, CHOLMOD_REAL, ConfigSingleton::getCommonPtr())) {
    if (!std::isnan(value)) fill(value);
}

DenseMatrix undefinedVector(unsigned rows) {
    const double undefined = std::nan("");
    DenseMatrix vector(rows, 1, undefined);
    if (!vector.begin()) throw std::bad_alloc();
    vector.fill(undefined);
    return vector;
}

DenseMatrix::DenseMatrix(cholmod_dense* record)
    : dense(record),
      nrow(record ? static_cast<unsigned>(record->nrow) : 0),
      ncol(record ? static_cast<unsigned>(record->ncol) : 0) {}

DenseMatrix::DenseMatrix(DenseMatrix&& other) noexcept
    : dense(std::move(other.dense)),
      nrow(std::exchange(other.nrow, 0)),
      ncol(std::exchange(other.ncol, 0)) {}

DenseMatrix& DenseMatrix::operator=(DenseMatrix&& other) noexcept {
    if (this == &other) return *this;
    dense = std::move(other.dense);
    nrow = std::exchange(other.nrow, 0);
    ncol = std::exchange(other.ncol, 0);
    return *this;
}

void DenseMatrix::swap(DenseMatrix& other) noexcept {
    std::swap(dense, other.dense);
    std::swap(nrow, other.nrow);
    std::swap(ncol, other.ncol);
}

DenseMatrix DenseMatrix::copy() const {
    DenseMatrix result(nrow, ncol, std::nan(""));
    if (result.dense) std::copy(begin(), end(), result.begin());
    return result;
}

void DenseMatrix::fill(double value) { std::fill(begin(), end(), value); }

void DenseMatrix::zero() {
    if (dense) std::memset(dense->x, 0, size() * sizeof(double));
}

void DenseMatrix::set(const double* values) { std::copy_n(values, size(), begin()); }

void DenseMatrix::get(double* values) const { std::copy(begin(), end(), values); }

void DenseMatrix::set(const float* values) { std::copy_n(values, size(), begin()); }

void DenseMatrix::get(float* values) const {
    std::transform(begin(), end(), values, [](double v) { return static_cast<float>(v); });
}

double DenseMatrix::dot(const DenseMatrix& b) const {
    return cblas_ddot(blasCount(size()), begin(), 1, b.begin(), 1);
}

double DenseMatrix::length() const { return cblas_dnrm2(blasCount(size()), begin(), 1); }

double DenseMatrix::norm(int normType) const {
    return cholmod_norm_dense(dense.get(), normType, ConfigSingleton::getCommonPtr());
}

void DenseMatrix::elemMultiply(const DenseMatrix& b, DenseMatrix& result) const {
    std::transform(begin(), end(), b.begin(), result.begin(), std::multiplies<>());
}

void DenseMatrix::elemDivide(const DenseMatrix& b, DenseMatrix& result) const {
    std::transform(begin(), end(), b.begin(), result.begin(), std::divides<>());
}

SparseMatrix DenseMatrix::toSparse() const {
    return SparseMatrix(cholmod_dense_to_sparse(dense.get(), 1, ConfigSingleton::getCommonPtr()));
}

void DenseMatrix::multiply(bool transposeA, bool transposeB, double alpha, double beta,
                           const DenseMatrix& b, DenseMatrix& c) const {
    const unsigned m = transposeA ? ncol : nrow;
    const unsigned n = transposeB ? b.nrow : b.ncol;
    const unsigned k = transposeA ? nrow : ncol;
    if (m == 0 || n == 0 || !c.dense) return;
    if (k == 0) {  // the sum is empty
        if (beta == 0.0)
            c.zero();
        else
            c *= beta;
        return;
    }
    cblas_dgemm(CblasColMajor, transposition(transposeA), transposition(transposeB), blasCount(m),
                blasCount(n), blasCount(k), alpha, begin(), leadingDimension(nrow), b.begin(),
                leadingDimension(b.nrow), beta, c.begin(), leadingDimension(c.nrow));
}

DenseMatrix DenseMatrix::multiply(bool transposeA, bool transposeB, double alpha,
                                  const DenseMatrix& b) const {
    DenseMatrix result(transposeA ? ncol : nrow, transposeB ? b.nrow : b.ncol, 0.0);
    multiply(transposeA, transposeB, alpha, 0.0, b, result);
    return result;
}

void DenseMatrix::multiplyAddTo(double alpha, DenseMatrix& c) const {
    cblas_daxpy(blasCount(size()), alpha, begin(), 1, c.begin(), 1);
}

void DenseMatrix::transpose() { *this = transposed(std::as_const(*this)); }

DenseMatrix& DenseMatrix::operator+=(const DenseMatrix& RHS) {
    VOXAM_ASSERT(size() == RHS.size());
    cblas_daxpy(blasCount(size()), 1.0, RHS.begin(), 1, begin(), 1);
    return *this;
}

DenseMatrix& DenseMatrix::operator-=(const DenseMatrix& RHS) { return *this += -RHS; }

DenseMatrix& DenseMatrix::operator*=(double scalar) {
    cblas_dscal(blasCount(size()), scalar, begin(), 1);
    return *this;
}

bool DenseMatrix::operator==(const DenseMatrix& other) const {
    return nrow == other.nrow && ncol == other.ncol && std::equal(begin(), end(), other.begin());
}

DenseMatrix operator+(const DenseMatrix& LHS, const DenseMatrix& RHS) { return LHS + RHS.copy(); }

DenseMatrix operator+(DenseMatrix&& LHS, const DenseMatrix& RHS) { return std::move(LHS += RHS); }

DenseMatrix operator+(const DenseMatrix& LHS, DenseMatrix&& RHS) { return std::move(RHS += LHS); }

DenseMatrix operator+(DenseMatrix&& LHS, DenseMatrix&& RHS) { return std::move(LHS += RHS); }

DenseMatrix operator-(const DenseMatrix& M) { return -M.copy(); }

DenseMatrix operator-(DenseMatrix&& M) {
    std::transform(M.begin(), M.end(), M.begin(), std::negate<>());
    return std::move(M);
}

DenseMatrix operator-(const DenseMatrix& LHS, const DenseMatrix& RHS) { return LHS - RHS.copy(); }

DenseMatrix operator-(DenseMatrix&& LHS, const DenseMatrix& RHS) { return std::move(LHS -= RHS); }

DenseMatrix operator-(const DenseMatrix& LHS, DenseMatrix&& RHS) { return LHS + -std::move(RHS); }

DenseMatrix operator-(DenseMatrix&& LHS, DenseMatrix&& RHS) { return std::move(LHS -= RHS); }

DenseMatrix operator*(const DenseMatrix& M, double scalar) { return M.copy() * scalar; }

DenseMatrix operator*(DenseMatrix&& M, double scalar) { return std::move(M *= scalar); }

DenseMatrix operator*(double scalar, const DenseMatrix& M) { return M * scalar; }

DenseMatrix operator*(double scalar, DenseMatrix&& M) { return std::move(M) * scalar; }

DenseMatrix operator*(const DenseMatrix& LHS, const DenseMatrix& RHS) {
    const unsigned m = LHS.getRows();
    const unsigned k = LHS.getColumns();
    DenseMatrix result(m, RHS.getColumns(), std::nan(""));
    if (!result.begin()) return result;
    if (RHS.getColumns() != 1 || m == 0 || k == 0) {
        LHS.multiply(false, false, 1.0, 0.0, RHS, result);
    } else {
        cblas_dgemv(CblasColMajor, CblasNoTrans, blasCount(m), blasCount(k), 1.0, LHS.begin(),
                    leadingDimension(m), RHS.begin(), 1, 0.0, result.begin(), 1);
    }
    return result;
}

DenseMatrix transposed(const DenseMatrix& M) {
    DenseMatrix result(M.getColumns(), M.getRows(), std::nan(""));
    if (!result.begin()) return result;
    for (unsigned c = 0; c < M.getColumns(); ++c) {
        for (unsigned r = 0; r < M.getRows(); ++r) result(c, r) = M(r, c);
    }
    return result;
}

DenseMatrix transposed(DenseMatrix&& M) {
    M.transpose();
    return std::move(M);
}

void printRows(std::ostream& out, unsigned rows, unsigned columns, const double* values) {
    out << "[";
    for (unsigned r = 0; r < rows; ++r) {
        if (r > 0) out << ";" << std::endl << " ";
        for (unsigned c = 0; c < columns; ++c) {
            if (c > 0) out << ", ";
            out << values[r + std::size_t{c} * rows];
        }
    }
    out << "];" << std::endl;
}

std::ostream& operator<<(std::ostream& out, const DenseMatrix& m) {
    out << std::endl;
    if (!m.dense) return out << "[Empty dense matrix]" << std::endl;
    cholmod_print_dense(m.dense.get(), "", ConfigSingleton::getCommonPtr());
    printRows(out, m.nrow, m.ncol, m.begin());
    return out;
}

}  // namespace kmat
