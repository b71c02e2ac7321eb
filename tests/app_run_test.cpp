// Whole runs against an independent optimiser.
#include <gtest/gtest.h>

#include "SolverApp.h"
#include "support/reference_optimiser.h"
#include "support/solver_app_inspector.h"

namespace {

using test::Settings;

struct Scenario {
    const char* name;
    unsigned nelx, nely, subdivision, meshFactor;
    std::vector<short> passive = {0, 0, 0};
    std::vector<short> blob = {0};
    std::vector<char> loadCases = {0};
    float volumeFraction = 0.5F;
    double penalty = 3.0;
    int iterations = 10;
};

void PrintTo(const Scenario& run, std::ostream* out) { *out << run.name; }

std::string nameOf(const testing::TestParamInfo<Scenario>& info) { return info.param.name; }

std::vector<short> block(int left, int right, int top, int bottom) {
    std::vector<short> cells = {0};
    test::addBlock(cells, 0, left, right, top, bottom);
    return cells;
}

const Scenario SCENARIOS[] = {
    {"plain", 9, 5, 1, 1, {0, 0, 0}, {0}, {0}, 0.5F, 3.0, 30},
    {"subdivided", 5, 3, 2, 2},
    {"subdivided_by_three", 3, 2, 3, 3},
    {"subdivided_and_tall", 3, 9, 2, 1},
    {"coarser_mesh", 5, 3, 2, 1, {1, 1, 1, 2, 1, 4, 0, 0, 2}, {1, 1, 1}},
    {"finer_mesh", 6, 4, 1, 2, {1, 0, 0, 2, 1}},
    {"two_load_cases", 7, 4, 1, 1, {0, 0, 0}, {0}, {1, 0}},
    {"only_the_second_load_case", 7, 4, 1, 1, {0, 0, 0}, {0}, {1}},
    {"passive_cells", 8, 5, 1, 1, {3, 2, 1, 2, 1, 2, 2, 3, 3, 6, 0, 3, 3, 1, 4}},
    {"another_volume", 8, 5, 1, 1, {0, 0, 0}, {0}, {0}, 0.8F},
    {"less_volume", 8, 5, 1, 1, {0, 0, 0}, {0}, {0}, 0.35F},
    {"penalty_of_one", 8, 5, 1, 1, {0, 0, 0}, {0}, {0}, 0.5F, 1.0},
    {"blob", 11, 8, 1, 1, {0, 0, 0}, block(3, 6, 2, 6), {0}, 0.5F, 3.0, 20},
    {"large_blob", 18, 14, 1, 1, {0, 0, 0}, block(3, 13, 2, 11), {0}, 0.4F, 3.0, 12},
    {"blob_and_passive_cells", 11, 8, 1, 1, {2, 1, 1, 3, 1, 7, 3, 6, 2, 4, 6}, block(3, 6, 2, 6)},
    {"subdivided_blob", 6, 5, 2, 2, {0, 1, 0, 5, 4}, block(2, 4, 1, 4)}};

class AppRunTest : public testing::TestWithParam<Scenario> {
protected:
    const Scenario& run = GetParam();
    SolverApp app{run.nelx, run.nely, run.subdivision, run.meshFactor, 0.5F, 2};
    test::ReferenceOptimiser reference{run.nelx, run.nely, run.subdivision, run.meshFactor, 0.5F};
    const bool withBlob = run.blob[0] > 0;

    // Loads without symmetry, so that no two elements are of the same use.
    Settings settings() const {
        Settings s = test::cantilever(static_cast<int>(run.nelx), static_cast<int>(run.nely));
        const auto right = static_cast<float>(run.nelx);
        s.loads.add(right, 0, 0.3F, -0.2F).add(right - 1, 0, 0.4F, 0.5F, 1);
        s.passive = run.passive;
        s.blob = run.blob;
        s.loadCases = run.loadCases;
        s.volumeFraction = run.volumeFraction;
        return s;
    }

    void update(const Settings& s) {
        test::send(s, app);
        reference.update(s);
    }

    void iterateBoth() {
        const unsigned refinement = run.subdivision * run.meshFactor;
        std::vector<float> picture(std::size_t{run.nelx} * run.nely * refinement * refinement);
        std::vector<int> blob(std::size_t{run.nelx} * run.nely);
        char text[40];
        double change = 0.0;
        app.setPenalty(run.penalty);
        const double compliance =
            withBlob ? app.runIterationWithBlob(sizeof text, text, picture.data(), change, nullptr,
                                                blob.data())
                     : app.runIteration(sizeof text, text, picture.data(), change, nullptr);
        const auto expected =
            withBlob ? reference.iterateWithBlob(run.penalty) : reference.iterate(run.penalty);
        ASSERT_STREQ(text, "");
        EXPECT_NEAR(compliance, expected.compliance, 1e-7 * expected.compliance);
        EXPECT_NEAR(change, expected.change, 1e-7);
        for (std::size_t i = 0; i < picture.size(); ++i) {
            EXPECT_NEAR(picture[i], expected.picture[i], 1e-6) << i;
        }
        if (withBlob) {
            EXPECT_EQ(blob, reference.blob());
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Plates, AppRunTest, testing::ValuesIn(SCENARIOS), nameOf);

TEST_P(AppRunTest, FollowsTheReference) {
    update(settings());
    for (int i = 1; i <= run.iterations && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        iterateBoth();
    }
}

TEST_P(AppRunTest, FollowsTheReferenceThroughNewSettings) {
    update(settings());
    for (int i = 1; i <= 4; ++i) iterateBoth();
    Settings changed = settings();
    changed.loads.add(2, static_cast<float>(run.nely), 0.25F, 0.5F);
    changed.passive = {0, 1, 0, 0, 0};
    changed.volumeFraction = 0.45F;
    if (withBlob) changed.blob = {2, 1, 1, 2, 1};
    update(changed);
    for (int i = 5; i <= 10 && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        iterateBoth();
    }
}

}  // namespace
