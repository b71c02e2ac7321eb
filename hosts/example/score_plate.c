/* Scores a solid cantilever, and then the same plate with nothing to hold it. */
#include <float.h>
#include <stdio.h>
#include <voxam.h>

enum { NELX = 30, NELY = 20, ELEMENTS = NELX * NELY, SUPPORTS = 2 * (NELY + 1) };

static void score(const char* name, int supportCount, const float* supports) {
    /* A unit force along y at the middle of the right edge, in load case 0. */
    const float load[5] = {NELX, NELY / 2, 0, 1, 0};
    float densities[ELEMENTS];
    float energies[ELEMENTS];
    for (int i = 0; i < ELEMENTS; ++i) densities[i] = 1;

    _InitVoxamGame(NELX, NELY, 1, 1, 1, load, supportCount, supports, 1);
    const double compliance = _SolveVoxamGame(densities, energies);
    if (compliance >= FLT_MAX) {
        printf("%s: the plate cannot be solved\n", name);
    } else {
        printf("%s: compliance %.2f, of which %.2f in element 0\n", name, compliance, energies[0]);
    }
    _DestroyVoxamGame();
}

int main(void) {
    /* Hold every node of the left edge, x = 0, in direction 0 (x) and in direction 1 (y). */
    float supports[SUPPORTS][5] = {{0}};
    for (int i = 0; i < SUPPORTS; ++i) {
        supports[i][1] = (float)(i / 2);
        supports[i][2] = (float)(i % 2);
    }

    score("held", SUPPORTS, supports[0]);
    score("free", 0, NULL);
    return 0;
}
