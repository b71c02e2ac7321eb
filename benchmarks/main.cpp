// Runs the benchmarks. Takes --quick, --once for one repetition of each, and the options of Google
// Benchmark that start with --benchmark_; its JSON is what --benchmark_out=FILE writes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "cholmod_floor.h"
#include "suite.h"
#include "table.h"
#include "voxam.h"
#ifdef VOXAM_BLAS_EMBEDDED
#include "embedded_blas.h"

extern "C" char* openblas_get_corename();
#endif

namespace {

constexpr int REPETITIONS = 3;

// Removes a flag from the arguments and says whether it was there.
bool take(std::string_view flag, int& argc, char** argv) {
    char** const end = std::remove(argv + 1, argv + argc, flag);
    const bool found = end != argv + argc;
    argc = static_cast<int>(end - argv);
    return found;
}

// The library's banners, before the first table.
void printBanners() {
    _InitVoxamApp(1, 1, 1, 1, 0.5F, 1, 0);
    _DestroyVoxamApp();
    _InitVoxamGame(1, 1, 1, 1, 0, nullptr, 0, nullptr, 1);
    _DestroyVoxamGame();
}

// Which kernels of OpenBLAS the library uses, and the floor.
void printKernels() {
    const std::string floor = CholmodFloor::kernels();
#ifdef VOXAM_BLAS_EMBEDDED
    const char* const small[] = {"portable", "AVX2", "AVX-512"};
    std::printf("kernels: %s, small matrices %s; floor %s\n", openblas_get_corename(),
                small[voxam_blas_vectors()], floor.c_str());
#else
    std::printf("kernels: %s; floor %s\n", floor.c_str(), floor.c_str());
#endif
}

}  // namespace

int main(int argc, char** argv) {
    const bool quick = take("--quick", argc, argv);
    const bool once = take("--once", argc, argv) || quick;
    Suite suite(quick, once ? 1 : REPETITIONS);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    addAppBenchmarks(suite);
    addGameBenchmarks(suite);
    addAnalysisBenchmarks(suite);
    addAssemblyBenchmarks(suite);
    printBanners();
    printKernels();
    TableReporter table(suite.getSections());
    const std::size_t count = benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return count == 0 || table.hasFailures() ? 1 : 0;
}
