#include "cholmod_floor.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "suite.h"
#ifdef VOXAM_BLAS_EMBEDDED
#include "embedded_blas.h"
#endif

namespace {

// The functions of CHOLMOD's shared library, which is not what the name of a function means where
// CHOLMOD is linked in.
class SharedCholmod {
public:
    static const SharedCholmod& get() {
        static const SharedCholmod instance;
        return instance;
    }

    // Hands a record over to an owner that gives it back to the same library.
    template <typename Record>
    std::shared_ptr<Record> own(Record* record, int (*release)(Record**, cholmod_common*)) const {
        return {record, [this, release](Record* p) { release(&p, common.get()); }};
    }

    std::unique_ptr<cholmod_common> common = std::make_unique<cholmod_common>();
    decltype(&cholmod_allocate_triplet) allocateTriplet = find("cholmod_allocate_triplet");
    decltype(&cholmod_triplet_to_sparse) tripletToSparse = find("cholmod_triplet_to_sparse");
    decltype(&cholmod_zeros) zeros = find("cholmod_zeros");
    decltype(&cholmod_analyze) analyze = find("cholmod_analyze");
    decltype(&cholmod_factorize) factorize = find("cholmod_factorize");
    decltype(&cholmod_solve) solve = find("cholmod_solve");
    decltype(&cholmod_free_triplet) freeTriplet = find("cholmod_free_triplet");
    decltype(&cholmod_free_sparse) freeSparse = find("cholmod_free_sparse");
    decltype(&cholmod_free_dense) freeDense = find("cholmod_free_dense");
    decltype(&cholmod_free_factor) freeFactor = find("cholmod_free_factor");

    // Of the OpenMP runtime that comes with it.
    int (*getMaxActiveLevels)() = find("omp_get_max_active_levels");
    void (*setMaxActiveLevels)(int) = find("omp_set_max_active_levels");

    // Of the BLAS that comes with it. Null when that is not OpenBLAS.
    const char* (*getCoreName)() =
        reinterpret_cast<const char* (*)()>(dlsym(handle, "openblas_get_corename"));

private:
    // Becomes a pointer to whatever function it is assigned to.
    struct Address {
        void* value;
        template <typename Function>
        operator Function*() const {
            return reinterpret_cast<Function*>(value);
        }
    };

    SharedCholmod() {
        decltype(&cholmod_start) start = find("cholmod_start");
        start(common.get());
        // The BLAS that came with it computes on one thread, as the library's does.
        if (void* const set = dlsym(handle, "openblas_set_num_threads")) {
            reinterpret_cast<void (*)(int)>(set)(1);
        }
    }

    // OpenBLAS reads the variable when it is loaded, which is when CHOLMOD's library is.
    static void chooseKernels() {
#ifdef VOXAM_BLAS_EMBEDDED
        const char* const floor = std::getenv("VOXAM_FLOOR");
        const char* const best = voxam_blas_getenv("OPENBLAS_CORETYPE");
        if (best && !(floor && std::string(floor) == "system")) {
            setenv("OPENBLAS_CORETYPE", best, 0);
        }
#endif
    }

    Address find(const char* name) {
        if (!handle) {
            chooseKernels();
            handle = dlopen(VOXAM_SHARED_CHOLMOD, RTLD_NOW | RTLD_LOCAL);
        }
        void* const address = handle ? dlsym(handle, name) : nullptr;
        if (!address) throw std::runtime_error(dlerror());
        return {address};
    }

    inline static void* handle = nullptr;
};

// Holds OpenMP's team at one thread, as the library does where CHOLMOD has one.
class TeamOfOne {
public:
    explicit TeamOfOne(const SharedCholmod& cholmod)
        : cholmod(cholmod), before(cholmod.getMaxActiveLevels()) {
        cholmod.setMaxActiveLevels(0);
    }
    ~TeamOfOne() { cholmod.setMaxActiveLevels(before); }
    TeamOfOne(const TeamOfOne&) = delete;
    TeamOfOne& operator=(const TeamOfOne&) = delete;

private:
    const SharedCholmod& cholmod;
    int before;
};

}  // namespace

std::string CholmodFloor::kernels() {
    const char* (*name)() = SharedCholmod::get().getCoreName;
    return name ? name() : "unknown";
}

CholmodFloor::CholmodFloor(const kmat::SparseMatrix& K, const kmat::DenseMatrix& source) {
    const SharedCholmod& cholmod = SharedCholmod::get();
    const TeamOfOne guard(cholmod);
    cholmod_common* common = cholmod.common.get();
    const auto most = static_cast<std::size_t>(K.getNumberOfElements());
    const auto triplets =
        cholmod.own(cholmod.allocateTriplet(K.getRows(), K.getColumns(), most,
                                            kmat::SYMMETRIC_UPPER, CHOLMOD_REAL, common),
                    cholmod.freeTriplet);
    for (const kmat::SparseEntry& entry : K) {
        static_cast<int*>(triplets->i)[triplets->nnz] = static_cast<int>(entry.row);
        static_cast<int*>(triplets->j)[triplets->nnz] = static_cast<int>(entry.column);
        static_cast<double*>(triplets->x)[triplets->nnz++] = entry.value;
    }
    matrix = cholmod.own(cholmod.tripletToSparse(triplets.get(), most, common), cholmod.freeSparse);
    force =
        cholmod.own(cholmod.zeros(source.getRows(), 1, CHOLMOD_REAL, common), cholmod.freeDense);
    std::copy_n(source.begin(), source.getRows(), static_cast<double*>(force->x));
    analysisTime = timed(
        [&] { factor = cholmod.own(cholmod.analyze(matrix.get(), common), cholmod.freeFactor); });
}

double CholmodFloor::measure() {
    const SharedCholmod& cholmod = SharedCholmod::get();
    const TeamOfOne guard(cholmod);
    cholmod_common* common = cholmod.common.get();
    int status = CHOLMOD_OK;
    std::shared_ptr<cholmod_dense> u;
    const double time = timed([&] {
        cholmod.factorize(matrix.get(), factor.get(), common);
        status = common->status;
        u = cholmod.own(cholmod.solve(CHOLMOD_A, factor.get(), force.get(), common),
                        cholmod.freeDense);
    });
    if (status != CHOLMOD_OK || !u) throw std::runtime_error("CHOLMOD cannot solve");
    return time;
}
