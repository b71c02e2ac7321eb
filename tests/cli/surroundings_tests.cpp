// What the program does in terminals, pipes and places that it did not choose, and what it warns of.
#include "cli_fixture.h"
#include "progress.h"

namespace {

const std::string PLATE = R"("grid": {"width": 12, "height": 6},
    "loads": [{"x": 12, "y": 3, "fy": 1}], "supports": [{"x": 0, "y": [0, 6], "fix": "xy"}])";

std::string toOptimise(const std::string& more = "") {
    return "{" + PLATE + R"(, "volumeFraction": 0.6, "iterations": 30)" + more + "}";
}

const std::string TO_SCORE = "{" + PLATE + R"(, "densities": ["............", "######......",
    "############", "############", "............", "...........#"]})";

class Surroundings : public Cli {
protected:
    Surroundings() {
        write("o.json", toOptimise());
        write("s.json", TO_SCORE);
    }
};

TEST(LiveLine, dropsWholeFieldsAndNeverDigits) {
    const IterationRecord record = {12, 1234.56789, 0.4, 0.01234, {}};
    const std::string all = "12/345  compliance 1234.57  volume 40.0 %  change 0.0123  0.0 ms";
    EXPECT_EQ(liveLine(record, 345, 100).substr(27), all);
    std::string line;
    for (std::size_t width = 1; width <= 100; ++width) {
        line = liveLine(record, 345, width);
        EXPECT_LE(line.size(), width);
        if (line.empty() || line[0] == '[') continue;
        EXPECT_EQ(all.find(line), 0u) << line;
        EXPECT_TRUE(line.size() == all.size() || all.substr(line.size(), 2) == "  ") << line;
    }
    EXPECT_EQ(liveLine(record, 345, 79).substr(0, 15), "[............] ");
    EXPECT_EQ(liveLine(record, 345, 10), "12/345");
    EXPECT_EQ(liveLine(record, 345, 5), "");
}

TEST_F(Surroundings, keepWhatIsPrintedOutOfTheFiles) {
    for (const char* closed : {">&-", "<&- >&- 2>&-"}) {
        run(std::string("optimise o.json --history h.csv ") + closed);
        const std::string history = contents(directory / "h.csv");
        EXPECT_EQ(history.rfind("iteration,compliance,", 0), 0u) << history;
        EXPECT_EQ(std::count(history.begin(), history.end(), '\n'), 31) << history;
    }
}

TEST_F(Surroundings, tellWhenStandardOutputIsFull) {
    for (const char* command : {"optimise o.json --picture p.png", "score s.json --picture p.png",
                                "performance", "--help"}) {
        SCOPED_TRACE(command);
        const Outcome outcome = run(std::string(command) + " >/dev/full");
        EXPECT_EQ(outcome.status, 2);
        EXPECT_NE(outcome.err.find("voxam: standard output cannot be written\n"),
                  std::string::npos);
    }
    EXPECT_EQ(files(), (std::vector<std::string>{"o.json", "s.json"}));
}

TEST_F(Surroundings, protectWhatOtherOptionsAndTheSceneName) {
    fs::create_directory(directory / "f");
    ASSERT_EQ(run("score s.json --picture f/frame-0007.png").status, 0);
    write("png.json", toOptimise(R"(, "densities": {"png": "f/drawn.png"})"));
    ASSERT_EQ(run("optimise o.json --design f/drawn.png").status, 0);
    expectError(run("optimise o.json --frames f --history ./f/frame-0001.png"),
                "--frames: a frame would replace ./f/frame-0001.png");
    expectError(run("optimise png.json --picture f/drawn.png"), "it is an input of the scene");
    expectError(run("optimise o.json --frames o.json"), "o.json: cannot be written: ");
    fs::copy(directory / "f/drawn.png", directory / "f/frame-0003.png");
    write("png.json", toOptimise(R"(, "densities": {"png": "f/frame-0003.png"})"));
    expectError(run("optimise png.json --frames f"), "a frame would replace f/frame-0003.png");
}

