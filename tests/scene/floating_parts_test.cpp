// Which material the supports hold, and which hangs on nothing.
#include "checks/assessment.h"
#include "scene_fixture.h"

using namespace voxam;

namespace {

std::vector<FloatingPart> partsOf(const Field& design, const Scene& scene) {
    return assess(design, scene).floating;
}

std::vector<Cells> cellsOfParts(const Field& design, const Scene& scene) {
    std::vector<Cells> result;
    for (const FloatingPart& part : partsOf(design, scene)) result.push_back(part.cells);
    return result;
}

/// A scene of the size of a drawing whose supports are what the test says.
Scene sceneFor(const Field& design, const std::vector<Support>& supports) {
    Scene scene = clampedPlate(design.width, design.height);
    scene.supports = supports;
    return scene;
}

Support pin(int x, int y) { return {{x, x}, {y, y}, true, true}; }
Support rollerOnX(int x, int y) { return {{x, x}, {y, y}, false, true}; }

TEST(FloatingParts, areWhatNothingJoinsToASupport) {
    const Field design = designOf({"##....#.",  //
                                   "##..##..",  //
                                   "......##",  //
                                   "........"});
    // The pieces at the right touch at corners, so that they are one part.
    EXPECT_EQ(cellsOfParts(design, clampedPlate(8, 4)),
              (std::vector<Cells>{{{6, 0}, {4, 1}, {5, 1}, {6, 2}, {7, 2}}}));
    EXPECT_EQ(describe(partsOf(design, clampedPlate(8, 4))),
              "no support holds 1 part of it, 5 elements of the grid; the first at x 6, y 0");
    EXPECT_EQ(mean(without(design, partsOf(design, clampedPlate(8, 4)))), 4 / 32.0);
}

TEST(FloatingParts, turnAboutASingleCornerButNotAboutTwo) {
    const Scene scene = clampedPlate(5, 3);
    EXPECT_EQ(cellsOfParts(designOf({"##...",  //
                                     "..#..",  //
                                     "....."}),
                           scene),
              (std::vector<Cells>{{{2, 1}}}));
    EXPECT_TRUE(cellsOfParts(designOf({"##...",  //
                                       "..##.",  //
                                       "##..."}),
                             scene)
                    .empty());
}

TEST(FloatingParts, standOnTwoPinsOrOnAPinAndARollerButNotOnOnePin) {
    const Field bar = designOf({"....", ".##.", "...."});
    EXPECT_TRUE(cellsOfParts(bar, sceneFor(bar, {pin(1, 1), pin(3, 1)})).empty());
    EXPECT_TRUE(cellsOfParts(bar, sceneFor(bar, {pin(1, 1), rollerOnX(3, 1)})).empty());
    EXPECT_EQ(cellsOfParts(bar, sceneFor(bar, {pin(1, 1), rollerOnX(0, 2)})).size(), 1u);
    EXPECT_EQ(cellsOfParts(bar, sceneFor(bar, {pin(0, 0), pin(4, 3)})).size(), 1u);  // in the void
}

TEST(FloatingParts, areNotTheBarsOfATriangle) {
    // Three bars joined at corners, none of them held by itself: the upper two stand on a pin each.
    const Field frame = designOf({"..##..",  //
                                  ".#..#.",  //
                                  ".#..#.",  //
                                  ".#..#.",  //
                                  "......"});
    const auto held = [&](const std::vector<Support>& supports) {
        return cellsOfParts(frame, sceneFor(frame, supports)).empty();
    };
    EXPECT_FALSE(held({pin(1, 4), pin(5, 4)}));  // three bars on two pins fold up
    EXPECT_TRUE(held({pin(1, 4), pin(5, 4), {{2, 2}, {0, 0}, true, false}}));
    EXPECT_TRUE(held({pin(1, 4), pin(2, 4), pin(5, 4)}));
}

TEST(FloatingParts, areFoundOnAFinerGridThanTheScenes) {
    const Field design = designOf({"####....",  //
                                   "####..#.",  //
                                   "........",  //
                                   "........"});
    EXPECT_EQ(cellsOfParts(design, clampedPlate(4, 2)), (std::vector<Cells>{{{6, 1}}}));
    EXPECT_EQ(describe(partsOf(design, clampedPlate(4, 2))),
              "no support holds 1 part of it, 0.25 elements of the grid; the first at x 3, y 0.5");
    Scene scene = clampedPlate(4, 2);
    scene.loads = {
        {{0, 4}, {1, 1}, 0, 1, 0}};  // the first of its nodes without material is between
    EXPECT_EQ(linesOf(findLooseLoads(design, partsOf(design, scene), scene)),
              (std::vector<std::string>{
                  "error: loads[0]: acts where there is no material, at x 2.5, y 1"}));
}

TEST(FloatingParts, carryNoLoads) {
    const Field design = designOf({"###.#",  //
                                   "###.#",  //
                                   "###.."});
    Scene scene = clampedPlate(5, 3);
    scene.loads = {{{3, 3}, {0, 3}, 1, 0, 0},   // on held material
                   {{4, 4}, {0, 1}, 1, 0, 0},   // on the part at the right
                   {{2, 5}, {3, 3}, 0, 1, 0},   // beyond the material at its right end
                   {{5, 5}, {3, 3}, 0, 0, 0},   // no force
                   {{0, 0}, {3, 3}, 5, 5, 0}};  // on a support
    const auto floating = partsOf(design, scene);
    EXPECT_EQ(linesOf(findLooseLoads(design, floating, scene)),
              (std::vector<std::string>{
                  "error: loads[1]: acts on a part that no support holds, at x 4, y 0",
                  "error: loads[2]: acts where there is no material, at x 4, y 3"}));
    const Field hinged = designOf({"###..",  //
                                   "...##"});
    Scene turning = clampedPlate(5, 2);
    turning.loads = {{{5, 5}, {2, 2}, 0, 1, 0}};
    EXPECT_EQ(linesOf(findLooseLoads(hinged, partsOf(hinged, turning), turning)),
              (std::vector<std::string>{
                  "error: loads[0]: acts on a part that can turn about the corner x 3, y 1; join "
                  "it along an edge; the load is at x 5, y 2"}));
    scene.supports.push_back({{4, 5}, {3, 3}, false, true});  // the force along y is held now
    EXPECT_EQ(findLooseLoads(design, floating, scene).size(), 1u);
}

}  // namespace
