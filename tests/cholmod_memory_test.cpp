// When CHOLMOD, which has an allocator of its own, gets no more memory. Each test lets an operation
// fail at its first allocation, at its second, and so on until it needs no more.
#include <cholmod.h>
#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <vector>

#include "ConeFilter.h"
#include "SolverGame.h"
#include "config_singleton.h"
#include "factor.h"
#include "support/answers.h"
#include "support/matrices.h"
#include "support/solver_app_inspector.h"
#include "support/until_enough.h"

namespace {

using kmat::DenseMatrix;
using kmat::SparseMatrix;
using test::Entries;
using test::Matrix;
using test::untilEnough;

// How many more allocations succeed. Below 0 all of them.
long allowed = -1;
bool failsOnce = false;  // and whether those after the next one succeed again

bool isAllowed() {
    if (allowed > 0) --allowed;
    if (allowed != 0) return true;
    if (failsOnce) allowed = -1;
    return false;
}

void* scarceMalloc(std::size_t size) { return isAllowed() ? std::malloc(size) : nullptr; }
void* scarceCalloc(std::size_t n, std::size_t size) {
    return isAllowed() ? std::calloc(n, size) : nullptr;
}
void* scarceRealloc(void* p, std::size_t size) {
    return isAllowed() ? std::realloc(p, size) : nullptr;
}

class CholmodMemoryTest : public testing::Test {
protected:
    CholmodMemoryTest() {
        SuiteSparse_config.malloc_func = scarceMalloc;
        SuiteSparse_config.calloc_func = scarceCalloc;
        SuiteSparse_config.realloc_func = scarceRealloc;
        common->print = 0;
    }
    ~CholmodMemoryTest() override {
        SuiteSparse_config.malloc_func = std::malloc;
        SuiteSparse_config.calloc_func = std::calloc;
        SuiteSparse_config.realloc_func = std::realloc;
        common->print = print;
        failsOnce = false;
    }

    // Runs the operation with room for that many allocations.
    template <typename Operation>
    static void limited(long count, const Operation& operation) {
        allowed = count + 1;
        operation();
        allowed = -1;
    }
    // Whether there is room for more allocations than the operation has made.
    static bool hasMore() { return allowed > 0; }

