#include "sparse_matrix.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace kmat {

namespace {

constexpr int64_t LARGEST_ESTIMATED_CAPACITY = 100000;

int estimateCapacity(unsigned rows, unsigned columns, bool symmetric, int requested) {
    const uint64_t entries =
        symmetric ? (uint64_t{columns} + 1) * rows / 2 : uint64_t{rows} * columns;
    const int64_t capacity =
        requested != 0
            ? requested
            : static_cast<int64_t>(std::min<uint64_t>(entries, LARGEST_ESTIMATED_CAPACITY));
    const bool hasEntries = rows > 0 && columns > 0;
    return static_cast<int>(capacity < 1 && hasEntries ? LARGEST_ESTIMATED_CAPACITY : capacity);
}

// Half as much again, rounded up. Single precision suffices: from 2^24 on the rounding is far below
// the growth.
int grownCapacity(int capacity) {
    const float grown = std::ceil(static_cast<float>(capacity) * 1.5F);
    constexpr int64_t largest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(static_cast<int64_t>(grown), largest));
}

}  // namespace

double& SparseMatrix::clearedScratch() {
    // Each thread has its own: what is written there is dropped, but must not race.
    static thread_local double scratch;
    scratch = 0.0;
    return scratch;
}

SparseEntry SparseMatrixIter::operator*() const {
    const int* columns = matrix->jColumn;
    int column = 0;
    if (matrix->triplet) {
        column = columns[index];
    } else {
        const int* next = std::upper_bound(columns, columns + matrix->ncol + 1, index);
        column = static_cast<int>(next - columns) - 1;
    }
    return {static_cast<unsigned>(matrix->iRow[index]), static_cast<unsigned>(column),
            matrix->values[index]};
}

SparseMatrix::SparseMatrix(unsigned rows, unsigned columns, bool symmetric,
                           int initialNumberOfElements)
    : nrow(rows),
      ncol(columns),
      values(nullptr),
      iRow(nullptr),
      jColumn(nullptr),
      symmetry(symmetric && rows == columns ? SYMMETRIC_UPPER : ASYMMETRIC),
      tripletCapacity(estimateCapacity(rows, columns, symmetric, initialNumberOfElements)) {}

SparseMatrix::SparseMatrix(cholmod_sparse* record)
    : sparse(record),
      nrow(record ? static_cast<unsigned>(record->nrow) : 0),
      ncol(record ? static_cast<unsigned>(record->ncol) : 0),
      symmetry(record ? static_cast<Symmetry>(record->stype) : ASYMMETRIC),
      tripletCapacity(0) {
    viewSparse();
}

SparseMatrix::SparseMatrix(SparseMatrix&& other) noexcept
    : sparse(std::move(other.sparse)),
      triplet(std::move(other.triplet)),
      nrow(std::exchange(other.nrow, 0)),
      ncol(std::exchange(other.ncol, 0)),
      values(std::exchange(other.values, nullptr)),
      iRow(std::exchange(other.iRow, nullptr)),
      jColumn(std::exchange(other.jColumn, nullptr)),
      symmetry(other.symmetry),
      tripletCapacity(other.tripletCapacity) {}

SparseMatrix& SparseMatrix::operator=(SparseMatrix&& other) noexcept {
    if (this == &other) return *this;
    SparseMatrix taken(std::move(other));
    swap(taken);
    return *this;
}

void SparseMatrix::swap(SparseMatrix& other) noexcept {
    std::swap(sparse, other.sparse);
    std::swap(triplet, other.triplet);
    std::swap(nrow, other.nrow);
    std::swap(ncol, other.ncol);
    std::swap(values, other.values);
    std::swap(iRow, other.iRow);
    std::swap(jColumn, other.jColumn);
    std::swap(symmetry, other.symmetry);
    std::swap(tripletCapacity, other.tripletCapacity);
}

MatrixState SparseMatrix::getMatrixState() const {
    if (nrow == 0 && ncol == 0) return DESTROYED;
    if (triplet) return INIT;
    return sparse ? BUILT : UNINITIALIZED;
}

int SparseMatrix::getNumberOfElements() const {
    if (nrow == 0 && ncol == 0) return 0;
    if (triplet) return static_cast<int>(triplet->nnz);
    return sparse ? jColumn[ncol] : 0;
}

int SparseMatrix::find(unsigned row, unsigned column) const {
    if ((symmetry == SYMMETRIC_UPPER && row > column) ||
        (symmetry == SYMMETRIC_LOWER && row < column)) {
        std::swap(row, column);
    }
    if (!sparse || row >= nrow || column >= ncol) return -1;
    const int wanted = static_cast<int>(row);
    // Signed bounds: the step below the first index must end the search, not wrap around.
    int lo = jColumn[column];
    int hi = jColumn[column + 1] - 1;
    while (lo <= hi) {
        const int mid =
            static_cast<int>((static_cast<unsigned>(lo) + static_cast<unsigned>(hi)) / 2);
        if (iRow[mid] == wanted) return mid;
        if (iRow[mid] > wanted)
            hi = mid - 1;
        else
            lo = mid + 1;
    }
    return -1;
}

