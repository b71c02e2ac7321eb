/*
 * A host in plain C: optimises a cantilever, moves a hole through it, analyses the solid plate, and
 * checks that the results make sense.
 */
#include <math.h>
#include <stdio.h>

#include "voxam.h"

enum {
    NELX = 16,
    NELY = 10,
    SCALE = 4,
    CELLS = NELX * SCALE * NELY * SCALE,
    ELEMENTS = NELX * NELY
};
enum { SUPPORTS = 2 * (NELY + 1), BLOB = 4, ITERATIONS = 20 };

static float supports[SUPPORTS][5];
static float picture[CELLS];
static int mask[ELEMENTS];
static char text[64];

static int fail(const char* what) {
    fprintf(stderr, "%s (text: \"%s\")\n", what, text);
    return 1;
}

static void update(short blobCount) {
    const float load[5] = {NELX, NELY / 2, 0, 1, 0};
    const short blob[1 + 2 * BLOB] = {blobCount, 6, 4, 7, 4, 6, 5, 7, 5};
    const char loadCase = 0;
    _UpdateVoxamApp(1, load, SUPPORTS, supports[0], 0.4F, NULL, 1, &loadCase, blob);
}

static int analyse(double* compliance) {
    const float load[5] = {NELX, NELY / 2, 0, 1, 0};
    static double moduli[ELEMENTS];
    int status = 0;
    for (int e = 0; e < ELEMENTS; ++e) moduli[e] = 1;
    _InitVoxamAnalysis(NELX, NELY, 1, load, SUPPORTS, supports[0], 1);
    status = _SolveVoxamAnalysis(moduli, sizeof text, text, compliance, NULL, NULL, NULL, NULL);
    _DestroyVoxamAnalysis();
    return status;
}

int main(void) {
    double first = 0, last = 0, change = -1, material = 0;
    RuntimeStat stat;
    for (int i = 0; i < SUPPORTS; ++i) {
        supports[i][1] = (float)(i / 2);
        supports[i][2] = (float)(i % 2);
    }
    _InitVoxamApp(NELX, NELY, 2, 2, 0.4F, 1, 1);
    update(0);
    for (int i = 1; i <= ITERATIONS; ++i) {
        last = _IterateVoxamApp(sizeof text, text, picture, &change, &stat, 3);
        if (text[0] != '\0' || !(last > 0)) return fail("an iteration failed");
        if (!(stat.totalTime >= stat.stateTime)) return fail("the times make no sense");
        if (i == 1) first = last;
    }
    if (!(last < 0.6 * first)) return fail("the structure did not become stiffer");
    if (!(change > 0 && change < 0.201)) return fail("the design moved too far, or not at all");
    for (int i = 0; i < CELLS; ++i) material += 1 - picture[i];
    if (!(fabs(material / CELLS - 0.4) < 0.1)) return fail("not the volume that was asked for");

    update(BLOB);
    for (int i = 1; i <= ITERATIONS; ++i) {
        int count = 0;
        _IterateVoxamAppWithBlob(sizeof text, text, picture, &change, &stat, mask, 3);
        for (int e = 0; e < ELEMENTS; ++e) count += mask[e];
        if (text[0] != '\0' || count != BLOB) return fail("an iteration with the blob failed");
    }
    _DestroyVoxamApp();
    if (_IterateVoxamApp(sizeof text, text, picture, NULL, NULL, 3) != -1)
        return fail("the optimiser is still there");

    text[0] = 'x';
    if (analyse(&first) != VOXAM_ANALYSIS_SOLVED || text[0] != '\0')
        return fail("the analysis failed");
    if (!(first > 0 && first < last)) return fail("a solid plate is not the stiffest");
    return 0;
}
