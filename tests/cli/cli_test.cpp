// The command line program: what it reads, draws and writes, in process, and what a user sees of
// it, by running it.
#include <cmath>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"
#include "drawing/energy_scale.h"
#include "drawing/picture.h"
#include "export/output_file.h"
#include "export/png_image.h"
#include "export/scene_file.h"
#include "format/input_error.h"
#include "format/scene_reader.h"
#include "format/scene_writer.h"
#include "run/records.h"

using namespace voxam;

namespace {

/// A bar of one row of elements, held at the left and pulled at the right: its loads, its densities
/// and whatever else a test wants to say.
std::string bar(const std::string& densities, const std::string& more = "",
                const std::string& loads = R"([{"x": 4, "y": [0, 1], "fx": 1}])") {
    return R"({"grid": {"width": 4, "height": 1}, "supports": [{"x": 0, "y": [0, 1], "fix": "x"},)"
           R"({"x": 0, "y": 0, "fix": "y"}], "loads": )" +
           loads + (densities.empty() ? "" : ", \"densities\": " + densities) + more + "}";
}

TEST_F(Cli, readsEveryFormOfDensities) {
    std::vector<std::uint8_t> greys;
    for (const int grey : {0, 255, 102, 153})
        greys.insert(greys.end(), 3, static_cast<std::uint8_t>(grey));
    writeFile(directory / "drawn.png", encodePng({4, 1, greys}));
    const std::vector<float> expected = {1, 0, 0.6f, 0.4f};
    for (const char* densities : {R"(["#.64"])", "[[1, 0, 0.6, 0.4]]", R"({"png": "drawn.png"})"}) {
        const auto scene = readScene(write("s.json", bar(densities)));
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(scene.densities->values[i], expected[i], 1e-7) << densities << " " << i;
    }
    const auto uniform = readScene(write("s.json", bar("0.25")));
    EXPECT_EQ(uniform.title, "s");
    EXPECT_EQ(uniform.densities->values, std::vector<float>(4, 0.25f));
}

TEST(CliField, elementOrderRunsDownTheColumns) {
    Field field(3, 2);
    field.values = {0, 1, 2, 3, 4, 5};
    EXPECT_EQ(toElementOrder(field), (std::vector<float>{0, 3, 1, 4, 2, 5}));
    EXPECT_EQ(fromElementOrder(toElementOrder(field), 3, 2).values, field.values);
}

TEST_F(Cli, pngKeepsEveryGrey) {
    RgbImage image{16, 16, {}};
    for (int grey = 0; grey < 256; ++grey)
        image.pixels.insert(image.pixels.end(), 3, static_cast<std::uint8_t>(grey));
    writeFile(directory / "greys.png", encodePng(image));
    const Field field = readGreyPng(directory / "greys.png", 16, 16);
    for (std::size_t i = 0; i < 256; ++i)
        EXPECT_FLOAT_EQ(field.values[i], static_cast<float>(i) / 255.0f);
}

TEST(CliEnergyScale, darkensWithEnergyAndEndsAtTheExtremes) {
    double last = 1;
    for (int step = 0; step <= 20; ++step) {
        const Colour colour = EnergyScale::colour(step / 20.0);
        const double luminance = 0.2126 * colour[0] + 0.7152 * colour[1] + 0.0722 * colour[2];
        EXPECT_LT(luminance, last);
        last = luminance;
    }
    Field energies(100, 1);
    for (int i = 0; i < 100; ++i) energies.at(i, 0) = static_cast<float>(i + 1);
    const EnergyScale scale(energies, Field(100, 1, 1.0f));
    EXPECT_DOUBLE_EQ(scale.average(), 50.5);
    EXPECT_EQ(scale.position(scale.lower()), 0);
    EXPECT_EQ(scale.position(scale.upper()), 1);
    EXPECT_NEAR(scale.position(std::sqrt(scale.lower() * scale.upper())), 0.5, 1e-12);
    const EnergyScale idle(Field(2, 2), Field(2, 2, 1.0f));  // nothing works: no division by zero
    EXPECT_EQ(idle.average(), 0);
    EXPECT_GT(idle.upper(), idle.lower());
}

TEST_F(Cli, drawsCellsWhereTheyBelong) {
    const Scene scene = readScene(write("s.json", bar(R"(["#..#"])")));
    const int scale = 40;
    const auto pixelAt = [](const RgbImage& image, int x, int y) {
        const auto* pixel = &image.pixels[3 * static_cast<std::size_t>(y * image.width + x)];
        return std::vector<int>(pixel, pixel + 3);
    };
    Field fine(8, 2);  // two cells per element each way
    fine.at(0, 1) = 1;
    const RgbImage grey = drawPicture(scene, {fine, std::nullopt, "fine", "", {}}, scale);
    const PictureLayout layout = pictureLayout(scene, scale);
    ASSERT_EQ(grey.width, layout.width);
    ASSERT_EQ(grey.height, layout.height);
    const int left = layout.plateX;
    const int top = layout.plateY;
    EXPECT_GT(pixelAt(grey, left + 10, top + 10)[0], 230);
    EXPECT_LT(pixelAt(grey, left + 10, top + 30)[0], 70);
    EXPECT_GT(pixelAt(grey, left + 30, top + 30)[0], 230);

    Field energies(4, 1);
    energies.values = {1, 0, 0, 100};
    const auto coloured = drawPicture(scene, {*scene.densities, energies, "hot", "", {}}, scale);
    const auto cool = pixelAt(coloured, left + 20, top + 20);
    const auto hot = pixelAt(coloured, left + 3 * scale + 20, top + 20);
    EXPECT_EQ(cool[0], cool[2]);
    EXPECT_GT(hot[0], 2 * hot[1]);
    EXPECT_GT(cool[0], hot[0]);
}

TEST_F(Cli, scoresABarAsByHand) {
    // A bar of length 4 and section 1 stretches by 4 under a unit force; the work is 4.
    write("bar.json", bar("1", R"(, "title": "A bar")"));
    const Outcome one = run("score bar.json");
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(one.err, "");
    for (const char* line : {"A bar\n", "  compliance         4\n",
                             "  material used      100.0 %  (4 of 4 elements)\n",
                             "  hardest 10 %       25.0 % of the compliance in 1 element\n"})
        EXPECT_NE(one.out.find(line), std::string::npos) << line << one.out;

    // Twice the force in another load case does four times the work. Keys that only concern the
    // optimiser are passed over.
    const auto scoreOfTwo = [&](const std::string& inUse) {
        write("two.json", bar("1",
                              R"(, "loadCases": 2, "volumeFraction": 0.4, "subdivision": 2,
            "meshFactor": 2, "penalty": 3, "passive": {}, "blob": [], "timeline": [],
            "iterations": 50, "loadCasesInUse": )" +
                                  inUse,
                              R"([{"x": 4, "y": [0, 1], "fx": 1}, {"x": 4, "y": [0, 1], "fx": -2,
                                  "loadCase": 1}])"));
        return run("score two.json").out;
    };
    EXPECT_NE(scoreOfTwo("[0, 1]").find("compliance         20\n"), std::string::npos);
    EXPECT_NE(scoreOfTwo("[1]").find("compliance         16\n"), std::string::npos);
    EXPECT_NE(scoreOfTwo("[1]").find("load cases         2, of which 1 in use\n"),
              std::string::npos);
    // Weights count in the sum alone; a view of one load case has its plain compliance.
    const std::string names = " --set 'loadCases=[{\"name\": \"wind\"}, {\"weight\": 2.5}]'";
    const Outcome weighted = run("score two.json --set loadCasesInUse=[0,1] --json" + names);
    const auto report = nlohmann::json::parse(weighted.out);
    EXPECT_NEAR(report["compliance"], 4 + 2.5 * 16, 1e-9);
    EXPECT_NEAR(report["compliances"][1], 16, 1e-9);
    EXPECT_EQ(report["loadCases"][0]["name"], "wind");
    EXPECT_NE(run("score two.json --set loadCasesInUse=[0,1]" + names)
                  .out.find("  load cases         2\n                     wind\n"
                            "                     load case 1, weight 2.5\n"),
              std::string::npos);
    expectError(
        run("score two.json --picture p.png --load-case 0 --set loadCasesInUse=[1]" + names),
        "--load-case: 0 is not in use; in use: 1");
}

TEST_F(Cli, runsTheShippedScenes) {
    int scored = 0;
    int optimised = 0;
    for (const auto& file : shippedScenes()) {
        SCOPED_TRACE(file.filename());
        const Scene scene = readScene(file);
        EXPECT_FALSE(scene.description.empty());
        if (scene.densities) {
            ++scored;
            const bool supported = file.stem() != "unsupported";
            const Outcome outcome = run("score " + quoted(file) + " --picture p.png --scale 8");
            EXPECT_EQ(outcome.status, supported ? 0 : 1) << outcome.err;
            EXPECT_EQ(outcome.out.find("not supported") == std::string::npos, supported);
            const PictureLayout layout = pictureLayout(scene, 8);
            EXPECT_NO_THROW(readGreyPng(directory / "p.png", layout.width, layout.height));
        }
        if (scene.volumeFraction > 0) {
            ++optimised;
            const Outcome outcome = run("optimise " + quoted(file) + " --iterations 2" +
                                        (scene.blob.empty() ? "" : " --blob"));
            EXPECT_EQ(outcome.status, 0) << outcome.err;
        }
    }
    EXPECT_GE(scored, 3);
    EXPECT_GE(optimised, 7);
}

TEST_F(Cli, writesScenesThatReadBackAsTheSame) {
    // A bit of everything, with elements of a disc that lie in a rectangle as well.
    write("all.json", R"({"title": "All \"kinds\" of keys", "description": "\u00e4",
        "grid": {"width": 4, "height": 3}, "loadCasesInUse": [2, 0],
        "loadCases": [{"name": "\u00c4ol \"1\"", "weight": 0.3}, {}, {"weight": 1000}],
        "loads": [{"x": [0, 4], "y": 1, "fx": -0.1}, {"x": 4, "y": 3, "fy": 1e-7, "loadCase": 2},
                  {"x": 1, "y": 1, "fx": 0}],
        "supports": [{"x": 0, "y": [0, 3], "fix": "x"}, {"x": 0, "y": 0, "fix": "xy"}],
        "densities": [[0.1, 1, 0, 0.25], [0, 1, 1, 1], [1, 1, 1, 1]],
        "volumeFraction": 0.3, "penalty": 2.5, "subdivision": 3, "meshFactor": 3, "iterations": 77,
        "passive": {"void": [{"x": 1, "y": 1, "radius": 1.2}, {"x": [1, 2], "y": [0, 1]}],
                    "solid": [{"x": 3, "y": 2}], "secondSolid": [{"x": 0, "y": 2}]},
        "blob": [{"x": 4, "y": 0, "radius": [0.2, 1]}],
        "timeline": [{"iteration": 5, "loads": [{"x": 1, "y": 1, "fy": 2}], "passive": {}},
                     {"iteration": 6, "restart": {"design": "keep"}},
                     {"iteration": 7, "restart": {"design": "new", "subdivision": 2,
                                                  "meshFactor": 2}, "loadCasesInUse": [1]}]})");
    std::vector<fs::path> files = {directory / "all.json"};
    for (const auto& file : shippedScenes()) files.push_back(file);
    ASSERT_GE(files.size(), 14u);
    for (const auto& file : files) {
        SCOPED_TRACE(file);
        const Scene scene = readScene(file);
        const std::string written = sceneText(scene);
        Scene again = parseScene(written, file);
        again.files = scene.files;
        EXPECT_EQ(again, scene) << written;
        EXPECT_EQ(sceneText(again), written);
    }
}

TEST_F(Cli, namesWhatIsWrongWithTheCommand) {
    write("s.json", bar("1"));
    write("wide.json", R"({"grid": {"width": 1000, "height": 1}, "densities": 1, "supports": [],
        "loads": [{"x": 0, "y": 0, "fx": 1}]})");
    fs::create_directory(directory / "full.png");
    writeFile(directory / "picture.png", encodePng({1, 1, {0, 0, 0}}));
    write("nul.json", R"({"a\u0000b": 1})");
    expectErrors({
        {"", "a command is required"},
        {"skore s.json", "\"skore\" is not known, did you mean score?"},
        {"s.json", "a command is needed before it: voxam optimise s.json or voxam score s.json"},
        {"score s.json --pictur p.png", "did you mean --picture? (see voxam score --help)"},
        {"score", "SCENE.json is missing (see voxam score --help)"},
        {"score s.json more", "\"more\" is an unexpected argument (see voxam score --help"},
        {"score -- s.json --quiet", "\"--quiet\" is an unexpected argument"},
        {"score s.json --picture", "--picture: OUT.png|.svg is missing behind it"},
        {"score s.json --picture ''", "--picture: the name is empty"},
        {"score s.json --pic p.png", "\"--pic\" is not known, did you mean --picture?"},
        {"opt s.json", "\"opt\" is not known, did you mean optimise?"},
        {"score s.json --picture p.png --scale 2 --scale 3", "--scale: is given 2 times, expected"},
        {"score picture.png", "picture.png: is a picture, expected a scene"},
        {"score nul.json", "nul.json: a b: unknown key; allowed keys"},
        {"score s.json --colour", "--colour"},
        {"score s.json --scale 2", "--scale requires --picture"},
        {"score s.json --picture p.png --scale 65",
         "--scale: \"65\" is not a whole number from 1 to 64"},
        {"score wide.json --picture p.png --scale 9", "--scale: 9 is outside 1..8"},
        {"score none.json", "none.json: cannot be read: No such file"},
        {"score .", ".: is a directory"},
        {"score s.json --picture full.png", "full.png: cannot be written: not a regular file"},
        {"score s.json --picture /dev/null", "/dev/null: cannot be written: not a regular file"},
        {"score s.json --picture none/p.png",
         "none/p.png: cannot be written: there is no directory"},
        {"score s.json --picture ./s.json", "it is an input of the scene"},
    });
}

TEST_F(Cli, leavesTheOldPictureWhenTheNewOneCannotBeFinished) {
    write("s.json", bar("1"));
    write("p.png", "old");
    // A limit on the size of files stands for a disk that runs full half-way.
    expectError(run("score s.json --picture p.png", "trap '' XFSZ; ulimit -f 1;"),
                "p.png: cannot be written: File too large");
    EXPECT_EQ(files(), (std::vector<std::string>{"p.png", "s.json"}));
    EXPECT_EQ(contents(directory / "p.png"), "old");

    fs::create_symlink("p.png", directory / "link.png");
    EXPECT_EQ(run("score s.json --picture link.png").status, 0);
    EXPECT_TRUE(fs::is_symlink(directory / "link.png"));
    EXPECT_EQ(contents(directory / "p.png").substr(1, 3), "PNG");
}

TEST_F(Cli, explainsItself) {
    const struct {
        const char* arguments;
        const char* text;
    } cases[] = {{"--help", "score"},
                 {"score --help", "1  not supported"},
                 {"optimise --help", "130, 143  ended by"},
                 {"--version", "voxam 1."},
                 {"optimise --version", "voxam 1."}};
    for (const auto& [arguments, text] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_NE(outcome.out.find(text), std::string::npos) << outcome.out;
        EXPECT_EQ(outcome.err, "");
        std::istringstream lines(outcome.out);
        for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
    }
}

}  // namespace
