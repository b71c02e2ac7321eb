// This layer is complete: matrices have the usual operations, although the solvers call only some
// of them.
#pragma once

#include <iosfwd>

#include "cholmod_records.h"
#include "dense_matrix.h"

namespace kmat {

class Factor;
class SparseMatrix;

/// Which triangle of a matrix is stored. The values are CHOLMOD's `stype`. Unscoped, because
/// assertion reports quote the bare names.
enum Symmetry : int {
    SYMMETRIC_LOWER = -1,  ///< symmetric; only entries with row >= column are stored
    ASYMMETRIC = 0,        ///< all entries are stored
    SYMMETRIC_UPPER = 1,   ///< symmetric; only entries with row <= column are stored
};

enum MatrixState : int {
    UNINITIALIZED = 0,  ///< sized, nothing added yet
    INIT = 1,           ///< holds a triplet list
    BUILT = 2,          ///< holds a compressed matrix
    DESTROYED = 3,      ///< 0 x 0: moved from, or made without a size
};

/// One stored entry, as SparseMatrixIter yields it.
struct SparseEntry {
    unsigned row;
    unsigned column;
    double value;
    bool operator==(const SparseEntry&) const = default;
};

/// Walks the stored entries in the order of storage: as appended, or column by column once built.
class SparseMatrixIter {
public:
    SparseMatrixIter(const SparseMatrix* matrix, int index) : matrix(matrix), index(index) {}

    SparseEntry operator*() const;
    SparseMatrixIter& operator++() {
        ++index;
        return *this;
    }
    bool operator==(const SparseMatrixIter&) const = default;

private:
    const SparseMatrix* matrix;
    int index;
};

/// Sparse matrix of doubles that lives in two forms, one after the other: a list of triplets, to
/// which entries are appended (duplicates allowed), then, after one build(), a compressed-column
/// matrix whose pattern is fixed. Refilling a built matrix with zero() and getValue() allocates
/// nothing and keeps a symbolic analysis of its pattern valid.
///
/// Movable, not copyable. A triplet list is filled by one thread. A built matrix may be refilled by
/// several threads at once as long as no two of them write the same entry.
class SparseMatrix {
public:
    /// A matrix without entries; allocates nothing. It is SYMMETRIC_UPPER when `symmetric` is set
    /// and it is square, else ASYMMETRIC. `initialNumberOfElements` is how many triplets to make
    /// room for at first; 0 picks a number from the size, at most 100000. The list grows by itself.
    SparseMatrix(unsigned rows, unsigned columns, bool symmetric, int initialNumberOfElements);

    /// Adopts a compressed record of real values and int indices, packed and with sorted columns.
    /// Null gives a 0 x 0 matrix.
    explicit SparseMatrix(cholmod_sparse* record);

    SparseMatrix(SparseMatrix&& other) noexcept;
    SparseMatrix& operator=(SparseMatrix&& other) noexcept;
    ~SparseMatrix() = default;

    void swap(SparseMatrix& other) noexcept;

    unsigned getRows() const { return nrow; }
    unsigned getColumns() const { return ncol; }
    MatrixState getMatrixState() const;

    /// Number of stored entries: triplets, duplicates counted, or distinct entries once built.
    int getNumberOfElements() const;

    /// Whether (row, column), or its mirror image in a symmetric matrix, is in the built pattern.
    bool hasElement(unsigned row, unsigned column) const { return find(row, column) >= 0; }

    /// Where the value of (row, column) lies in getValues() of a built matrix, found by binary
    /// search; -1 when it is not in the pattern. A symmetric matrix also answers for the mirror
    /// image of a stored entry. Good until the matrix is rebuilt or its pattern changes.
    int find(unsigned row, unsigned column) const;

    /// The values of the current form in storage order; null when neither form is held.
    double* getValues() { return values; }

    SparseMatrixIter begin() const { return {this, 0}; }
    SparseMatrixIter end() const { return {this, getNumberOfElements()}; }

    /// The value to add to, as in getValue(r, c) += v.
    ///
    /// Before build() each call appends a new triplet with value 0, also for a position that is
    /// present already. Entries of a symmetric matrix must lie in the stored triangle.
    ///
    /// After build() it is the stored value, also for the mirror image in a symmetric matrix.
    ///
    /// A position outside the pattern or the matrix yields a scratch value that is reset to 0 on
    /// each call: what is written there is dropped, and the pattern never grows.
    double& getValue(unsigned row, unsigned column);