TEST_F(Surroundings, cannotBreakALineOrFloodIt) {
    write("a\nb.json", "{");
    expectError(run("score 'a\nb.json'"), "a b.json: line 1");
    write("long.json", "{\"" + std::string(100000, 'k') + "\": 1}");
    const Outcome flood = run("score long.json");
    expectError(flood, "unknown key; allowed keys");
    EXPECT_LT(flood.err.size(), 1000u);
    write("many.json", R"({"grid": {"width": 1000, "height": 1000}, "supports": [], "loads": [)"
                       R"({"x": [0, 1000], "y": [0, 1000], "fx": 1},)"
                       R"({"x": [0, 1000], "y": [0, 1000], "fx": 1},)"
                       R"({"x": [0, 1000], "y": [0, 1000], "fx": 1},)"
                       R"({"x": [0, 1000], "y": [0, 1000], "fx": 1}]})");
    expectError(run("score many.json"), "loads: 4008004 nodes in all, allowed are at most 4000000");
}

TEST_F(Surroundings, tellTheKindsOfScenesApart) {
    expectError(run("optimise s.json"), "with its densities this is a scene for voxam score");
    expectError(run("score o.json"), "with its volumeFraction this is a scene for voxam optimise");
    write("bad.json", "{ // a comment\n" + PLATE.substr(0, PLATE.size() - 1) + ",]}");
    expectError(run("score bad.json"), "the comma before it is too many");
    write("bad.json", "{ // a comment\n" + PLATE + R"(, "densities": 1 /* solid */})");
    EXPECT_EQ(run("score bad.json").status, 0);
}

TEST_F(Surroundings, hearNothingButWarningsWhenQuiet) {
    const Outcome quiet = run("optimise o.json --quiet --iterations 3 --history h.csv");
    EXPECT_EQ(quiet.status, 0);
    EXPECT_EQ(quiet.out, "");
    EXPECT_TRUE(fs::exists(directory / "h.csv"));
}

TEST_F(Surroundings, seeThatALargeRunHasBegun) {
    write("large.json", R"({"grid": {"width": 300, "height": 200}, "volumeFraction": 0.5,
        "loads": [{"x": 300, "y": 100, "fy": 1}], "supports": [{"x": 0, "y": [0, 200], "fix": "xy"}]})");
    const Outcome outcome =
        run("optimise large.json >seen & pid=$!; while [ ! -s seen ]; do sleep 0.005; done; "
            "kill -KILL $pid; wait $pid");
    EXPECT_EQ(contents(directory / "seen").find("\n        1"), std::string::npos);
}

TEST_F(Surroundings, countWarningsWhenStrict) {
    const Outcome lenient = run("score s.json");
    EXPECT_EQ(lenient.status, 0);
    EXPECT_EQ(lenient.err,
              "voxam: s.json: warning: densities: 1 part that hangs on nothing, 1 "
              "element; the first at 11, 5; left out\n");
    EXPECT_NE(lenient.out.find("left out         1 part"), std::string::npos);
    EXPECT_EQ(run("score s.json --strict").status, 1);

    write("little.json", toOptimise(R"(, "subdivision": 5)"));
    const Outcome warned = run("optimise little.json --strict --iterations 2");
    EXPECT_EQ(warned.status, 1);
    EXPECT_NE(warned.err.find("warning: subdivision: 5 is above 4: "), std::string::npos);
    EXPECT_NE(warned.out.find("  warning            subdivision: 5 is above 4"), std::string::npos);
    write("sound.json", R"({"grid": {"width": 40, "height": 20}, "volumeFraction": 0.5,
        "iterations": 40, "subdivision": 2, "meshFactor": 2, "loads": [{"x": 40, "y": 10, "fy": 1}],
        "supports": [{"x": 0, "y": [0, 20], "fix": "xy"}]})");
    const Outcome sound = run("optimise sound.json --strict");
    EXPECT_EQ(sound.status, 0) << sound.err;
    EXPECT_EQ(sound.err, "");
    EXPECT_NE(sound.out.find(" while optimising\n"), std::string::npos);
    EXPECT_NE(sound.out.find(" as drawn, in black and white on 160 x 80 elements\n"),
              std::string::npos);
}

TEST_F(Surroundings, areToldWhichLoadIsNotCarried) {
    write("loose.json", "{" + PLATE + R"(, "densities": ["............", "............",
        "######......", "######......", "............", "............"]})");
    const Outcome loose = run("score loose.json");
    EXPECT_EQ(loose.status, 1);
    EXPECT_NE(
        loose.out.find("  because          loads[0]: pulls where there is no material, at node "
                       "12, 3\n"),
        std::string::npos)
        << loose.out;
}

}  // namespace