    cholmod_common* common = kmat::ConfigSingleton::getCommonPtr();
    int print = common->print;
};

TEST_F(CholmodMemoryTest, AListThatCannotGrowKeepsWhatItHolds) {
    untilEnough([](long count) {
        SparseMatrix m(3, 3, false, 1);
        m.getValue(0, 0) += 1.0;
        limited(count, [&] { m.getValue(1, 1) += 2.0; });
        const bool enough = m.getNumberOfElements() == 2;
        m.getValue(2, 2) += 3.0;
        EXPECT_EQ(test::stored(m), enough ? (Entries{{0, 0, 1.0}, {1, 1, 2.0}, {2, 2, 3.0}})
                                          : (Entries{{0, 0, 1.0}, {2, 2, 3.0}}));
        return enough;
    });
}

TEST_F(CholmodMemoryTest, AnAppendedListIsTakenWholeOrNotAtAll) {
    SparseMatrix other(3, 3, false, 8);
    for (unsigned i = 0; i < 6; ++i) other.getValue(i % 3, i / 3) += 1.0;
    untilEnough([&](long count) {
        SparseMatrix m(3, 3, false, 1);
        m.getValue(2, 2) += 3.0;
        limited(count, [&] { m.append(other); });
        const bool enough = m.getNumberOfElements() == 7;
        EXPECT_TRUE(enough || test::stored(m) == (Entries{{2, 2, 3.0}})) << count;
        return enough;
    });
}

TEST_F(CholmodMemoryTest, AResultIsRightOrEmpty) {
    test::Random random;
    const Matrix a(5, 5, random);
    const SparseMatrix A = test::built(a);
    const DenseMatrix x = test::dense(a);
    const auto check = [&](const char* what, const Matrix& expected, const auto& operation) {
        SCOPED_TRACE(what);
        untilEnough([&](long count) {
            Matrix result(0, 0);
            limited(count, [&] { result = Matrix(operation()); });
            EXPECT_TRUE(result.rows == 0 || distance(result, expected) < 1e-13) << count;
            return result.rows > 0;
        });
    };
    check("copy", a, [&] { return x.copy(); });
    check("product with a dense matrix", product(a, a), [&] { return A * x; });
    check("to dense", a, [&] { return A.toDense(); });
    check("scaled", combination(2.0, a, 0.0, a), [&] { return test::valuesOf(A * 2.0); });
    check("transposed", transposed(a), [&] { return transposed(x); });
}

TEST_F(CholmodMemoryTest, AFilterThrows) {
    const DenseMatrix field(12, 1, 1.0);
    DenseMatrix share(12, 1);
    DenseMatrix expected(12, 1);
    ConeFilter(4, 3, 1.5).applyTransposed(field, share, expected);
    untilEnough([&](long count) {
        DenseMatrix spread(12, 1, 7.0);
        bool enough = true;
        limited(count, [&] {
            try {
                const ConeFilter filter(4, 3, 1.5);
                EXPECT_EQ(filter.getNormaliser().getRows(), 12U) << count;
                filter.applyTransposed(field, share, spread);
            } catch (const std::bad_alloc&) {
                enough = false;
            }
        });
        if (enough) {
            EXPECT_EQ(Matrix(spread), Matrix(expected)) << count;
        }
        return enough;
    });
}

TEST_F(CholmodMemoryTest, AScoreIsRightOrTheWorst) {
    const auto& load = TopologyOptimizationComponentData::load;
    const test::Records loads = test::tension(4, 3, 1);
    const test::Records supports = test::slidingLeftEdge(3);
    const std::vector<float> densities(12, 1.0F);
    untilEnough([&](long count) {
        SolverGame game(4, 3, 1, 1, load(loads.data(), loads.count()),
                        load(supports.data(), supports.count()), 1);
        float score = 0.0F;
        limited(count, [&] {
            try {
                score = game.solve(densities.data(), nullptr);
            } catch (const std::bad_alloc&) {
                score = SolverGame::FAILED_OBJECTIVE;
            }
        });
        const bool enough = score != SolverGame::FAILED_OBJECTIVE;
        if (enough) {
            EXPECT_NEAR(score, 12.0F, 1e-4) << count;
        }
        EXPECT_NEAR(game.solve(densities.data(), nullptr), 12.0F, 1e-4) << count;
        return enough;
    });
}

TEST_F(CholmodMemoryTest, AnUpdateNeedsNoMemoryOfCholmod) {
    test::Settings settings = test::cantilever(6, 4);
    settings.blob = {2, 2, 1, 3, 1};
    SolverAppInspector app(6, 4, 1, 1, 0.5F, 1);
    EXPECT_EQ(test::iterate(app), test::NO_WORK);
    limited(0, [&] { test::send(settings, app); });
    EXPECT_EQ(test::iterate(app), "");
    EXPECT_EQ(app.blob.hasBlob, 1);
    EXPECT_EQ(app.blob.blobCellCount, 2);
}

// A cube of springs, for which CHOLMOD tries METIS.
SparseMatrix cube(unsigned n) {
    SparseMatrix A(n * n * n, n * n * n, true, static_cast<int>(4 * n * n * n));
    for (unsigned i = 0; i < n * n * n; ++i) {
        A.getValue(i, i) += 6.5;
        if (i % n > 0) A.getValue(i - 1, i) -= 1.0;
        if (i / n % n > 0) A.getValue(i - n, i) -= 1.0;
        if (i / n / n > 0) A.getValue(i - n * n, i) -= 1.0;
    }
    A.build();
    return A;
}

TEST_F(CholmodMemoryTest, AnOrderingThatThereIsNoMemoryForIsNotReplacedByAnother) {
    const SparseMatrix A = cube(26);
    ASSERT_TRUE(A.analyze().isInitialized());
    ASSERT_GT(common->method[2].lnz, 0) << "METIS was not tried";
    const int selected = common->selected;
    failsOnce = true;
    untilEnough([&](long count) {
        bool enough = false;
        limited(count, [&] {
            if (A.analyze().isInitialized()) {
                EXPECT_EQ(common->selected, selected) << count;
                EXPECT_GT(common->method[2].lnz, 0) << count;
            }
            enough = hasMore();
        });
        return enough;
    });
}

TEST_F(CholmodMemoryTest, AnOrderingLeavesTheHostsRandomNumbersAndSignalHandlers) {
    struct sigaction before = {};
    before.sa_flags = SA_SIGINFO | SA_RESTART;
    before.sa_sigaction = [](int, siginfo_t*, void*) {};
    struct sigaction hosts = {};
    sigaction(SIGTERM, &before, &hosts);
    std::srand(5);
    const std::array expected{std::rand(), std::rand()};
    std::srand(5);
    const int first = std::rand();
    ASSERT_TRUE(cube(26).analyze().isInitialized());
    EXPECT_EQ((std::array{first, std::rand()}), expected);
    struct sigaction after = {};
    sigaction(SIGTERM, &hosts, &after);
    EXPECT_EQ(after.sa_sigaction, before.sa_sigaction);
    EXPECT_EQ(after.sa_flags & (SA_SIGINFO | SA_RESTART | SA_RESETHAND), before.sa_flags);
}

// An iteration with a blob, and the picture that it makes.
struct Iteration {
    std::vector<float> picture;
    double compliance = 0.0;
    double change = 0.0;
    char text[64] = "";