    /// Makes the triplet list at its initial capacity, if there is none yet, so that a thread that
    /// may not allocate can append to it. False when memory does not suffice or the matrix is
    /// built.
    bool allocateTriplets();

    /// Enlarges the triplet list by half, rounded up. When memory does not suffice the list stays.
    void increaseTripletCapacity();

    /// Turns the triplets into the compressed form: duplicates are summed in the order in which
    /// they were appended, rows sorted within each column. Without triplets the pattern is empty.
    void build();

    /// Sets the values of a built matrix to 0.0 and keeps the pattern.
    void zero();

    /// Overwrites the symmetry and converts nothing: for before the first entry.
    void setSymmetry(Symmetry newSymmetry) { symmetry = newSymmetry; }

    /// Adds all triplets of `other`, which must not be built yet, behind this matrix's own.
    /// Does nothing when this matrix is built already, or when memory does not suffice.
    void append(const SparseMatrix& other);

    /// Symbolic analysis of a built matrix: fill-reducing ordering and structure of its factor.
    Factor analyze() const;

    /// A deep copy of whatever form is held.
    SparseMatrix copy() const;

    /// The dense form of a built matrix; a symmetric one is mirrored.
    DenseMatrix toDense() const;

    /// CHOLMOD's norms of a built matrix: 0 largest absolute row sum, 1 largest absolute column
    /// sum.
    double norm(int normType) const;

    /// Y = alpha * op(this) * X + beta * Y for a built matrix, where op transposes when the flag is
    /// set. Y must have the size of the product.
    void multiply(bool transpose, double alpha, double beta, const DenseMatrix& X,
                  DenseMatrix& Y) const;
    /// alpha * op(this) * X.
    DenseMatrix multiply(bool transpose, double alpha, const DenseMatrix& X) const;

    /// Transposes a built matrix in place; it must be ASYMMETRIC (assertion).
    void transpose();

    /// Turns a built, square, ASYMMETRIC matrix that holds a symmetric operator into
    /// SYMMETRIC_UPPER storage, keeping the entries with row <= column.
    void symmetrize();

    /// Imposes fixed degrees of freedom on a built matrix. `fixed` is a column of getColumns()
    /// values, 1.0 for a free and 0.0 for a fixed one: rows and columns of fixed ones are cleared
    /// and their diagonal entries, where they are in the pattern, set to 1.0.
    void setNullSpace(const DenseMatrix& fixed);

    /// Adds the sum of each row of a built matrix to `result`, a column of getRows() values that is
    /// not cleared first. The mirrored entries of a SYMMETRIC_UPPER matrix count.
    void sumRows(DenseMatrix& result) const;

    /// Removes the entries of a built matrix whose absolute value is at most `tolerance`.
    void dropSmallEntries(double tolerance);

    /// Whether two built matrices agree exactly at every position of this one; what is not stored
    /// counts as 0.0. The sizes are not compared: B must be at least as large. Quadratic in the
    /// size: for small matrices.
    bool operator==(const SparseMatrix& B) const;

    // The layer's index checks. They do nothing in the release form: callers pass valid indices.
    void assertValidIndex(unsigned /*row*/, unsigned /*column*/) const {}
    void assertHasSparse() const {}
    void assertValidInitAddValue(unsigned /*row*/, unsigned /*column*/) const {}

private:
    friend class DenseMatrix;
    friend class Factor;
    friend class SparseMatrixIter;
    friend DenseMatrix solve(const Factor& F, const DenseMatrix& b);
    friend SparseMatrix solve(const Factor& F, const SparseMatrix& B);
    friend SparseMatrix addScaled(const SparseMatrix& LHS, const SparseMatrix& RHS, double scale);
    friend SparseMatrix operator+(const SparseMatrix& LHS, const SparseMatrix& RHS);
    friend SparseMatrix operator-(const SparseMatrix& LHS, const SparseMatrix& RHS);
    friend SparseMatrix operator*(const SparseMatrix& LHS, const SparseMatrix& RHS);
    friend SparseMatrix operator*(const SparseMatrix& LHS, double scalar);
    friend SparseMatrix operator*(SparseMatrix&& LHS, double scalar);
    friend DenseMatrix operator*(const SparseMatrix& A, const DenseMatrix& X);
    friend DenseMatrix operator*(const DenseMatrix& X, const SparseMatrix& A);
    friend SparseMatrix transposed(const SparseMatrix& M);
    friend SparseMatrix transposed(SparseMatrix&& M);
    friend std::ostream& operator<<(std::ostream& out, const SparseMatrix& M);

