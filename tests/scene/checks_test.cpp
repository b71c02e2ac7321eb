// What is said of a scene before a run, and of a result after it.
#include "checks/checks.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include "checks/available_memory.h"
#include "checks/memory_need.h"
#include "scene_fixture.h"

using namespace voxam;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> before(const Scene& scene) {
    return linesOf(checkBeforeOptimisation(scene));
}

Area rectangle(int x0, int x1, int y0, int y1) {
    Area area;
    for (int x = x0; x <= x1; ++x)
        for (int y = y0; y <= y1; ++y) area.cells.push_back({x, y});
    return area;
}

TEST(ChecksBefore, tellNothingOfASoundScene) {
    EXPECT_THAT(before(clampedPlate(12, 6)), IsEmpty());
    EXPECT_THAT(linesOf(checkBeforeScore(clampedPlate(12, 6))), IsEmpty());
}

TEST(ChecksBefore, tellOfForcesThatDoNoWork) {
    Scene scene = clampedPlate(12, 6);
    scene.loads = {{{12, 12}, {3, 3}, 0, 0, 0}};
    EXPECT_THAT(before(scene), ElementsAre("error: loads: there is no force at all"));
    EXPECT_THAT(linesOf(checkBeforeScore(scene)), ElementsAre(HasSubstr("no force at all")));

    scene.loadCases.resize(2);
    scene.loads = {{{12, 12}, {3, 3}, 0, 1, 1}};
    EXPECT_THAT(before(scene), ElementsAre("error: loadCasesInUse: none of them has a force"));
    EXPECT_THAT(linesOf(checkBeforeScore(scene)),
                ElementsAre("error: loadCasesInUse: none of them has a force"));

    scene.loadCasesInUse = {0, 1};
    scene.supports.push_back({{12, 12}, {0, 6}, false, true});
    EXPECT_THAT(before(scene), ElementsAre(HasSubstr("loads: every force acts where a support")));
    EXPECT_EQ(checkBeforeOptimisation(scene).front().place, (Place{true, {12, 12}, {3, 3}}));
    scene.loads.push_back({{12, 12}, {3, 3}, 1, 0, 0});
    EXPECT_THAT(before(scene),
                ElementsAre(HasSubstr("warning: loads: every force of load case 1 acts where")));
    scene.loads.push_back({{12, 12}, {3, 3}, 1, 0, 1});
    EXPECT_THAT(before(scene), IsEmpty());
}

TEST(ChecksBefore, tellOfForcesThatComeToNothing) {
    Scene scene = clampedPlate(12, 6);
    scene.loads = {{{10, 12}, {3, 3}, 0, 0.3, 0}, {{10, 12}, {3, 3}, 0, -0.3, 0}};
    EXPECT_THAT(
        before(scene),
        ElementsAre("error: loads: every force is cancelled by others at its nodes; nothing "
                    "is left to carry"));
    scene.loads.back().x = {9, 11};  // meets the other one at two of three nodes
    EXPECT_THAT(before(scene), IsEmpty());
    scene.loads = {{{12, 12}, {3, 3}, 0, 1e-10, 0}};
    EXPECT_THAT(before(scene), ElementsAre(HasSubstr("is 0.0000000001, expected at least")));
}

TEST(ChecksBefore, tellOfLoadsThatPassiveVoidCutsOff) {
    Scene scene = clampedPlate(12, 6);
    scene.passive.voids = rectangle(5, 6, 0, 5);
    EXPECT_THAT(before(scene),
                ElementsAre("error: loads[0]: passive.void separates it from every support"));
    scene.passive.voids = rectangle(5, 6, 1, 5);
    EXPECT_THAT(before(scene), IsEmpty());
}

TEST(ChecksBefore, tellHowThePlateIsFree) {
    Scene scene = clampedPlate(12, 6);
    const auto told = [&](const std::vector<Support>& supports) {
        scene.supports = supports;
        const auto lines = before(scene);
        return lines.empty() ? "" : lines.front();
    };
    const std::string free = "error: supports: the plate is free to ";
    EXPECT_EQ(told({}), free + "move: nothing is held");
    EXPECT_EQ(told({{{0, 0}, {0, 6}, true, false}}), free + "move along y: nothing is held in y");
    EXPECT_EQ(told({{{0, 12}, {0, 0}, false, true}}), free + "move along x: nothing is held in x");
    EXPECT_EQ(told({{{0, 0}, {0, 0}, true, true}}),
              free + "turn: hold x in two rows of nodes, or y in two columns");
    EXPECT_EQ(told({{{0, 0}, {0, 0}, true, true}, {{5, 5}, {0, 0}, true, false}}).find(free), 0u);
    EXPECT_EQ(told({{{0, 0}, {0, 0}, true, true}, {{5, 5}, {0, 0}, false, true}}), "");
    EXPECT_EQ(told({{{0, 0}, {0, 1}, true, false}, {{3, 3}, {3, 3}, false, true}}), "");
}