    explicit Iteration(SolverApp& app, std::size_t pixels) : picture(pixels) {
        try {
            compliance = app.runIterationWithBlob(sizeof text, text, picture.data(), change,
                                                  nullptr, nullptr);
        } catch (const std::bad_alloc&) {
            std::strcpy(text, "std::bad_alloc");
        }
    }
};

// Width, height and refinement of a plate, and whether a single allocation fails. The larger plate
// has supernodes.
class CholmodMemoryOfPlateTest : public CholmodMemoryTest,
                                 public testing::WithParamInterface<std::array<int, 4>> {};

INSTANTIATE_TEST_SUITE_P(Plates, CholmodMemoryOfPlateTest,
                         testing::Values(std::array{6, 4, 1, 0}, std::array{12, 8, 1, 1},
                                         std::array{30, 20, 2, 0}, std::array{30, 20, 2, 1}));

TEST_P(CholmodMemoryOfPlateTest, AnIterationSaysThatItFailedAndTheNextOneSucceeds) {
    const auto& [nelx, nely, refinement, onlyOneFails] = GetParam();
    failsOnce = onlyOneFails != 0;
    const std::size_t pixels =
        std::size_t{1} * nelx * nely * refinement * refinement * refinement * refinement;
    test::Settings settings = test::cantilever(nelx, nely);
    settings.blob = {2, 2, 1, 3, 1};
    SolverApp reference(nelx, nely, refinement, refinement, 0.5F, 1);
    test::send(settings, reference);
    const Iteration expected(reference, pixels);
    EXPECT_STREQ(expected.text, "");
    untilEnough([&, nelx = nelx, nely = nely, refinement = refinement](long count) {
        SolverApp app(nelx, nely, refinement, refinement, 0.5F, 1);
        test::send(settings, app);
        std::optional<Iteration> iteration;
        bool spare = false;
        limited(count, [&] {
            iteration.emplace(app, pixels);
            spare = hasMore();
        });
        if (iteration->text[0] == '\0') {
            EXPECT_EQ(iteration->compliance, expected.compliance) << count;
            EXPECT_EQ(iteration->change, expected.change) << count;
            EXPECT_EQ(iteration->picture, expected.picture) << count;
        }
        test::send(settings, app);
        EXPECT_EQ(test::iterate(app), "") << count;
        return spare;
    });
}

}  // namespace
