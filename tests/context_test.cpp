#include <gtest/gtest.h>
#include <omp.h>

#include <cstring>

#include "config_singleton.h"
#include "factor.h"
#include "kmat_exception.h"

namespace {

using kmat::ConfigSingleton;
using kmat::KmatException;

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

int levelsDuringTheCall;

TEST(ContextTest, CholmodRunsWithoutATeamAndTheHostsLevelComesBack) {
    const int before = omp_get_max_active_levels();
    omp_set_max_active_levels(3);
    // A missing argument makes each routine call the handler while it runs.
    ConfigSingleton::getCommonPtr()->error_handler = [](int, const char*, int, const char*) {
        levelsDuringTheCall = omp_get_max_active_levels();
    };
    for (const auto& call : {+[] { kmat::SparseMatrix(nullptr).analyze(); },
                             +[] { kmat::Factor().factorize(kmat::SparseMatrix(nullptr)); },
                             +[] { solve(kmat::Factor(), kmat::DenseMatrix(nullptr)); },
                             +[] { solve(kmat::Factor(), kmat::SparseMatrix(nullptr)); }}) {
        levelsDuringTheCall = -1;
        call();
        EXPECT_EQ(levelsDuringTheCall, 0);
        EXPECT_EQ(omp_get_max_active_levels(), 3);
    }
    omp_set_max_active_levels(before);
    ConfigSingleton::destroy();
    KmatException::clearLastException();
}

}  // namespace
