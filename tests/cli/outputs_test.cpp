// What the program says of an analysis: views, values, JSON, comparisons, and the scenes it starts
// from.
#include <nlohmann/json.hpp>

#include "checks/assessment.h"
#include "cli_fixture.h"
#include "export/scene_file.h"
#include "format/symmetry.h"

using namespace voxam;

namespace {

using Json = nlohmann::json;

/// A bar of 4 x 2 elements, held at the left and pulled at the right by 1: the stress is 0.5, its
/// right end moves by 2. The end nodes of an edge get half the force of the one in the middle.
constexpr const char* BAR = R"({"grid": {"width": 4, "height": 2}, "densities": 1,
    "supports": [{"x": 0, "y": [0, 2], "fix": "x"}, {"x": 0, "y": 0, "fix": "y"}],
    "loads": [{"x": 4, "y": 0, "fx": 0.25}, {"x": 4, "y": 1, "fx": 0.5},
              {"x": 4, "y": 2, "fx": 0.25}]})";

/// The fields of each line but the first.
std::vector<std::vector<std::string>> table(const std::string& csv) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(csv);
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        rows.emplace_back();
        for (std::string field; std::getline(fields, field, ',');) rows.back().push_back(field);
    }
    return rows;
}

using Outputs = Cli;

TEST_F(Outputs, haveTheValuesOfABar) {
    write("bar.json", BAR);
    const Outcome outcome =
        run("score bar.json --values v.csv --values v.vti --element-size 10 --view deformed "
            "--picture p.png --json");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Json report = Json::parse(outcome.out);
    EXPECT_NEAR(report["compliance"].get<double>(), 2, 1e-6);
    EXPECT_EQ(report["files"].size(), 4u);
    EXPECT_GT(report["seconds"], 0);
    double energy = 0;
    for (const auto& row : table(contents(directory / "v.csv"))) {
        energy += std::stod(row[3]);
        EXPECT_NEAR(std::stod(row[4]), 0.05, 1e-7);  // over an edge of 10
        EXPECT_NEAR(std::stod(row[7]), 0.05, 1e-7);
    }
    EXPECT_NEAR(energy, 2, 1e-6);
    const auto nodes = table(contents(directory / "v-nodes.csv"));
    ASSERT_EQ(nodes.size(), 15u);
    EXPECT_EQ(nodes.back()[0], "40");
    EXPECT_NEAR(std::stod(nodes.back()[2]), 2, 1e-6);
    EXPECT_NEAR(std::stod(nodes.back()[3]), -0.3 * 1, 1e-6);  // the lower edge moves up
    EXPECT_NE(contents(directory / "v.vti").find("WholeExtent=\"0 4 0 2 0 0\""), std::string::npos);
}

TEST_F(Outputs, takeScenesFromStandardInputAndChangeThem) {
    const Outcome outcome = run("score - --set densities=0.5 --set 'loads[1].fx=1' --json",
                                "echo '" + std::string(BAR) + "' |");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_GT(Json::parse(outcome.out)["compliance"].get<double>(), 2 * 2 * 1.5 * 1.5);
    write("bar.json", BAR);
    expectErrors({{"score bar.json --set loads", "--set: \"loads\": expected KEY=VALUE"},
                  {"score bar.json --set loads[7].fx=1", "loads has no entry 7: write 0 to "},
                  {"score bar.json --set supports[0].x[9]=1", "supports[0].x has no "},
                  {"score bar.json --set passive.void.x=1", "the scene has no key passive"},
                  {"score bar.json --set ~=3", "bar.json: ~: unknown key"},
                  {"compare bar.json b.csv", "b.csv: is a design; name its scene with --scene"},
                  {"score bar.json --set grid.width=x",
                   "grid.width: expected a whole number, found the text"},
                  {"score bar.json --view stres", "is not one of material, energy"},
                  {"score bar.json --load-case 3", "--load-case: 3 is not in use; in use: 0"},
                  {"score bar.json --element-size 2", "--element-size: needs --outline"},
                  {"check bar.json --set loadCases=0", "loadCases: 0 is outside 1..64"},
                  {"check bar.json --set loadCases=2 --set loadCases[1].weight=3",
                   "loadCases has no entries or keys: it is a single value"},
                  {"check bar.json --set 'loadCases=[{}]' --set loadCases[0].weight=0",
                   "loadCases[0].weight: 0 is outside 0.001..1000"},
                  {"new mbb bar.json", "bar.json: exists already"}});
}

