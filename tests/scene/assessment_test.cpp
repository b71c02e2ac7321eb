// What a design is worth, and what a design in black and white is.
#include "checks/assessment.h"

#include "run/optimiser.h"
#include "run/records.h"
#include "run/scene_run.h"
#include "run/views.h"
#include "scene_fixture.h"

using namespace voxam;

namespace {

// A wide beam, and one on a plate above and one below the size at which the library refuses what
// floats.
class AssessmentOnPlate : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(AssessmentOnPlate, leavesOutWhatFloats) {
    const auto [width, height] = GetParam();
    const Scene scene = clampedPlate(width, height);
    Field beam(width, height);
    for (int x = 0; x < width; ++x)
        for (int y = height / 2 - 2; y < height / 2 + 2; ++y) beam.at(x, y) = 1;
    Field speckled = beam;
    speckled.at(12, 1) = 1;
    speckled.at(3, height / 2 - 3) = 1;  // attached by its edge
    Field attached = speckled;
    attached.at(12, 1) = 0;
    const Assessment found = assess(speckled, scene);
    EXPECT_TRUE(found.problems.empty());
    EXPECT_EQ(found.floating.size(), 1u);
    EXPECT_EQ(found.score.compliance, assess(attached, scene).score.compliance);
    EXPECT_LT(found.score.compliance, assess(beam, scene).score.compliance);
    EXPECT_LT(found.score.energies.at(12, 1), 1e-6);
}

INSTANTIATE_TEST_SUITE_P(Sizes, AssessmentOnPlate,
                         testing::Values(std::pair(23, 20), std::pair(24, 22), std::pair(60, 40)));

TEST(Assessment, tellsWhyThereIsNoScore) {
    const Scene scene = clampedPlate(4, 2);
    const auto problem = [&](const Field& design, const Scene& plate) {
        const Assessment found = assess(design, plate);
        EXPECT_EQ(found.problems.size(), 1u);
        return lineOf(found.problems.front());
    };
    EXPECT_EQ(problem(designOf({"###.", "###."}), scene),
              "loads[0]: acts where there is no material, at x 4, y 1");
    EXPECT_EQ(problem(designOf({"##.#", "##.#"}), scene),
              "loads[0]: acts on a part that no support holds, at x 4, y 1");
    EXPECT_EQ(problem(designOf({"....", "...."}), scene), "design: there is no material");
    Scene free = scene;
    free.supports.clear();
    EXPECT_EQ(problem(designOf({"####", "####"}), free),
              "supports: the plate is free to move: nothing is held");
}

TEST(Assessment, scoresOnAFinerGrid) {
    // A bar that is pulled evenly stretches alike however fine the grid is.
    Scene scene = clampedPlate(4, 1);
    scene.loads = {{{4, 4}, {0, 1}, 3, 0, 0}};
    scene.supports = {{{0, 0}, {0, 1}, true, false}, {{0, 0}, {0, 0}, false, true}};
    EXPECT_NEAR(assess(Field(4, 1, 1), scene).score.compliance, 4 * 9, 1e-3);
    // The share of the end nodes is that of the others, so that the pull is not quite even here.
    EXPECT_NEAR(assess(Field(16, 4, 1), scene).score.compliance, 4 * 9, 0.5);
}

TEST(DrawnDesign, keepsTheVolume) {
    const Scene scene = clampedPlate(40, 20);
    Field material(80, 40);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 80; ++x)
            material.at(x, y) = static_cast<float>((x * 37 + y * 11) % 80) / 120.0f;  // 0 to 0.66
    for (const int refinement : {1, 2}) {
        const DrawnDesign drawn = drawnDesign(material, scene, refinement);
        EXPECT_EQ(drawn.design.width, refinement * 40);
        EXPECT_NEAR(mean(drawn.design), mean(material), 0.01);
        for (const float density : drawn.design.values) EXPECT_TRUE(density == 0 || density == 1);
    }
    const DrawnDesign drawn = drawnDesign(material, scene, 2);
    for (std::size_t i = 0; i < material.values.size(); ++i)
        EXPECT_EQ(drawn.design.values[i] == 1, double(material.values[i]) >= drawn.level);
    // What is black and white stays as it is, also where cells are averaged.
    const Field ready = designOf({"##..", "##.."});
    EXPECT_EQ(drawnDesign(ready, clampedPlate(4, 2), 1).design, ready);
    EXPECT_EQ(drawnDesign(ready, clampedPlate(4, 2), 1).level, 0.5);
    EXPECT_EQ(drawnDesign(ready, clampedPlate(2, 1), 1).design, designOf({"#."}));
    EXPECT_EQ(drawnDesign(Field(4, 2, 0.4f), clampedPlate(4, 2), 1).design, Field(4, 2));
}