TEST(ChecksBefore, tellOfLoadsAndSupportsInsidePassiveVoid) {
    Scene scene = clampedPlate(12, 6);
    scene.volumeFraction = 0.3;
    scene.passive.voids = rectangle(10, 11, 0, 5);
    scene.supports.push_back({{11, 12}, {0, 0}, true, true});
    EXPECT_THAT(
        before(scene),
        ElementsAre("error: loads[0]: node x 12, y 3 lies inside the elements that passive.void "
                    "keeps void",
                    "error: supports[1]: node x 11, y 0 lies inside the elements that "
                    "passive.void keeps void"));
    scene.loads.front().x = {10, 10};  // at the rim of the void
    scene.supports.pop_back();
    EXPECT_THAT(before(scene), IsEmpty());
}

TEST(ChecksBefore, tellOfVolumesThatCannotBe) {
    Scene scene = clampedPlate(12, 6);
    scene.passive.solids = rectangle(0, 5, 0, 2);
    scene.passive.secondSolids = rectangle(0, 5, 3, 5);
    EXPECT_THAT(before(scene), IsEmpty());  // exactly half
    scene.volumeFraction = 0.49;
    EXPECT_THAT(before(scene), ElementsAre("error: passive: the solid elements are 50.0 % of the "
                                           "plate, more than the volumeFraction 0.49"));
    scene.passive = {};
    scene.passive.voids = rectangle(2, 10, 0, 0);
    scene.volumeFraction = 0.9;
    EXPECT_THAT(before(scene), ElementsAre(HasSubstr("leave 87.5 % of the plate, less than")));
    // Twelve elements from the load to the supports, with material for 24 and for 21.6 of them.
    scene = clampedPlate(12, 12);
    scene.volumeFraction = 1.0 / 6;
    EXPECT_THAT(before(scene), IsEmpty());
    scene.volumeFraction = 0.15;
    EXPECT_THAT(before(scene), ElementsAre(HasSubstr("enough for a bar 1.8 elements wide")));
    scene.supports.push_back({{6, 6}, {0, 0}, false, true});  // nearer
    EXPECT_THAT(before(scene), IsEmpty());
}

TEST(ChecksBefore, warnOfSubdivisionsThatAreTooFine) {
    Scene scene = clampedPlate(12, 6);
    scene.subdivision = 4;
    EXPECT_THAT(before(scene), IsEmpty());
    scene.subdivision = 5;
    EXPECT_THAT(before(scene), ElementsAre(HasSubstr("warning: subdivision: 5 is above 4: ")));
    scene.subdivision = 4;
    scene.volumeFraction = 0.24;
    EXPECT_THAT(before(scene),
                ElementsAre(HasSubstr("4 is above 3 (below a volumeFraction of 0.25): ")));
}

TEST(ChecksBefore, refuseWhatTheMachineCannotHold) {
    Scene scene = clampedPlate(50, 50);
    scene.meshFactor = 16;
    const MemoryNeed need = memoryNeed(scene);
    EXPECT_GT(need.bytes, 1e9);
    EXPECT_LT(need.bytes, 4e9);
    EXPECT_EQ(need.key, "meshFactor");
    EXPECT_LT(memoryNeed(clampedPlate(60, 40)).bytes, 1e8);
    EXPECT_GT(availableMemory(), 1e8);
    scene.width = scene.height = 2000;  // far beyond what the reader takes
    EXPECT_THAT(before(scene), ElementsAre(HasSubstr("error: meshFactor: needs about ")));
}

TEST(ChecksBefore, warnOfLoadsOverFreeEdges) {
    Scene scene = clampedPlate(12, 6);
    scene.volumeFraction = 0.4;
    scene.loads = {{{0, 12}, {0, 0}, 0, 1, 0}};
    EXPECT_THAT(before(scene),
                ElementsAre("warning: loads[0]: some of its nodes may get no material; keep the "
                            "elements at this load solid: \"passive\": {\"solid\": [{\"x\": "
                            "[0, 11], \"y\": 0}]}"));
    scene.passive.solids = rectangle(0, 11, 0, 0);
    EXPECT_THAT(before(scene), IsEmpty());
    scene.passive = {};
    scene.loads = {{{8, 12}, {0, 0}, 0, 1, 0},   // a third of the edge
                   {{0, 0}, {0, 6}, 0, 1, 0},    // on supports
                   {{0, 12}, {3, 3}, 0, 1, 0}};  // inside the plate
    EXPECT_THAT(before(scene), IsEmpty());
}

