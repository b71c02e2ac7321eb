/* What the library knows of the BLAS that is linked into it. */
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(hidden)

/** What OpenBLAS calls instead of getenv(): the environment, but the best kernels for the processor
 *  where no user chose any by OPENBLAS_CORETYPE. */
const char* voxam_blas_getenv(const char* name);

enum VoxamVectors { VOXAM_NO_VECTORS, VOXAM_AVX2, VOXAM_AVX512 };

/** The vectors that the kernels of OpenBLAS use, none if they are older than AVX2. */
enum VoxamVectors voxam_blas_vectors(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
