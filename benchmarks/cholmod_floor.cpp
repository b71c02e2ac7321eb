#include "cholmod_floor.h"

#include <algorithm>
#include <stdexcept>

#include "suite.h"

using kmat::ConfigSingleton;
using kmat::RecordPtr;

CholmodFloor::CholmodFloor(const kmat::SparseMatrix& K, const kmat::DenseMatrix& source) {
    const kmat::SingleThreadedCholmod guard;
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    const auto most = static_cast<size_t>(K.getNumberOfElements());
    const RecordPtr<cholmod_triplet> triplets(cholmod_allocate_triplet(
        K.getRows(), K.getColumns(), most, kmat::SYMMETRIC_UPPER, CHOLMOD_REAL, common));
    for (const kmat::SparseEntry& entry : K) {
        static_cast<int*>(triplets->i)[triplets->nnz] = static_cast<int>(entry.row);
        static_cast<int*>(triplets->j)[triplets->nnz] = static_cast<int>(entry.column);
        static_cast<double*>(triplets->x)[triplets->nnz++] = entry.value;
    }
    matrix.reset(cholmod_triplet_to_sparse(triplets.get(), most, common));
    force.reset(cholmod_zeros(source.getRows(), 1, CHOLMOD_REAL, common));
    std::copy_n(source.begin(), source.getRows(), static_cast<double*>(force->x));
    factor.reset(cholmod_analyze(matrix.get(), common));
}

double CholmodFloor::measure() {
    const kmat::SingleThreadedCholmod guard;
    cholmod_common* common = ConfigSingleton::getCommonPtr();
    int status = CHOLMOD_OK;
    RecordPtr<cholmod_dense> u;
    const double time = timed([&] {
        cholmod_factorize(matrix.get(), factor.get(), common);
        status = common->status;
        u.reset(cholmod_solve(CHOLMOD_A, factor.get(), force.get(), common));
    });
    if (status != CHOLMOD_OK || !u) throw std::runtime_error("CHOLMOD cannot solve");
    return time;
}
