#include "embedded_blas.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

// Of OpenBLAS: the name of the kernels that it uses.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" char* gotoblas_corename();

namespace {

// Runs without OPENBLAS_CORETYPE, with it empty, and with names of kernels.
TEST(EmbeddedBlasTest, UsesTheKernelsOfTheUserOrElseTheBest) {
    const bool hasAvx512 = __builtin_cpu_supports("avx512f") &&
                           __builtin_cpu_supports("avx512dq") &&
                           __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl");
    const bool hasAvx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    if (!hasAvx2) GTEST_SKIP() << "OpenBLAS chooses the kernels of older processors itself";
    const char* const user = std::getenv("OPENBLAS_CORETYPE");
    const std::string expected = user && *user ? user : hasAvx512 ? "SkylakeX" : "Haswell";
    EXPECT_EQ(gotoblas_corename(), expected);
    EXPECT_EQ(voxam_blas_vectors(), expected == "SkylakeX"  ? VOXAM_AVX512
                                    : expected == "Haswell" ? VOXAM_AVX2
                                                            : VOXAM_NO_VECTORS);
}

}  // namespace
