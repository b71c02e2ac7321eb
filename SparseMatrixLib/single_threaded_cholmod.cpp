#include "single_threaded_cholmod.h"

#ifdef VOXAM_BLAS_EMBEDDED

// Linked in, neither CHOLMOD nor the BLAS has threads, and those of a host's BLAS are the host's.
kmat::SingleThreadedCholmod::SingleThreadedCholmod() = default;
kmat::SingleThreadedCholmod::~SingleThreadedCholmod() = default;

#else

extern "C" {
// Null when the BLAS is not OpenBLAS.
[[gnu::weak]] int openblas_get_num_threads();
[[gnu::weak]] void openblas_set_num_threads(int count);

// Null when the process has no OpenMP runtime.
[[gnu::weak]] int omp_get_max_threads();
[[gnu::weak]] void omp_set_num_threads(int count);

#ifndef VOXAM_CHOLMOD_EMBEDDED
int omp_get_max_active_levels();
void omp_set_max_active_levels(int count);
#endif
}

namespace kmat {

namespace {

#ifdef VOXAM_CHOLMOD_EMBEDDED
// Linked in, CHOLMOD knows no OpenMP.
int exchangeActiveLevels(int /*count*/) { return 0; }
#else
int exchangeActiveLevels(int count) {
    const int before = omp_get_max_active_levels();
    omp_set_max_active_levels(count);
    return before;
}
#endif

}  // namespace

SingleThreadedCholmod::SingleThreadedCholmod()
    : hostsActiveLevels(exchangeActiveLevels(0)),
      hostsOmpThreads(omp_get_max_threads ? omp_get_max_threads() : 0),
      hostsBlasThreads(openblas_get_num_threads ? openblas_get_num_threads() : 0) {
    if (openblas_set_num_threads) openblas_set_num_threads(1);
}

SingleThreadedCholmod::~SingleThreadedCholmod() {
    if (openblas_set_num_threads) openblas_set_num_threads(hostsBlasThreads);
    // An OpenBLAS that is built with OpenMP sets the runtime's count along with its own.
    if (omp_get_max_threads && omp_get_max_threads() != hostsOmpThreads) {
        omp_set_num_threads(hostsOmpThreads);
    }
    exchangeActiveLevels(hostsActiveLevels);
}

}  // namespace kmat

#endif
