/*
 * A host whose address space ends before the BLAS has its buffers gets a text, and once there is
 * room it goes on. Left alone, OpenBLAS would ask for its buffer without end.
 */
#include <stdio.h>
#include <string.h>
#include <sys/resource.h>
#include <unistd.h>

#include "voxam.h"

enum { NELX = 50, NELY = 50, SUPPORTS = 2 * (NELY + 1), SPARE = 64 << 20 };

static void limitAddressSpace(rlim_t size) {
    struct rlimit limit;
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = size < limit.rlim_max ? size : limit.rlim_max;
    setrlimit(RLIMIT_AS, &limit);
}

static rlim_t addressSpace(void) {
    unsigned long pages = 0;
    FILE* file = fopen("/proc/self/statm", "r");
    if (!file || fscanf(file, "%lu", &pages) != 1) pages = 0;
    if (file) fclose(file);
    return (rlim_t)pages * (rlim_t)sysconf(_SC_PAGESIZE);
}

static void sendCantilever(void) {
    static const float load[] = {NELX, NELY / 2.0F, 0, 1, 0};
    static const signed char loadCase = 0;
    float supports[5 * SUPPORTS] = {0};
    for (int i = 0; i < SUPPORTS; ++i) {
        supports[5 * i + 1] = (float)(i / 2);
        supports[5 * i + 2] = (float)(i % 2);
    }
    _UpdateVoxamApp(1, load, SUPPORTS, supports, 0.5F, NULL, 1, (const char*)&loadCase, NULL);
}

static double iterate(char* text, int size) {
    double change = 0;
    return _IterateVoxamApp(size, text, NULL, &change, NULL, 3);
}

int main(void) {
    char text[64] = "";
    _InitVoxamApp(NELX, NELY, 1, 1, 0.5F, 1, 0);
    sendCantilever();
    limitAddressSpace(addressSpace() + SPARE);
    double compliance = iterate(text, sizeof text);
    limitAddressSpace(RLIM_INFINITY);
    if (compliance != -1 || strcmp(text, "std::bad_alloc") != 0) {
        printf("With little room: %g, \"%s\"\n", compliance, text);
        return 1;
    }
    sendCantilever();
    compliance = iterate(text, sizeof text);
    if (!(compliance > 0) || text[0] != '\0') {
        printf("With room again: %g, \"%s\"\n", compliance, text);
        return 1;
    }
    _DestroyVoxamApp();
    return 0;
}