double& SparseMatrix::getValue(unsigned row, unsigned column) {
    if (sparse) {
        assertValidIndex(row, column);
        const int index = find(row, column);
        return index >= 0 ? values[index] : clearedScratch();
    }
    if (row >= nrow || column >= ncol) return clearedScratch();
    if (!allocateTriplets()) return clearedScratch();
    if (triplet->nnz == triplet->nzmax) increaseTripletCapacity();
    assertValidInitAddValue(row, column);
    if (triplet->nnz == triplet->nzmax) return clearedScratch();
    const std::size_t entry = triplet->nnz++;
    iRow[entry] = static_cast<int>(row);
    jColumn[entry] = static_cast<int>(column);
    values[entry] = 0.0;
    return values[entry];
}

bool SparseMatrix::allocateTriplets() {
    if (triplet || sparse) return triplet != nullptr;
    triplet.reset(cholmod_allocate_triplet(nrow, ncol, static_cast<std::size_t>(tripletCapacity),
                                           symmetry, CHOLMOD_REAL,
                                           ConfigSingleton::getCommonPtr()));
    if (triplet) viewTriplet();
    return triplet != nullptr;
}

void SparseMatrix::viewTriplet() {
    values = static_cast<double*>(triplet->x);
    iRow = static_cast<int*>(triplet->i);
    jColumn = static_cast<int*>(triplet->j);
}

void SparseMatrix::viewSparse() {
    values = sparse ? static_cast<double*>(sparse->x) : nullptr;
    iRow = sparse ? static_cast<int*>(sparse->i) : nullptr;
    jColumn = sparse ? static_cast<int*>(sparse->p) : nullptr;
}

void SparseMatrix::increaseTripletCapacity() {
    if (!triplet) return;
    const int capacity = grownCapacity(tripletCapacity);
    if (static_cast<std::size_t>(capacity) <= triplet->nzmax) return;
    RecordPtr<cholmod_triplet> old = std::move(triplet);
    const int oldCapacity = std::exchange(tripletCapacity, capacity);
    if (!allocateTriplets()) {
        triplet = std::move(old);
        tripletCapacity = oldCapacity;
        return;
    }
    std::copy_n(static_cast<const double*>(old->x), old->nzmax, values);
    std::copy_n(static_cast<const int*>(old->i), old->nzmax, iRow);
    std::copy_n(static_cast<const int*>(old->j), old->nzmax, jColumn);
    triplet->nnz = old->nnz;
}

void SparseMatrix::build() {
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    sparse.reset();
    if (triplet) {
        sparse.reset(cholmod_triplet_to_sparse(triplet.get(), triplet->nnz, common));
        triplet.reset();
    } else {
        sparse.reset(cholmod_allocate_sparse(nrow, ncol, 0, /*sorted=*/0,
                                             /*packed=*/1, symmetry, CHOLMOD_REAL, common));
    }
    viewSparse();
}

void SparseMatrix::zero() {
    assertHasSparse();
    if (sparse) std::memset(sparse->x, 0, sparse->nzmax * sizeof(double));
}

void SparseMatrix::append(const SparseMatrix& other) {
    if (!other.triplet || sparse) return;
    if (!allocateTriplets()) return;
    const std::size_t own = triplet->nnz;
    const std::size_t added = other.triplet->nnz;
    while (triplet->nzmax < own + added) {
        const std::size_t before = triplet->nzmax;
        increaseTripletCapacity();
        if (triplet->nzmax == before) return;
    }
    std::copy_n(other.values, added, values + own);
    std::copy_n(other.jColumn, added, jColumn + own);
    std::copy_n(other.iRow, added, iRow + own);
    triplet->nnz = own + added;
}

SparseColumnWriter::SparseColumnWriter(unsigned rows, unsigned columns, Symmetry symmetry,
                                       std::size_t mostEntries)
    : record(cholmod_allocate_sparse(rows, columns, mostEntries, /*sorted=*/1, /*packed=*/1,
                                     symmetry, CHOLMOD_REAL, ConfigSingleton::getCommonPtr())),
      count(0) {
    if (!record) throw std::bad_alloc();
    values = static_cast<double*>(record->x);
    rowIndices = static_cast<int*>(record->i);
    columnEnd = static_cast<int*>(record->p);
    *columnEnd = 0;
}

}  // namespace kmat