    static double& clearedScratch();
    double storedValue(unsigned row, unsigned column) const;
    void scale(double scalar);
    void viewTriplet();
    void viewSparse();

    RecordPtr<cholmod_sparse> sparse;
    RecordPtr<cholmod_triplet> triplet;
    unsigned nrow;
    unsigned ncol;
    double* values;  ///< view of the current form's values
    int* iRow;       ///< view of its row indices
    int* jColumn;    ///< view of the triplets' column indices, or of the ncol + 1
                     ///< column pointers
    Symmetry symmetry;
    int tripletCapacity;
};

inline void swap(SparseMatrix& a, SparseMatrix& b) noexcept { a.swap(b); }

/// Writes a built matrix column by column: much faster than going through triplets, for whoever can
/// produce the entries in this order.
class SparseColumnWriter {
public:
    /// Makes room for `mostEntries` entries. Throws std::bad_alloc.
    SparseColumnWriter(unsigned rows, unsigned columns, Symmetry symmetry, std::size_t mostEntries);

    /// Adds an entry to the present column. Its row must come after those added before.
    void add(int row, double value) {
        rowIndices[count] = row;
        values[count] = value;
        ++count;
    }

    void endColumn() { *++columnEnd = count; }

    /// The matrix, after all its columns were ended. The writer is used up.
    SparseMatrix finish() { return SparseMatrix(record.release()); }

private:
    RecordPtr<cholmod_sparse> record;
    double* values;
    int* rowIndices;
    int* columnEnd;
    int count;
};

// Algebra of built matrices. Between sparse matrices, operands that are not built or whose sizes do
// not fit are stopped by assertions; a scaled matrix must be built (assertion). A variant that
// receives a temporary takes it over: it is empty afterwards, and scaling and negation reuse its
// storage. If CHOLMOD fails, because memory is short or a dense operand does not fit, the result
// has no values, and ConfigSingleton::getLastError() names the reason.

SparseMatrix operator+(const SparseMatrix& LHS, const SparseMatrix& RHS);
SparseMatrix operator+(SparseMatrix&& LHS, const SparseMatrix& RHS);
SparseMatrix operator+(const SparseMatrix& LHS, SparseMatrix&& RHS);
SparseMatrix operator+(SparseMatrix&& LHS, SparseMatrix&& RHS);

SparseMatrix operator-(const SparseMatrix& M);
SparseMatrix operator-(SparseMatrix&& M);
SparseMatrix operator-(const SparseMatrix& LHS, const SparseMatrix& RHS);
SparseMatrix operator-(SparseMatrix&& LHS, const SparseMatrix& RHS);
SparseMatrix operator-(const SparseMatrix& LHS, SparseMatrix&& RHS);
SparseMatrix operator-(SparseMatrix&& LHS, SparseMatrix&& RHS);

SparseMatrix operator*(const SparseMatrix& LHS, double scalar);
SparseMatrix operator*(SparseMatrix&& LHS, double scalar);
SparseMatrix operator*(double scalar, const SparseMatrix& M);
SparseMatrix operator*(double scalar, SparseMatrix&& M);

/// The product of two sparse matrices, stored unsymmetric.
SparseMatrix operator*(const SparseMatrix& LHS, const SparseMatrix& RHS);

DenseMatrix operator*(const SparseMatrix& A, const DenseMatrix& X);
DenseMatrix operator*(const DenseMatrix& X, const SparseMatrix& A);

/// M must be ASYMMETRIC (assertion).
SparseMatrix transposed(const SparseMatrix& M);
SparseMatrix transposed(SparseMatrix&& M);

/// Prints an empty line, CHOLMOD's own summary (on standard output) and the entries: one line for
/// each triplet, or the rows of a built matrix like a dense one. Of a symmetric matrix only the
/// stored triangle is shown.
std::ostream& operator<<(std::ostream& out, const SparseMatrix& M);

}  // namespace kmat
