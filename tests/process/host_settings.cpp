// A host with OpenMP regions of its own finds its thread settings as it left them, after each call
// of the library and whichever OpenBLAS is loaded. Its closed standard output, and its traps of
// floating-point exceptions, end no call.
//
//     host_settings [openmp]      openmp: only with an OpenBLAS that is built with OpenMP
#include <dlfcn.h>
#include <omp.h>

#include <cfenv>
#include <cstdio>
#include <iostream>
#include <streambuf>
#include <vector>

#include "support/answers.h"
#include "support/exports.h"

namespace {

constexpr int NELX = 40;
constexpr int NELY = 20;
constexpr int OPENBLAS_WITH_OPENMP = 2;
constexpr int SKIPPED = 77;

// A function of OpenBLAS; null when the BLAS is another one.
template <typename Function>
Function* ofOpenBlas(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

auto* const GET_PARALLEL = ofOpenBlas<int()>("openblas_get_parallel");
auto* const GET_BLAS_THREADS = ofOpenBlas<int()>("openblas_get_num_threads");
auto* const SET_BLAS_THREADS = ofOpenBlas<void(int)>("openblas_set_num_threads");

struct ThreadSettings {
    int maxThreads = omp_get_max_threads();
    int activeLevels = omp_get_max_active_levels();
    int blasThreads = GET_BLAS_THREADS ? GET_BLAS_THREADS() : 0;

    bool operator==(const ThreadSettings&) const = default;
};

bool changed(const char* call, const ThreadSettings& before) {
    const ThreadSettings after;
    if (after == before) return false;
    for (const auto& [threads, levels, blasThreads] : {before, after}) {
        std::fprintf(stderr, "%s: %d threads, %d active levels, %d threads of the BLAS\n", call,
                     threads, levels, blasThreads);
    }
    return true;
}

// Whether there was a picture.
bool iterate(const test::Settings& plate) {
    char text[64];
    _InitVoxamApp(NELX, NELY, 1, 1, 0.5F, 1, 1);
    test::update(plate);
    _IterateVoxamAppWithBlob(sizeof text, text, nullptr, nullptr, nullptr, nullptr, 3);
    return *text == '\0';
}

// Whether there was a score.
bool score(const test::Settings& plate) {
    const std::vector<float> densities(NELX * NELY, 1.0F);
    _InitVoxamGame(NELX, NELY, 1, 1, plate.loads.count(), plate.loads.data(),
                   plate.supports.count(), plate.supports.data(), 1);
    return _SolveVoxamGame(densities.data(), nullptr) < test::FAILED_SCORE;
}

// Takes nothing.
class Closed : public std::streambuf {};

}  // namespace

int main(int argc, char** /*argv*/) {
    if (argc > 1 && (!GET_PARALLEL || GET_PARALLEL() != OPENBLAS_WITH_OPENMP)) {
        std::puts("skipped: there is no OpenBLAS that is built with OpenMP");
        return SKIPPED;
    }
    Closed closed;
    test::Settings plate = test::cantilever(NELX, NELY);
    test::addBlock(plate.passive, 0, NELX / 2, NELX / 2 + 3, 1, 4);
    test::addBlock(plate.blob, 0, 10, 15, 5, 9);
    std::streambuf* const hostsOutput = std::cout.rdbuf(&closed);
    std::cout.exceptions(std::ios::badbit | std::ios::failbit);
#ifdef __GLIBC__
    feenableexcept(FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW);
#endif
    omp_set_max_active_levels(3);
    // OpenBLAS's own count first: built with OpenMP it sets that of the runtime, too.
    if (SET_BLAS_THREADS) SET_BLAS_THREADS(2);
    for (int threads = 1; threads <= 3; ++threads) {
        omp_set_num_threads(threads);
        const ThreadSettings before;
        if (!iterate(plate)) return 1;
        if (changed("_IterateVoxamApp", before)) return 1;
        if (!score(plate)) return 1;
        if (changed("_SolveVoxamGame", before)) return 1;
    }
#ifdef __GLIBC__
    if (fegetexcept() != (FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW)) return 1;
#endif
    std::cout.exceptions(std::ios::goodbit);
    std::cout.rdbuf(hostsOutput);
    return 0;
}
