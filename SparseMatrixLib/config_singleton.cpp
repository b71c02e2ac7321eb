#include "config_singleton.h"

#include <memory>

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

struct Context {
    std::unique_ptr<cholmod_common> common;
    std::string lastError;
};

// Deliberately never destroyed: a matrix with static lifetime, or one that a host releases in an
// exit handler, may need the workspace after this file's own objects would have gone.
Context& context() {
    static Context& instance = *new Context;
    return instance;
}

}  // namespace

cholmod_common* ConfigSingleton::getCommonPtr() {
    auto& common = context().common;
    if (!common) {
        common = std::make_unique<cholmod_common>();
        cholmod_start(common.get());
        common->error_handler = errorHandler;
    }
    return common.get();
}

void ConfigSingleton::config(cholmod_common* newCommon) {
    auto& common = context().common;
    if (newCommon == common.get()) {
        if (newCommon) cholmod_finish(newCommon);
    } else {
        destroy();
        common.reset(newCommon);
    }
    if (newCommon) cholmod_start(newCommon);
}

void ConfigSingleton::destroy() {
    auto& common = context().common;
    if (!common) return;
    cholmod_finish(common.get());
    common.reset();
}

std::string ConfigSingleton::getLastError() { return context().lastError; }

void errorHandler(int /*status*/, const char* /*file*/, int /*line*/, const char* message) {
    context().lastError = message ? message : "";
}

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