/// Compliances and last design of an optimisation of ten iterations.
std::pair<std::vector<double>, Field> run(Scene scene, double force) {
    scene.loads.front().fy *= force;
    Optimiser optimiser(scene);
    std::vector<double> compliances;
    for (int i = 0; i < 10; ++i) compliances.push_back(optimiser.iterate(3, false).compliance);
    return {compliances, optimiser.material()};
}

TEST(ForceUnit, makesTheDesignIndependentOfTheForce) {
    const Scene scene = clampedPlate(20, 10);
    const auto [plain, design] = run(scene, 1);
    for (const double force : {1e6, 1e-6}) {
        const auto [compliances, same] = run(scene, force);
        EXPECT_EQ(same.values, design.values);
        for (std::size_t i = 0; i < plain.size(); ++i)
            EXPECT_DOUBLE_EQ(compliances[i], plain[i] * force * force);
    }
    // Too slender for a force of 1: the library would refuse its first iteration.
    const auto slender = run(clampedPlate(400, 4), 1).first;
    EXPECT_LT(slender.back(), slender.front());
    EXPECT_GT(slender.front(), 1e7);
    Scene changing = scene;
    Change change;
    change.keys = {"loads"};
    change.settings.loads = {{{20, 20}, {5, 5}, -40, 3, 0}};
    changing.timeline = {change};
    EXPECT_EQ(forceUnit(changing), 40);
    changing.loads.clear();
    changing.timeline.clear();
    EXPECT_EQ(forceUnit(changing), 1);
}

/// A plate under two load cases of these weights, whose forces are multiplied by the factors.
Scene weightedPlate(const std::vector<double>& weights, const std::vector<double>& factors) {
    Scene scene = clampedPlate(16, 10);
    scene.loadCases = {{"wind", weights[0]}, {"", weights[1]}};
    scene.loadCasesInUse = {0, 1};
    scene.loads = {{{16, 16}, {3, 6}, 0, 0.7 * factors[0], 0},
                   {{10, 10}, {0, 0}, 1.3 * factors[1], 0.4 * factors[1], 1}};
    return scene;
}

TEST(LoadCaseWeights, areSquaresOfFactorsOfForces) {
    const Scene plain = weightedPlate({1, 1}, {1, 1});
    const Scene weighted = weightedPlate({4, 0.25}, {1, 1});
    const Scene scaled = weightedPlate({1, 1}, {2, 0.5});
    EXPECT_EQ(run(weighted, 1), run(scaled, 1));
    EXPECT_NE(run(weighted, 1), run(plain, 1));
    // An edit in the middle of a run reaches the library, too.
    const auto edited = [&](const Scene& later) {
        SceneRun running(std::make_shared<const Scene>(plain));
        for (int i = 0; i < 3; ++i) running.iterate(false);
        running.edit(std::make_shared<const Scene>(later));
        const double compliance = running.iterate(false).record.compliance;
        return std::pair(compliance, running.material());
    };
    EXPECT_EQ(edited(weighted), edited(scaled));
    Scene renamed = weighted;
    renamed.loadCases[0].name.clear();
    EXPECT_TRUE(hasSameProblem(weighted, renamed));
    EXPECT_FALSE(hasSameProblem(weighted, plain));
}

TEST(LoadCaseWeights, weightSumsAndNothingElse) {
    const Scene weighted = weightedPlate({3, 0.1}, {1, 1});
    const Field design = run(weighted, 1).second;
    const Assessment found = assess(design, weighted, true);
    const Analysis analysis = analyse(design, weightedPlate({1, 1}, {1, 1}), true);
    const auto complianceOf = [&](std::size_t i) { return analysis.states[i].compliance; };
    EXPECT_EQ(found.score.compliance, 3 * complianceOf(0) + 0.1 * complianceOf(1));
    EXPECT_NEAR(sum(found.score.energies), found.score.compliance, 1e-5 * found.score.compliance);
    const auto energyIn = [&](std::optional<int> loadCase) {
        return sum(*viewOf({View::ENERGY, loadCase}, found.states, weighted).values);
    };
    EXPECT_NEAR(energyIn({}), found.score.compliance, 1e-5 * found.score.compliance);
    for (int i = 0; i < 2; ++i) {
        const double compliance = complianceOf(static_cast<std::size_t>(i));
        EXPECT_EQ(found.states[static_cast<std::size_t>(i)].compliance, compliance);
        EXPECT_NEAR(energyIn(i), compliance, 1e-5 * compliance);
    }
}

}  // namespace
