/*
 * What OpenBLAS refers to when its archive is linked into the library, under the names that
 * cmake/EmbeddedBlas.cmake gives to it.
 *
 * OpenBLAS chooses its kernels by the model of the processor. For models that are newer than itself
 * it may fall back to kernels of 2004, with a quarter of the speed. What a processor can do is
 * known without its model, so the answer is put where OpenBLAS looks for the user's own choice: the
 * variable OPENBLAS_CORETYPE. The environment of the process stays as it is.
 */
#include "embedded_blas.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

/* Set before OpenBLAS's own constructor, which may report a problem. */
__attribute__((visibility("hidden"))) FILE* voxam_blas_stderr;

__attribute__((constructor(101))) static void setStream(void) { voxam_blas_stderr = stderr; }

/* OpenBLAS's name of the best kernels for the processor. Null leaves the choice to OpenBLAS. */
static const char* bestKernels(void) {
#ifdef __x86_64__
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl")) {
        return "SkylakeX";
    }
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) return "Haswell";
#endif
    return NULL;
}

static int isOneOf(const char* name, const char* const* names) {
    for (; *names; ++names) {
        if (strcasecmp(name, *names) == 0) return 1;
    }
    return 0;
}

/* For the kernels of small_blas.h: a user who chooses older kernels gets older ones there, too. */
enum VoxamVectors voxam_blas_vectors(void) {
    static const char* const avx512[] = {"SkylakeX", "Cooperlake", "SapphireRapids", NULL};
    static const char* const avx2[] = {"Haswell", "Zen", NULL};
    const char* const best = bestKernels();
    const char* const chosen = voxam_blas_getenv("OPENBLAS_CORETYPE");
    if (!best || !chosen) return VOXAM_NO_VECTORS;
    if (isOneOf(best, avx512) && isOneOf(chosen, avx512)) return VOXAM_AVX512;
    return isOneOf(chosen, avx512) || isOneOf(chosen, avx2) ? VOXAM_AVX2 : VOXAM_NO_VECTORS;
}

const char* voxam_blas_getenv(const char* name) {
    const char* const value = getenv(name);
    if (strcmp(name, "OPENBLAS_CORETYPE") != 0) return value;
    return value && *value ? value : bestKernels();
}
