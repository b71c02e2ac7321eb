/*
 * Loads the library, scores a plate, and prints the files of all libraries that are loaded then.
 *
 *     loaded_libraries LIBRARY [no-openmp]      no-openmp: fails when an OpenMP runtime is loaded,
 *                                               unless it was OpenBLAS that brought it
 */
#include <dlfcn.h>
#include <link.h>
#include <stdio.h>
#include <string.h>

enum { NELX = 40, NELY = 20, ELEMENTS = NELX * NELY, SUPPORTS = 2 * (NELY + 1) };
enum { OPENBLAS_WITH_OPENMP = 2, SKIPPED = 77 };

typedef void Init(int, int, int, int, int, const float*, int, const float*, int);
typedef double Solve(const float*, float*);
typedef int GetParallel(void);

static int lookUp(void* library, const char* name, void* function) {
    void* address = dlsym(library, name);
    memcpy(function, &address, sizeof address); /* C has no cast from an object to a function */
    return address != NULL;
}

static int isOpenMp(const char* file) {
    return strstr(file, "libgomp") || strstr(file, "libomp") || strstr(file, "libiomp");
}

static int printLibrary(struct dl_phdr_info* info, size_t size, void* openMp) {
    (void)size;
    puts(info->dlpi_name);
    if (isOpenMp(info->dlpi_name)) *(int*)openMp = 1;
    return 0;
}

static int blasHasOpenMp(void* library) {
    GetParallel* getParallel;
    return lookUp(library, "openblas_get_parallel", &getParallel) &&
           getParallel() == OPENBLAS_WITH_OPENMP;
}

int main(int argc, char** argv) {
    const float load[5] = {NELX, 0, 0, 1, 0};
    static float supports[SUPPORTS][5];
    static float densities[ELEMENTS];
    Init* init;
    Solve* solve;
    void* library = argc > 1 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : NULL;
    if (!library || !lookUp(library, "_InitVoxamGame", &init) ||
        !lookUp(library, "_SolveVoxamGame", &solve)) {
        fprintf(stderr, "%s\n", argc > 1 ? dlerror() : "usage: loaded_libraries LIBRARY");
        return 1;
    }
    for (int i = 0; i < SUPPORTS; ++i) {
        const int node = i / 2;
        supports[i][1] = (float)node;
        supports[i][2] = (float)(i % 2);
    }
    for (int i = 0; i < ELEMENTS; ++i) densities[i] = 1;
    init(NELX, NELY, 1, 1, 1, load, SUPPORTS, supports[0], 1);
    printf("compliance %.12g\n", solve(densities, NULL));

    int openMp = 0;
    dl_iterate_phdr(printLibrary, &openMp);
    if (!openMp || argc < 3 || strcmp(argv[2], "no-openmp") != 0) return 0;
    return blasHasOpenMp(library) ? SKIPPED : 1;
}
