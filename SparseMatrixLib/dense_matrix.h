#pragma once

#include <iosfwd>

#include "cholmod_records.h"

namespace kmat {

class SparseMatrix;
class Factor;

/// Dense matrix of doubles in column-major order: element (r, c) lies at index r + c * getRows().
/// Its values live in a CHOLMOD record, so that solves take and return it without copying.
///
/// Movable, not copyable; copy() duplicates. Operators that receive a temporary reuse its storage.
/// The caller is responsible for sizes: sums and differences assert them, LAPACK refuses matrices
/// that it cannot factorise, and nothing else checks. A matrix that was moved from, or for which
/// memory was short, is 0 x 0. It may be destroyed, assigned to, printed and asked for its size.
class DenseMatrix {
public:
    /// A rows x cols matrix filled with `value`. A NaN leaves the storage unwritten,
    /// the cheap way to make a result that is overwritten at once.
    DenseMatrix(unsigned rows, unsigned cols, double value = 0.0);

    /// Adopts a real record whose leading dimension equals its row count. Null gives a 0 x 0
    /// matrix.
    explicit DenseMatrix(cholmod_dense* record);

    DenseMatrix(DenseMatrix&& other) noexcept;
    DenseMatrix& operator=(DenseMatrix&& other) noexcept;
    ~DenseMatrix() = default;

    void swap(DenseMatrix& other) noexcept;
    DenseMatrix copy() const;

    unsigned getRows() const { return nrow; }
    unsigned getColumns() const { return ncol; }

    /// Element access without bounds check.
    double& operator()(unsigned row, unsigned column) {
        return begin()[row + std::size_t{column} * nrow];
    }
    const double& operator()(unsigned row, unsigned column) const {
        return begin()[row + std::size_t{column} * nrow];
    }

    /// The getRows() * getColumns() values in column-major order; null for an empty matrix.
    double* begin() { return dense ? static_cast<double*>(dense->x) : nullptr; }
    const double* begin() const { return dense ? static_cast<const double*>(dense->x) : nullptr; }
    double* end() { return begin() + size(); }
    const double* end() const { return begin() + size(); }

    void fill(double value);
    /// Sets every value to 0.0 by clearing the bytes.
    void zero();

    /// Copies all values in from, or out to, an array of getRows() * getColumns() numbers in
    /// column-major order. Floats are widened on the way in and rounded on the way out.
    void set(const double* values);
    void get(double* values) const;
    void set(const float* values);
    void get(float* values) const;

    /// Sum of the products of corresponding values; `b` has at least as many values as this.
    double dot(const DenseMatrix& b) const;
    /// Euclidean norm of all values.
    double length() const;
    /// CHOLMOD's norms: 0 largest absolute row sum, 1 largest absolute column sum, 2 Euclidean norm
    /// of a single column. -1 for anything else.
    double norm(int normType) const;

    /// Element by element products and quotients, into `result` or in place. Division by zero
    /// follows the floating-point rules.
    void elemMultiply(const DenseMatrix& b, DenseMatrix& result) const;
    void elemMultiply(const DenseMatrix& b) { elemMultiply(b, *this); }
    void elemDivide(const DenseMatrix& b, DenseMatrix& result) const;
    void elemDivide(const DenseMatrix& b) { elemDivide(b, *this); }

    /// The unsymmetric compressed form, with the entries that are not zero.
    SparseMatrix toSparse() const;

    /// c = alpha * op(this) * op(b) + beta * c, where op transposes when its flag is set. `c` must
    /// have the size of the product.
    void multiply(bool transposeA, bool transposeB, double alpha, double beta, const DenseMatrix& b,
                  DenseMatrix& c) const;
    /// alpha * op(this) * op(b).
    DenseMatrix multiply(bool transposeA, bool transposeB, double alpha,
                         const DenseMatrix& b) const;
    /// c += alpha * this.
    void multiplyAddTo(double alpha, DenseMatrix& c) const;

    /// Transposes in place, into a new record.
    void transpose();

    /// Inverts this square matrix in place by its LU factors. A failure (a singular matrix, too few
    /// columns) is recorded as a KmatException with LAPACK's meaning; a singular matrix then holds
    /// what LAPACK left in it.
    void inverse();

