// What the program does in terminals, pipes and places that it did not choose, and what it warns
// of.
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
    // What is left out goes in this order.
    const std::vector<std::string> lines = {
        "",
        "12/345",
        "12/345  compliance 1234.57",
        "12/345  compliance 1234.57  change 0.0123",
        "12/345  compliance 1234.57  volume 40.0 %  change 0.0123",
        "12/345  compliance 1234.57  volume 40.0 %  change 0.0123  0.0 ms"};
    for (std::size_t width = 1; width <= 100; ++width) {
        const std::string line = liveLine(record, 345, width);
        EXPECT_LE(line.size(), width);
        std::size_t fitting = lines.size();
        while (lines[fitting - 1].size() > width) --fitting;
        EXPECT_EQ(line[0] == '[' ? line.substr(line.find(']') + 2) : line, lines[fitting - 1]);
    }
    EXPECT_EQ(liveLine(record, 345, 100).find(']'), 25u);
    EXPECT_EQ(liveLine(record, 345, 79).substr(0, 15), "[............] ");
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
    for (const char* command : {"score s.json --picture q.png", "performance", "--help",
                                "optimise o.json --picture p.png"}) {
        SCOPED_TRACE(command);
        EXPECT_EQ(files(), (std::vector<std::string>{"o.json", "s.json"}));
        const Outcome outcome = run(std::string(command) + " >/dev/full");
        EXPECT_EQ(outcome.status, 2);
        EXPECT_NE(outcome.err.find("voxam: standard output cannot be written\n"),
                  std::string::npos);
    }
    // Somebody who reads no further than the first line.
    EXPECT_EQ(run("optimise o.json --design d.csv | head -n 1").out, "preparing 30 iterations\n");
    EXPECT_TRUE(fs::remove(directory / "d.csv"));
    // A score is repeated soon; a run may have taken hours.
    EXPECT_EQ(files(), (std::vector<std::string>{"o.json", "p.png", "s.json"}));
}

TEST_F(Surroundings, loseNoRunToOneFileThatCannotBeWritten) {
    const std::string wide(300, 'w');
    for (const std::string& option : {"--picture " + wide + ".png", "--design " + wide + ".csv",
                                      "--history " + wide, "--frames " + wide}) {
        SCOPED_TRACE(option);
        expectError(run("optimise o.json " + option), ": cannot be written: File name too long");
        EXPECT_EQ(files(), (std::vector<std::string>{"o.json", "s.json"}));
    }
    const std::string longest(251, 'l');
    EXPECT_EQ(run("optimise o.json --picture " + longest + ".png").status, 0);
    // A limit on the size of files stands for a disk that runs full.
    fs::create_directory(directory / "f");
    const Outcome full = run("optimise o.json --design d.csv --picture p.png --frames f/",
                             "trap '' XFSZ; ulimit -f 8;");
    EXPECT_EQ(full.status, 2);
    EXPECT_NE(full.err.find("voxam: f/frame-0001.png: cannot be written: File too large\n"),
              std::string::npos);
    EXPECT_NE(full.err.find("voxam: p.png: cannot be written: File too large\n"),
              std::string::npos);
    EXPECT_NE(full.out.find("  iterations         1 of 30, then stopped: "), std::string::npos);
    fs::remove_all(directory / "f");
    fs::create_directories(directory / "f/frame-0001.png");
    EXPECT_EQ(run("optimise o.json --frames f --animation a.gif").status, 2);
    EXPECT_TRUE(fs::remove(directory / "a.gif"));
    EXPECT_EQ(files(),
              (std::vector<std::string>{"d.csv", "f", longest + ".png", "o.json", "s.json"}));
}

TEST_F(Surroundings, protectWhatOtherOptionsAndTheSceneName) {
    fs::create_directory(directory / "f");
    ASSERT_EQ(run("score s.json --picture f/frame-0007.png").status, 0);
    write("png.json", toOptimise(R"(, "densities": {"png": "f/drawn.png"})"));
    ASSERT_EQ(run("optimise o.json --design f/drawn.png").status, 0);
    expectError(run("optimise o.json --frames f --picture ./f/frame-0001.png"),
                "--frames: a frame would replace ./f/frame-0001.png");
    expectError(run("optimise png.json --picture f/drawn.png"), "it is an input of the scene");
    fs::create_symlink("both.png", directory / "link.csv");  // to nothing yet
    expectError(run("optimise o.json --history link.csv --picture both.png"), "the same file");
    fs::copy(directory / "f/drawn.png", directory / "f/frame-0003.png");
    write("png.json", toOptimise(R"(, "densities": {"png": "f/frame-0003.png"})"));
    expectError(run("optimise png.json --frames f"), "a frame would replace f/frame-0003.png");
    // A directory that is made for the frames may hold the other files as well.
    EXPECT_EQ(run("optimise o.json --frames g --history g/h.csv --picture g/p.png").status, 0);
    EXPECT_TRUE(fs::exists(directory / "g/h.csv") && fs::exists(directory / "g/frame-0030.png"));
}

