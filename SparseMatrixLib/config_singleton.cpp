#include "config_singleton.h"

#include <omp.h>

#include <memory>

// Null when the BLAS is not OpenBLAS.
extern "C" {
[[gnu::weak]] int openblas_get_num_threads();
[[gnu::weak]] void openblas_set_num_threads(int count);
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
        common.reset(new cholmod_common{});
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

SingleThreadedCholmod::SingleThreadedCholmod()
    : hostsActiveLevels(omp_get_max_active_levels()),
      hostsBlasThreads(openblas_get_num_threads ? openblas_get_num_threads() : 0) {
    omp_set_max_active_levels(0);
    if (openblas_set_num_threads) openblas_set_num_threads(1);
}

SingleThreadedCholmod::~SingleThreadedCholmod() {
    omp_set_max_active_levels(hostsActiveLevels);
    if (openblas_set_num_threads) openblas_set_num_threads(hostsBlasThreads);
}

}  // namespace kmat
