/*
 * Loads the library and first uses it in an exit handler, when whatever the library destroys at exit
 * has gone: a host that ends in the middle of its work. The version that is printed is checked from
 * outside.
 *
 *     exit_handler LIBRARY
 */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <voxam_functions.h>

enum { NELX = 4, NELY = 3, ELEMENTS = NELX * NELY, SUPPORTS = 2 * (NELY + 1) };

static InitVoxamGame initGame;
static SolveVoxamGame solveGame;
static InitVoxamApp initApp;
static UpdateVoxamApp updateApp;
static IterateVoxamApp iterateApp;

static void* library;

static void lookUp(const char* name, void* function) {
    void* address = dlsym(library, name);
    if (!address) _Exit(2);
    memcpy(function, &address, sizeof address); /* C has no cast from an object to a function */
}

static void expect(int holds, const char* what) {
    if (holds) return;
    fprintf(stderr, "failed: %s\n", what);
    _Exit(1);
}

static void compute(void) {
    const float load[5] = {NELX, 0, 0, 1, 0};
    const char loadCase = 0;
    float supports[SUPPORTS][5] = {{0}};
    float densities[ELEMENTS];
    char text[64];
    for (int i = 0; i < SUPPORTS; ++i) {
        supports[i][1] = (float)(i / 2);
        supports[i][2] = (float)(i % 2);
    }
    for (int i = 0; i < ELEMENTS; ++i) densities[i] = 1;
    initGame(NELX, NELY, 1, 1, 1, load, SUPPORTS, supports[0], 1);
    expect(solveGame(densities, NULL) < 1e6, "score");
    initApp(NELX, NELY, 1, 1, 0.5F, 1, 1);
    updateApp(1, load, SUPPORTS, supports[0], 0.5F, NULL, 1, &loadCase, NULL);
    expect(iterateApp(sizeof text, text, NULL, NULL, NULL, 3) > 0, "iteration");
    expect(text[0] == '\0', text);
}

int main(int argc, char** argv) {
    /* Handlers run in the reverse order: this one after those of the library. */
    if (argc != 2 || atexit(compute) != 0) return 2;
    library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        fprintf(stderr, "%s\n", dlerror());
        _Exit(2);
    }
    lookUp("_InitVoxamGame", &initGame);
    lookUp("_SolveVoxamGame", &solveGame);
    lookUp("_InitVoxamApp", &initApp);
    lookUp("_UpdateVoxamApp", &updateApp);
    lookUp("_IterateVoxamApp", &iterateApp);
    return 0;
}
