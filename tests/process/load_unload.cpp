/*
 * Loads the library, scores a plate, and drops the library while its solver is alive, again and
 * again. The library has to stay, with its state: threads of the libraries it uses cannot be ended.
 */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>
#include <voxam_functions.h>

enum { NELX = 4, NELY = 3, ELEMENTS = NELX * NELY, SUPPORTS = 2 * (NELY + 1), ROUNDS = 20 };

static int lookUp(void* library, const char* name, void* function) {
    void* address = dlsym(library, name);
    memcpy(function, &address, sizeof address); /* C has no cast from an object to a function */
    return address != NULL;
}

static int fail(const char* what, int round) {
    fprintf(stderr, "round %d: %s failed\n", round, what);
    return 1;
}

int main(int argc, char** argv) {
    const float load[5] = {NELX, 0, 0, 1, 0};
    float supports[SUPPORTS][5] = {{0}};
    float densities[ELEMENTS];
    double first = 0;
    if (argc != 2) return fail("usage: load_unload LIBRARY", 0);
    for (int i = 0; i < SUPPORTS; ++i) {
        supports[i][1] = (float)(i / 2);
        supports[i][2] = (float)(i % 2);
    }
    for (int i = 0; i < ELEMENTS; ++i) densities[i] = 1;

    for (int round = 1; round <= ROUNDS; ++round) {
        InitVoxamGame init;
        SolveVoxamGame solve;
        void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        if (!library) return fail(dlerror(), round);
        if (!lookUp(library, "_InitVoxamGame", &init)) return fail("_InitVoxamGame", round);
        if (!lookUp(library, "_SolveVoxamGame", &solve)) return fail("_SolveVoxamGame", round);

        /* From the second round on, the solver of the round before must still be there. */
        if (round > 1 && solve(densities, NULL) != first) return fail("lasting state", round);
        init(NELX, NELY, 1, 1, 1, load, SUPPORTS, supports[0], 1);
        const double compliance = solve(densities, NULL);
        if (round == 1) first = compliance;
        if (!(compliance > 0 && compliance < 1e6 && compliance == first))
            return fail("score", round);
        if (dlclose(library) != 0) return fail(dlerror(), round);
    }
    return 0;
}