TEST_F(Outputs, checkWithoutARun) {
    write("bar.json", BAR);
    EXPECT_EQ(run("check bar.json").status, 0);
    const Outcome forgotten = run("check bar.json --set loadCases=2 --strict --json");
    EXPECT_EQ(forgotten.status, 1);
    EXPECT_EQ(Json::parse(forgotten.out)["findings"][0]["text"],
              "none acts in load case 1; give a load \"loadCase\": 1, or lower loadCases");
    const Outcome open =
        run("check bar.json --set symmetry=left --set 'supports[0].y=[1,2]' --quiet");
    EXPECT_EQ(open.status, 2);
    EXPECT_NE(open.err.find("symmetry: the node x 0, y 0 on the plane of symmetry is free in x"),
              std::string::npos)
        << open.err;
    // What a score would find unsupported, whether or not the scene can be optimised as well.
    for (const std::string more : {"", " --set volumeFraction=0.5"}) {
        const Outcome rolling = run("check bar.json --set 'supports[0].fix=\"y\"' --quiet" + more);
        EXPECT_EQ(rolling.status, 2);
        EXPECT_NE(rolling.err.find("free to move along x"), std::string::npos) << rolling.err;
        const Outcome loose = run("check bar.json --set densities=0 --quiet" + more);
        EXPECT_EQ(loose.status, 2);
        EXPECT_NE(loose.err.find("acts where there is no material"), std::string::npos);
        const Outcome part =
            run("check bar.json --set 'densities=[\"###.\",\"####\"]' --strict "
                "--set 'loads=[{\"x\": 4, \"y\": 2, \"fx\": 1}]' --quiet" +
                more);
        EXPECT_EQ(part.status, 0) << part.err;
        const Outcome cut =
            run("check bar.json --set 'densities=[\"##.#\",\"##..\"]' --strict "
                "--set 'loads=[{\"x\": 2, \"y\": 2, \"fx\": 1}]' --quiet" +
                more);
        EXPECT_EQ(cut.status, 1) << cut.err;
        EXPECT_NE(cut.err.find("no support holds 1 part of it, 1 element"), std::string::npos);
    }
}

