// Small dense factorisations by LAPACK, and a determinant of its own kind.

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "dense_matrix.h"
#include "kmat_exception.h"

extern "C" {
void dgetrf_(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info);
void dgetri_(const int* n, double* a, const int* lda, const int* ipiv, double* work,
             const int* lwork, int* info);
void dgesv_(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b,
            const int* ldb, int* info);
}

namespace kmat {

namespace {

int clampedInt(std::size_t value) {
    return static_cast<int>(std::min<std::size_t>(value, std::numeric_limits<int>::max()));
}

void recordLapackFailure(int info) {
    const std::string number = std::to_string(-info);
    if (info < 0) {
        KmatException::createKmatException("The " + number + " -th argument had an illegal value");
    } else if (info > 0) {
        // The pivot's position has minus signs, because the text has always had them.
        KmatException::createKmatException("U(" + number + "," + number +
                                           ") is exactly zero. The factor U is exactly singular.");
    }
}

// Reported in LAPACK's manner without calling it, which does not know the number of columns and
// would read past the end of the array; with too few rows some of its builds stop the process.
constexpr int TOO_FEW_COLUMNS = -3;
constexpr int TOO_FEW_ROWS = -4;

DenseMatrix solveInPlace(DenseMatrix& A, DenseMatrix&& B) {
    const int n = static_cast<int>(B.getRows());
    const int columns = static_cast<int>(B.getColumns());
    const int lda = static_cast<int>(std::max(A.getRows(), 1U));
    const int ldb = std::max(n, 1);
    int info = 0;
    if (A.getRows() < B.getRows()) {
        info = TOO_FEW_ROWS;
    } else if (A.getColumns() < B.getRows()) {
        info = TOO_FEW_COLUMNS;
    } else {
        std::vector<int> pivots(B.getRows());
        dgesv_(&n, &columns, A.begin(), &lda, pivots.data(), B.begin(), &ldb, &info);
    }
    recordLapackFailure(info);
    return std::move(B);
}

}  // namespace

void DenseMatrix::inverse() {
    if (nrow > ncol) return recordLapackFailure(TOO_FEW_COLUMNS);
    if (nrow == 0) return;
    const int n = static_cast<int>(nrow);
    const int workspaceLength = clampedInt(std::size_t{nrow} * nrow);
    std::vector<int> pivots(nrow + 1);
    std::vector<double> workspace(std::size_t{nrow} * nrow);
    int info = 0;
    dgetrf_(&n, &n, begin(), &n, pivots.data(), &info);
    recordLapackFailure(info);
    // Called also after a failure, whose report stands: what this one says is not examined.
    dgetri_(&n, begin(), &n, pivots.data(), workspace.data(), &workspaceLength, &info);
}

DenseMatrix inversed(const DenseMatrix& A) { return inversed(A.copy()); }

DenseMatrix inversed(DenseMatrix&& A) {
    A.inverse();
    return std::move(A);
}

DenseMatrix solve(const DenseMatrix& A, const DenseMatrix& B) { return solve(A.copy(), B.copy()); }

DenseMatrix solve(DenseMatrix&& A, const DenseMatrix& B) { return solve(std::move(A), B.copy()); }

DenseMatrix solve(const DenseMatrix& A, DenseMatrix&& B) { return solve(A.copy(), std::move(B)); }

DenseMatrix solve(DenseMatrix&& A, DenseMatrix&& B) { return solveInPlace(A, std::move(B)); }

double DenseMatrix::determinant() const {
    const unsigned n = ncol;
    if (n == 0) return 0.0;
    if (nrow < n) return std::numeric_limits<double>::quiet_NaN();
    const double* a = begin();
    if (n == 1) return a[0];
    if (n == 2) return a[0] * a[3] - a[1] * a[2];
    if (n == 3) {
        return a[0] * a[4] * a[8] + a[3] * a[7] * a[2] + a[6] * a[1] * a[5] - a[0] * a[7] * a[5] -
               a[3] * a[1] * a[8] - a[6] * a[4] * a[2];
    }
    // The scheme of the diagonals goes on beyond 3 x 3, where it is not the determinant.
    double result = 0.0;
    for (unsigned k = 0; k < n; ++k) {
        double P = 1.0;
        double Q = 1.0;
        for (unsigned j = 0; j < n; ++j) {
            const unsigned shifted = (k + j) % n;
            P *= a[j + std::size_t{n} * shifted];
            Q *= a[j + std::size_t{n} * (n - 1 - shifted)];
        }
        result += P - Q;
    }
    return result;
}

}  // namespace kmat
