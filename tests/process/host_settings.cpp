/*
 * A host with OpenMP regions of its own finds its thread settings as it left them, after each call
 * of the library and whichever OpenBLAS is loaded.
 *
 *     host_settings [openmp]      openmp: only with an OpenBLAS that is built with OpenMP
 */
#include <dlfcn.h>
#include <omp.h>
#include <stdio.h>
#include <string.h>

#include "voxam.h"

enum { NELX = 40, NELY = 20, ELEMENTS = NELX * NELY, SUPPORTS = 2 * (NELY + 1) };
enum { OPENBLAS_WITH_OPENMP = 2, SKIPPED = 77 };

/* Of OpenBLAS; null when the BLAS is another one. */
static int (*getParallel)(void);
static int (*getBlasThreads)(void);
static void (*setBlasThreads)(int);

typedef struct {
    int maxThreads;
    int activeLevels;
    int blasThreads;
} Settings;

static void lookUp(const char* name, void* function) {
    void* address = dlsym(RTLD_DEFAULT, name);
    memcpy(function, &address, sizeof address); /* C has no cast from an object to a function */
}

static Settings settings(void) {
    return (Settings){omp_get_max_threads(), omp_get_max_active_levels(),
                      getBlasThreads ? getBlasThreads() : 0};
}

static int changed(const char* call, Settings before) {
    const Settings after = settings();
    if (memcmp(&before, &after, sizeof before) == 0) return 0;
    fprintf(stderr,
            "%s: %d threads, %d active levels, %d threads of the BLAS\nbefore: %d, %d, %d\n", call,
            after.maxThreads, after.activeLevels, after.blasThreads, before.maxThreads,
            before.activeLevels, before.blasThreads);
    return 1;
}

static int changedByIterating(const float* load, const float* supports, Settings before) {
    static float picture[ELEMENTS];
    const char loadCase = 0;
    char message[64];
    _InitVoxamApp(NELX, NELY, 1, 1, 0.5F, 1, 1);
    _UpdateVoxamApp(1, load, SUPPORTS, supports, 0.5F, NULL, 1, &loadCase, NULL);
    _IterateVoxamApp(sizeof message, message, picture, NULL, NULL, 3);
    const int result = changed("_IterateVoxamApp", before);
    _DestroyVoxamApp();
    return result;
}

static int changedByScoring(const float* load, const float* supports, Settings before) {
    static float densities[ELEMENTS];
    for (int i = 0; i < ELEMENTS; ++i) densities[i] = 1;
    _InitVoxamGame(NELX, NELY, 1, 1, 1, load, SUPPORTS, supports, 1);
    _SolveVoxamGame(densities, NULL);
    const int result = changed("_SolveVoxamGame", before);
    _DestroyVoxamGame();
    return result;
}

int main(int argc, char** argv) {
    lookUp("openblas_get_parallel", &getParallel);
    lookUp("openblas_get_num_threads", &getBlasThreads);
    lookUp("openblas_set_num_threads", &setBlasThreads);
    const int wantsOpenMp = argc > 1 && strcmp(argv[1], "openmp") == 0;
    if (wantsOpenMp && (!getParallel || getParallel() != OPENBLAS_WITH_OPENMP)) {
        puts("skipped: there is no OpenBLAS that is built with OpenMP");
        return SKIPPED;
    }
    const float load[5] = {NELX, 0, 0, 1, 0};
    float supports[SUPPORTS][5] = {{0}};
    for (int i = 0; i < SUPPORTS; ++i) {
        const int node = i / 2;
        supports[i][1] = (float)node;
        supports[i][2] = (float)(i % 2);
    }

    omp_set_max_active_levels(3);
    /* OpenBLAS's own count first: built with OpenMP it sets that of the runtime, too. */
    if (setBlasThreads) setBlasThreads(2);
    for (int threads = 1; threads <= 3; ++threads) {
        omp_set_num_threads(threads);
        const Settings before = settings();
        if (changedByIterating(load, supports[0], before)) return 1;
        if (changedByScoring(load, supports[0], before)) return 1;
    }
    return 0;
}
