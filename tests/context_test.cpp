#include <gtest/gtest.h>
#include <omp.h>

#include <cstring>

#include "config_singleton.h"
#include "factor.h"
#include "kmat_exception.h"

// Null when the BLAS is not OpenBLAS.
extern "C" {
[[gnu::weak]] int openblas_get_num_threads();
[[gnu::weak]] void openblas_set_num_threads(int count);
}

namespace {

using kmat::ConfigSingleton;
using kmat::KmatException;

// How many levels of OpenMP's regions may have a team while CHOLMOD runs. CHOLMOD that is linked in
// starts no region, so the host's number stays.
#ifdef VOXAM_CHOLMOD_EMBEDDED
constexpr int LEVELS_DURING_A_CALL = 3;
#else
constexpr int LEVELS_DURING_A_CALL = 0;
#endif

TEST(ContextTest, StartsCholmodWithItsDefaultsAndTheLayersHandler) {
    cholmod_common defaults{};
    cholmod_start(&defaults);
    for (int round = 0; round < 2; ++round) {
        const kmat::DenseMatrix outliving(3, 1, 2.0);
        const cholmod_common* common = ConfigSingleton::getCommonPtr();
        EXPECT_EQ(common, ConfigSingleton::getCommonPtr());
        EXPECT_EQ(common->error_handler, &kmat::errorHandler);
        EXPECT_EQ(common->print, defaults.print);
        EXPECT_EQ(common->supernodal, defaults.supernodal);
        EXPECT_EQ(common->final_ll, defaults.final_ll);
        EXPECT_EQ(common->nmethods, defaults.nmethods);
        for (int i = 0; i < 2; ++i) ConfigSingleton::destroy();
        EXPECT_EQ(outliving(2, 0), 2.0);
    }
    cholmod_finish(&defaults);
}

TEST(ContextTest, TakesOverAndRestartsTheHostsWorkspace) {
    auto* own = new cholmod_common;
    std::memset(own, 0xff, sizeof *own);  // starting must set every field
    for (int round = 0; round < 2; ++round) {
        ConfigSingleton::config(own);
        EXPECT_EQ(ConfigSingleton::getCommonPtr(), own);
        EXPECT_EQ(own->error_handler, nullptr);
        EXPECT_EQ(own->status, CHOLMOD_OK);
        own->error_handler = kmat::errorHandler;
        own->status = CHOLMOD_INVALID;
    }
    ConfigSingleton::destroy();
    EXPECT_EQ(ConfigSingleton::getCommonPtr()->status, CHOLMOD_OK);
}

TEST(ContextTest, KeepsTheLatestMessageAndTheLatestFailure) {
    kmat::errorHandler(-4, "file", 7, "an error");
    EXPECT_EQ(ConfigSingleton::getLastError(), "an error");
    cholmod_error(CHOLMOD_NOT_POSDEF, "file", 7, "a warning", ConfigSingleton::getCommonPtr());
    ConfigSingleton::destroy();
    EXPECT_EQ(ConfigSingleton::getLastError(), "a warning");
    EXPECT_EQ(KmatException::getLastException(), nullptr);

    for (const char* text : {"first", "second"}) KmatException::createKmatException(text);
    const std::exception* pending = KmatException::getLastException();
    ASSERT_NE(pending, nullptr);
    EXPECT_STREQ(pending->what(), "second");
    for (int i = 0; i < 2; ++i) KmatException::clearLastException();
    EXPECT_EQ(KmatException::getLastException(), nullptr);
}

struct ThreadSettings {
    int maxActiveLevels = omp_get_max_active_levels();
    int maxThreads = omp_get_max_threads();
    int blasThreads = openblas_get_num_threads ? openblas_get_num_threads() : 1;

    bool operator==(const ThreadSettings&) const = default;
};

ThreadSettings duringTheCall;

TEST(ContextTest, CholmodComputesOnOneThreadAndTheHostsSettingsComeBack) {
    const ThreadSettings original;
    omp_set_max_active_levels(3);
    if (openblas_set_num_threads) openblas_set_num_threads(2);
    omp_set_num_threads(3);
    const ThreadSettings before;
    // A missing argument makes each routine call the handler while it runs.
    ConfigSingleton::getCommonPtr()->error_handler = [](int, const char*, int, const char*) {
        duringTheCall = ThreadSettings();
    };
    for (const auto& call : {+[] { kmat::SparseMatrix(nullptr).analyze(); },
                             +[] { kmat::Factor().factorize(kmat::SparseMatrix(nullptr)); },
                             +[] { solve(kmat::Factor(), kmat::DenseMatrix(nullptr)); },
                             +[] { solve(kmat::Factor(), kmat::SparseMatrix(nullptr)); }}) {
        duringTheCall = before;
        call();
        EXPECT_EQ(duringTheCall.blasThreads, 1);
        EXPECT_EQ(duringTheCall.maxActiveLevels, LEVELS_DURING_A_CALL);
        EXPECT_EQ(ThreadSettings(), before);
    }
    if (openblas_set_num_threads) openblas_set_num_threads(original.blasThreads);
    omp_set_num_threads(original.maxThreads);
    omp_set_max_active_levels(original.maxActiveLevels);
    ConfigSingleton::destroy();
    KmatException::clearLastException();
}

}  // namespace
