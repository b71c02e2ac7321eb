/*
 * With CHOLMOD linked in, a process that loads the library and computes has no OpenMP runtime.
 *
 *     no_openmp LIBRARY
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

static int printOpenMp(struct dl_phdr_info* info, size_t size, void* data) {
    static const char* const runtimes[] = {"libgomp", "libomp", "libiomp"};
    (void)size;
    for (size_t i = 0; i < sizeof runtimes / sizeof *runtimes; ++i) {
        if (!strstr(info->dlpi_name, runtimes[i])) continue;
        fprintf(stderr, "loaded: %s\n", info->dlpi_name);
        *(int*)data = 1;
    }
    return 0;
}

int main(int argc, char** argv) {
    const float load[5] = {NELX, 0, 0, 1, 0};
    static float supports[SUPPORTS][5];
    static float densities[ELEMENTS];
    void* library = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : NULL;
    Init* init;
    Solve* solve;
    GetParallel* getParallel;
    if (!library || !lookUp(library, "_InitVoxamGame", &init) ||
        !lookUp(library, "_SolveVoxamGame", &solve)) {
        fprintf(stderr, "%s\n", argc == 2 ? dlerror() : "usage: no_openmp LIBRARY");
        return 1;
    }
    if (lookUp(library, "openblas_get_parallel", &getParallel) &&
        getParallel() == OPENBLAS_WITH_OPENMP) {
        puts("skipped: this OpenBLAS is built with OpenMP and brings a runtime");
        return SKIPPED;
    }
    for (int i = 0; i < SUPPORTS; ++i) {
        supports[i][1] = (float)(i / 2);
        supports[i][2] = (float)(i % 2);
    }
    for (int i = 0; i < ELEMENTS; ++i) densities[i] = 1;
    init(NELX, NELY, 1, 1, 1, load, SUPPORTS, supports[0], 1);
    if (!(solve(densities, NULL) < 1e6)) {
        fprintf(stderr, "the plate was not solved\n");
        return 1;
    }

    int found = 0;
    dl_iterate_phdr(printOpenMp, &found);
    return found;
}
