// Loads the library, scores a plate, and prints the files of all libraries that are loaded then.
//
//     loaded_libraries LIBRARY [no-openmp]      no-openmp: fails when an OpenMP runtime is loaded,
//                                               unless it was OpenBLAS that brought it
#include <link.h>

#include <cstdio>
#include <string>

#include "scored_plate.h"

namespace {

constexpr int OPENBLAS_WITH_OPENMP = 2;
constexpr int SKIPPED = 77;

int printLibrary(dl_phdr_info* info, std::size_t /*size*/, void* openMp) {
    const std::string file = info->dlpi_name;
    std::puts(file.c_str());
    for (const char* runtime : {"libgomp", "libomp", "libiomp"}) {
        if (file.find(runtime) != std::string::npos) *static_cast<bool*>(openMp) = true;
    }
    return 0;
}

bool blasHasOpenMp(const char* library) {
    void* const getParallel = dlsym(dlopen(library, RTLD_NOW), "openblas_get_parallel");
    return getParallel && reinterpret_cast<int (*)()>(getParallel)() == OPENBLAS_WITH_OPENMP;
}

}  // namespace

int main(int argc, char** argv) {
    const test::LoadedLibrary library(argv[1]);
    std::printf("compliance %.12g\n", test::ScoredPlate(40, 20).score(library));
    bool openMp = false;
    dl_iterate_phdr(printLibrary, &openMp);
    if (!openMp || argc < 3) return 0;
    return blasHasOpenMp(argv[1]) ? SKIPPED : 1;
}