    /// The sum of the products along the falling diagonals less those along the rising ones. For up
    /// to 3 x 3 this is the determinant; beyond, the scheme goes on and is not. 0.0 for an empty
    /// matrix, NaN for one with fewer rows than columns; with more rows it makes no sense.
    double determinant() const;

    /// Sums and differences, here and below, take matrices with equally many values (assertion).
    DenseMatrix& operator+=(const DenseMatrix& RHS);
    DenseMatrix& operator-=(const DenseMatrix& RHS);
    DenseMatrix& operator*=(double scalar);

    /// Same size and exactly the same values. A NaN makes matrices unequal; matrices without
    /// elements are equal when their sizes are.
    bool operator==(const DenseMatrix& other) const;

private:
    friend class SparseMatrix;
    friend DenseMatrix operator*(const SparseMatrix& A, const DenseMatrix& X);
    friend DenseMatrix operator*(const DenseMatrix& X, const SparseMatrix& A);
    friend DenseMatrix solve(const Factor& F, const DenseMatrix& b);
    friend std::ostream& operator<<(std::ostream& out, const DenseMatrix& m);

    std::size_t size() const { return std::size_t{nrow} * ncol; }

    RecordPtr<cholmod_dense> dense;
    unsigned nrow;
    unsigned ncol;
};

inline void swap(DenseMatrix& a, DenseMatrix& b) noexcept { a.swap(b); }

/// A column of NaN: reading an entry before it is written shows. Throws std::bad_alloc.
DenseMatrix undefinedVector(unsigned rows);

DenseMatrix operator+(const DenseMatrix& LHS, const DenseMatrix& RHS);
DenseMatrix operator+(DenseMatrix&& LHS, const DenseMatrix& RHS);
DenseMatrix operator+(const DenseMatrix& LHS, DenseMatrix&& RHS);
DenseMatrix operator+(DenseMatrix&& LHS, DenseMatrix&& RHS);

DenseMatrix operator-(const DenseMatrix& M);
DenseMatrix operator-(DenseMatrix&& M);
DenseMatrix operator-(const DenseMatrix& LHS, const DenseMatrix& RHS);
DenseMatrix operator-(DenseMatrix&& LHS, const DenseMatrix& RHS);
DenseMatrix operator-(const DenseMatrix& LHS, DenseMatrix&& RHS);
DenseMatrix operator-(DenseMatrix&& LHS, DenseMatrix&& RHS);

DenseMatrix operator*(const DenseMatrix& M, double scalar);
DenseMatrix operator*(DenseMatrix&& M, double scalar);
DenseMatrix operator*(double scalar, const DenseMatrix& M);
DenseMatrix operator*(double scalar, DenseMatrix&& M);

/// Matrix product. A single column on the right goes to the matrix-vector routine.
DenseMatrix operator*(const DenseMatrix& LHS, const DenseMatrix& RHS);

DenseMatrix transposed(const DenseMatrix& M);
DenseMatrix transposed(DenseMatrix&& M);

DenseMatrix inversed(const DenseMatrix& A);
DenseMatrix inversed(DenseMatrix&& A);

/// The solution X of A X = B by LU factorisation, for a square A and any number of columns. A
/// temporary A is overwritten by its factors, a temporary B becomes the result. A failure is
/// recorded as a KmatException, and the result is then not the solution.
DenseMatrix solve(const DenseMatrix& A, const DenseMatrix& B);
DenseMatrix solve(DenseMatrix&& A, const DenseMatrix& B);
DenseMatrix solve(const DenseMatrix& A, DenseMatrix&& B);
DenseMatrix solve(DenseMatrix&& A, DenseMatrix&& B);

/// Prints an empty line, CHOLMOD's own summary (on standard output) and the rows between brackets.
std::ostream& operator<<(std::ostream& out, const DenseMatrix& m);

/// Prints the rows between brackets alone: "[1, 2;", a line end and a blank between the rows, "];".
void printRows(std::ostream& out, unsigned rows, unsigned columns, const double* values);

}  // namespace kmat