TEST_F(Surroundings, cannotBreakALineOrFloodIt) {
    write("a\nb.json", "{");
    expectError(run("score 'a\nb.json'"), "a b.json: line 1");
    for (const std::string& name : {std::string(90000, 'n'), std::string("c\u009b1mb\nd.json")}) {
        const Outcome outcome = run("score '" + name + "'");
        expectError(outcome, "cannot be read: ");
        EXPECT_LT(outcome.err.size(), 400u);
        EXPECT_EQ(outcome.err.find('\x9b'), std::string::npos);
    }
    write("long.json", "{\"" + std::string(100000, 'k') + "\": 1}");
    const Outcome flood = run("score long.json");
    expectError(flood, "unknown key; allowed keys");
    EXPECT_LT(flood.err.size(), 1000u);
}

TEST_F(Surroundings, takeALoadForEachNode) {
    // Nothing may compare each of them with each.
    std::string loads;
    for (int x = 0; x <= 400; ++x)
        for (int y = 0; y <= 400; ++y)
            loads += (loads.empty() ? "" : ",") + std::string("{\"fy\":1,\"x\":") +
                     std::to_string(x) + ",\"y\":" + std::to_string(y) + "}";
    write("all.json", R"({"grid": {"width": 400, "height": 400}, "densities": 0, "supports":
        [{"x": 0, "y": [0, 400], "fix": "xy"}], "loads": [)" +
                          loads + "]}");
    const Outcome outcome = run("score all.json --picture p.png");
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_TRUE(fs::exists(directory / "p.png"));
}

TEST_F(Surroundings, tellTheKindsOfScenesApart) {
    expectError(run("optimise s.json"), "with its densities this is a scene for voxam score");
    expectError(run("score o.json"), "with its volumeFraction this is a scene for voxam optimise");
}

TEST_F(Surroundings, hearNothingButWarningsWhenQuiet) {
    const Outcome quiet = run("optimise o.json --quiet --iterations 3 --history h.csv");
    EXPECT_EQ(quiet.status, 0);
    EXPECT_EQ(quiet.out, "");
    EXPECT_TRUE(fs::exists(directory / "h.csv"));
}

TEST_F(Surroundings, seeThatALargeRunHasBegun) {
    write("large.json", R"({"grid": {"width": 300, "height": 200}, "volumeFraction": 0.5,
        "loads": [{"x": 300, "y": 100, "fy": 1}],
        "supports": [{"x": 0, "y": [0, 200], "fix": "xy"}]})");
    const Outcome outcome =
        run("optimise large.json >seen & pid=$!; while [ ! -s seen ]; do sleep 0.005; done; "
            "kill -KILL $pid; wait $pid");
    EXPECT_EQ(contents(directory / "seen").find("\n        1"), std::string::npos);
}

TEST_F(Surroundings, countWarningsWhenStrict) {
    const Outcome lenient = run("score s.json");
    EXPECT_EQ(lenient.status, 0);
    EXPECT_EQ(
        lenient.err,
        "voxam: s.json: warning: design: no support holds 1 part of it, 1 element of the grid; "
        "the first at x 11, y 5; left out\n");
    EXPECT_NE(lenient.out.find("  warning            design: no support holds 1 part"),
              std::string::npos);
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
    EXPECT_NE(sound.out.find(" as drawn: black and white on 160 x 80 elements"), std::string::npos);
}

TEST_F(Surroundings, areToldWhichLoadIsNotCarried) {
    write("loose.json", "{" + PLATE + R"(, "densities": ["............", "............",
        "######......", "######......", "............", "............"]})");
    const Outcome loose = run("score loose.json");
    EXPECT_EQ(loose.status, 1);
    EXPECT_NE(loose.out.find("  because            loads[0]: acts where there is no material, at x "
                             "12, y 3\n"),
              std::string::npos)
        << loose.out;
    const Outcome quiet = run("score loose.json --quiet");
    EXPECT_EQ(quiet.status, 1);
    EXPECT_EQ(quiet.out, "");
    EXPECT_EQ(quiet.err,
              "voxam: loose.json: not supported: loads[0]: acts where there is no material, at x "
              "12, y 3\n");
}

}  // namespace