// A container that sees its own group as the root, in both versions of cgroups.
TEST(AvailableMemory, isWhatTheCgroupLeaves) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("voxam-cgroups-" + std::to_string(getpid()));
    const auto write = [&](const char* name, const char* text) {
        std::filesystem::create_directories((folder / name).parent_path());
        std::ofstream(folder / name) << text;
    };
    const auto available = [&] { return availableMemory(folder, folder / "cgroup"); };
    EXPECT_EQ(available(), std::numeric_limits<double>::infinity());
    write("meminfo", "MemFree: 1 kB\nMemAvailable:   2000000 kB\n");
    EXPECT_EQ(available(), 2000000.0 * 1024);
    write("self/cgroup", "1:cpu:/a\n0::/host/group\n");
    write("cgroup/memory.max", "max\n");
    EXPECT_EQ(available(), 2000000.0 * 1024);
    write("cgroup/memory.max", "400000000\n");
    write("cgroup/memory.current", "300000000\n");
    write("cgroup/memory.stat", "anon 5\ninactive_file 50000000\n");
    EXPECT_EQ(available(), 150e6);
    write("cgroup/host/group/memory.max", "100000000\n");
    EXPECT_EQ(available(), 100e6);
    write("self/cgroup", "4:cpu,memory:/group\n0::/\n");
    write("cgroup/memory/group/memory.limit_in_bytes", "90000000\n");
    write("cgroup/memory/group/memory.usage_in_bytes", "99000000\n");
    EXPECT_EQ(available(), 0);
    std::filesystem::remove_all(folder);
}

TEST(ChecksBefore, warnOfWhatTheTimelineBringsAbout) {
    Scene scene = clampedPlate(12, 6);
    Change change;
    change.iteration = 5;
    change.keys = {"supports"};
    scene.timeline = {change};
    change.iteration = 7;
    change.keys = {"penalty"};
    scene.timeline.push_back(change);
    EXPECT_THAT(before(scene), ElementsAre("warning: timeline[0]: supports: the plate is free to "
                                           "move: nothing is held"));
}

TEST(ChecksAfter, warnOfDesignsThatAreNotWhatTheySeem) {
    const Scene scene = clampedPlate(4, 2);
    RunResult result;
    result.compliance = 10;
    result.volume = 0.5;
    result.drawn = designOf({"####", "...."});
    result.assessment.score.compliance = 11.4;
    EXPECT_THAT(linesOf(checkResult(result, scene)), IsEmpty());
    result.assessment.score.compliance = 11.6;
    EXPECT_THAT(linesOf(checkResult(result, scene)),
                ElementsAre("warning: compliance: as drawn it is 11.6, 1.16 times the 10 while "
                            "optimising; set subdivision and meshFactor to 2, or take a finer "
                            "grid or more iterations"));
    // Of a finer grid, which bends more around the load in a solid plate as well.
    result.drawn = Field(16, 8, 1);
    for (int y = 4; y < 8; ++y)
        for (int x = 0; x < 16; ++x) result.drawn.at(x, y) = 0;
    EXPECT_THAT(linesOf(checkResult(result, scene)), IsEmpty());
    result.drawn = designOf({"####", "...."});
    result.assessment.score.compliance = 9;
    result.volume = 0.46;
    EXPECT_THAT(linesOf(checkResult(result, scene)),
                ElementsAre(HasSubstr(
                    "volumeFraction: the design has 46.0 % instead of 50.0 %; take a finer grid")));
    result.volume = 0.5;
    result.drawn = designOf({"####", "#..."});
    EXPECT_THAT(linesOf(checkResult(result, scene)), ElementsAre(HasSubstr("62.5 % as drawn")));
    result.drawn = designOf({"##.#", "#..."});
    result.assessment.floating = {{{{3, 0}}}};
    result.assessment.problems = {{Finding::ERROR, "loads[0]", "pulls somewhere", std::nullopt}};
    EXPECT_THAT(
        linesOf(checkResult(result, scene)),
        ElementsAre("warning: loads[0]: as drawn, pulls somewhere",
                    "warning: design: as drawn, no support holds 1 part of it, 1 element "
                    "of the grid; the first at x 3, y 0; take a finer grid or more volume"));
}

TEST(ChecksAfter, offerThePassiveElementsThatTheReaderTakes) {
    Scene scene = clampedPlate(4, 2);
    RunResult result{10, 0.5, designOf({"####", "...."}), {}};
    result.assessment.problems = {
        {Finding::ERROR, "loads[0]", "acts", Place{true, {0, 4}, {2, 2}}}};
    const auto told = [&] { return checkResult(result, scene).front().text; };
    const std::string advice = "as drawn, acts; keep the elements at this load solid: ";
    EXPECT_EQ(told(), advice + R"("passive": {"solid": [{"x": [0, 3], "y": 1}]})");
    scene.meshFactor = 6;  // which the reader refuses beside passive elements
    EXPECT_THAT(told(), testing::EndsWith("}]}, and set subdivision and meshFactor to 2"));
    scene.subdivision = 3;
    EXPECT_THAT(told(), testing::EndsWith("}]}, and set meshFactor to 3"));
    scene.meshFactor = 3;
    scene.passive.voids = rectangle(0, 0, 0, 0);
    EXPECT_EQ(told(), advice + R"(add {"x": [0, 3], "y": 1} to passive.solid)");
}

}  // namespace