TEST_F(Outputs, compareDesignsAsDrawn) {
    // As drawn, the first one is as black as the third.
    const auto bar = [&](const char* name, const std::string& densities) {
        Json scene = Json::parse(BAR);
        scene["densities"] = Json::parse(densities);
        write(name, scene.dump());
    };
    bar("grey.json", R"(["7777", "7777"])");
    bar("hole.json", R"(["#.##", "####"])");
    bar("black.json", R"(["####", "####"])");
    bar("loose.json", R"(["#.##", "#.##"])");
    const Outcome outcome = run("compare grey.json hole.json black.json loose.json --json");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("grey.json: warning: design: as drawn, it has 100.0 %"),
              std::string::npos);
    const Json designs = Json::parse(outcome.out)["designs"];
    const std::vector<Json> ranks = {1, 3, 1, nullptr};
    for (std::size_t i = 0; i < ranks.size(); ++i) EXPECT_EQ(designs[i]["rank"], ranks[i]) << i;
    EXPECT_GT(designs[0]["compliance"], designs[0]["asDrawn"]["compliance"]);
    EXPECT_EQ(designs[2]["compliance"], designs[2]["asDrawn"]["compliance"]);
    EXPECT_TRUE(designs[3]["asDrawn"]["compliance"].is_null());
    bar("twice.json", "1");
    Json twice = Json::parse(contents(directory / "twice.json"));
    twice["loadCases"] = 2;
    write("twice.json", twice.dump());
    const Outcome forgotten = run("compare black.json twice.json");
    EXPECT_EQ(forgotten.status, 0);
    EXPECT_NE(forgotten.err.find("voxam: twice.json: warning: loads: none acts in load case 1"),
              std::string::npos)
        << forgotten.err;
    const Outcome unsupported = run("score loose.json --values v.csv");
    EXPECT_EQ(unsupported.status, 1);
    EXPECT_NE(unsupported.err.find("v.csv: not written: the design is not supported"),
              std::string::npos);
}

TEST_F(Outputs, startFromTemplatesWithoutAWarning) {
    for (const std::string name : {"cantilever", "mbb", "bridge", "l-bracket"}) {
        ASSERT_EQ(run("new " + name + " " + name + ".json").status, 0);
        const Outcome outcome = run("optimise " + name + ".json --iterations 40 --strict");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
    }
    // The whole of a half is as wide again, and its design can be scored.
    const Outcome half =
        run("optimise mbb.json --iterations 5 --design d.csv --outline o.stl --json");
    EXPECT_EQ(half.status, 0);
    const Json times = Json::parse(half.out)["medianMilliseconds"];
    EXPECT_GT(times["factorisation"], 0);
    EXPECT_LT(times["factorisation"], times["iteration"]);
    EXPECT_EQ(table(contents(directory / "d.csv")).front().size(), 2u * 90 * 4);
    const Outcome compared = run("compare --scene mbb.json d.csv d.csv --picture c.png --json");
    EXPECT_EQ(compared.status, 0) << compared.err;
    const Json designs = Json::parse(compared.out)["designs"];
    EXPECT_EQ(designs[0]["compliance"], designs[1]["compliance"]);
}

TEST_F(Outputs, ofAHalfAreThoseOfTheWhole) {
    write("half.json", R"({"grid": {"width": 20, "height": 10}, "symmetry": "left",
        "loads": [{"x": 0, "y": 0, "fy": 1}, {"x": [3, 5], "y": 10, "fx": 0.3, "fy": 0.1}],
        "supports": [{"x": 0, "y": [0, 10], "fix": "x"}, {"x": 20, "y": 10, "fix": "y"}],
        "densities": 1})");
    for (const auto& [side, upright] :
         {std::pair("left", true), {"right", true}, {"top", false}, {"bottom", false}}) {
        // Turned or mirrored to that side, the half is worth half of the whole.
        Scene scene = readScene(directory / "half.json");
        const bool isFarSide = std::string(side) == "right" || std::string(side) == "bottom";
        const auto flip = [isFarSide](Range& range, int size) {
            if (isFarSide) range = {size - range.to, size - range.from};
        };
        for (Load& load : scene.loads) flip(load.x, scene.width);
        for (Support& support : scene.supports) flip(support.x, scene.width);
        if (!upright) {
            std::swap(scene.width, scene.height);
            for (Load& load : scene.loads) {
                std::swap(load.x, load.y);
                std::swap(load.fx, load.fy);
            }
            for (Support& support : scene.supports) {
                std::swap(support.x, support.y);
                std::swap(support.fixX, support.fixY);
            }
        }
        scene.symmetry = static_cast<Symmetry>(
            std::find(SYMMETRY_NAMES.begin(), SYMMETRY_NAMES.end(), side) - SYMMETRY_NAMES.begin());
        // The whole moves freely along the plane only where the half does, so hold it there as
        // well.
        const Scene whole = wholeOf(scene);
        Scene held = whole;
        const Range middleX = upright ? Range{20, 20} : Range{0, whole.width};
        const Range middleY = upright ? Range{0, whole.height} : Range{20, 20};
        held.supports.push_back({middleX, middleY, upright, !upright});
        const double half = assess(Field(scene.width, scene.height, 1), scene).score.compliance;
        EXPECT_NEAR(assess(Field(held.width, held.height, 1), held).score.compliance / half, 2,
                    1e-9)
            << side;
    }
}

}  // namespace
