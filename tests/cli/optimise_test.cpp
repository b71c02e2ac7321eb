// voxam optimise: what it reads from a scene, and what a user sees of a run.
#include <png.h>

#include <cstdio>
#include <cstring>

#include "cli_fixture.h"
#include "drawing/picture.h"
#include "export/png_image.h"
#include "export/scene_file.h"
#include "format/scene_reader.h"
#include "run/records.h"

using namespace voxam;

namespace {

constexpr const char* HELD = R"([{"x": 0, "y": [0, 6], "fix": "xy"}])";

/// A small cantilever of two load cases, its supports, and whatever else a test wants to say.
std::string cantilever(const std::string& more = "", const std::string& supports = HELD) {
    return R"({"grid": {"width": 12, "height": 6}, "volumeFraction": 0.5, "loadCases": 2, "loads": [
        {"x": 12, "y": 3, "fy": 1}, {"x": 12, "y": 3, "fy": 2, "loadCase": 1}], "supports": )" +
           supports + (more.empty() ? "" : ", " + more) + "}";
}

/// The number `column` (0 is the iteration) of each line of a history.
std::vector<double> column(const std::string& history, std::size_t number) {
    std::istringstream lines(history);
    std::string line;
    std::vector<double> values;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string field;
        for (std::size_t i = 0; i <= number; ++i) std::getline(fields, field, ',');
        values.push_back(std::stod(field));
    }
    return values;
}

class Optimise : public Cli {
protected:
    Scene read(const std::string& more) { return readScene(write("s.json", more)); }

    /// The picture of a scene, one pixel from each element.
    struct Picture {
        RgbImage image;
        PictureLayout layout;
        int scale;

        const std::uint8_t* pixel(int x, int y) const {
            const int across = layout.plateX + x * scale + scale / 2;
            const int down = layout.plateY + y * scale + scale / 2;
            return &image.pixels[3 * static_cast<std::size_t>(down * image.width + across)];
        }
        int red(int x, int y) const { return pixel(x, y)[0]; }
        bool isBlob(int x, int y) const { return pixel(x, y)[2] > pixel(x, y)[0] + 20; }
    };

    Picture draw(const std::string& text, const std::string& options = "") {
        const Scene scene = read(text);
        EXPECT_EQ(run("optimise s.json --picture p.png " + options).status, 0);
        const int scale = refinedPictureScale(scene, scene.refinement());
        return {readColours(directory / "p.png"), pictureLayout(scene, scale), scale};
    }

    static RgbImage readColours(const fs::path& file) {
        png_image png = {};
        png.version = PNG_IMAGE_VERSION;
        EXPECT_TRUE(png_image_begin_read_from_file(&png, file.c_str()));
        png.format = PNG_FORMAT_RGB;
        RgbImage image{int(png.width), int(png.height), {}};
        image.pixels.resize(PNG_IMAGE_SIZE(png));
        EXPECT_TRUE(png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr));
        return image;
    }

    static void expectText(const std::string& text, const std::string& part) {
        EXPECT_NE(text.find(part), std::string::npos) << part << "\nis not in\n" << text;
    }
};

TEST_F(Optimise, readsEveryFormOfElements) {
    const Scene shapes = read(cantilever(R"("passive": {
            "void": [{"x": [0, 1], "y": 5}, {"x": 1, "y": 5}],
            "solid": [{"x": 12, "y": 0, "radius": 1}], "secondSolid": [{"x": 3, "y": 2}]},
        "blob": [{"x": 6, "y": 3, "radius": [1, 2]}])"));
    const std::vector<short> expected = {2, 1, 1, 0, 5, 1, 5, 11, 0, 3, 2};
    EXPECT_EQ(passiveRecords(shapes.passive), expected);
    const Scene drawn = read(cantilever(R"("passive": ["...........#", "............",
        "...2........", "............", "............", "oo.........."])"));
    EXPECT_EQ(passiveRecords(drawn.passive), expected);
    // The four elements at the centre are nearer than 1, the corners of 4 x 4 farther than 2.
    EXPECT_EQ(cellRecords(shapes.blob), (std::vector<short>{8, 4, 2, 4, 3, 5, 1, 5, 4,  //
                                                            6, 1, 6, 4, 7, 2, 7, 3}));
}

TEST_F(Optimise, namesWhatIsWrongWithTheCommand) {
    write("s.json", cantilever());
    write("bad.json", cantilever(R"("penalty": 11)"));
    std::vector<WrongCommand> commands = {
        {"bad.json --picture p.png --history h.csv --frames f", "penalty: 11 is outside 1..10"},
        {"s.json --iterations 0", "--iterations: \"0\" is not a whole number from 1 to 1000000"},
        {"s.json --until -1", "--until: \"-1\" is not a number above 0"},
        {"s.json --until nan", "--until: \"nan\" is not a number above 0"},
        {"s.json --blob", "s.json: blob: no elements, needed for --blob"},
        {"s.json --history s.json", "s.json: cannot be written: it is an input of the scene"},
        {"s.json --history none/h.csv", "there is no directory"},
        {"s.json --history ./p.csv --design p.csv", "--history: names the same file as --design"},
        {"s.json --outline a.svg --picture ./a.svg", "--outline: names the same file as --picture"},
        {"s.json --design d.csv --design d.csv", "--design: names the same file as before"},
        {"s.json --picture p.jpg",
         "--picture: p.jpg: unknown ending .jpg, expected one of .png, .svg"},
        {"s.json --outline o", "--outline: o: has no ending, expected one of .svg, .dxf, .stl"},
        {"s.json --design d.bmp",
         "--design: d.bmp: unknown ending .bmp, expected one of .png, .csv"},
        {"s.json --animation a.png", "--animation: a.png: unknown ending .png, expected .gif"},
        {"s.json --outline o.svg --thickness 2", "--thickness: needs --outline OUT.stl"},
        {"s.json --outline o.stl --thickness 0", "--thickness: \"0\" is not a number from"},
        {"s.json --frames none/f", "none/f: cannot be written: there is no directory"},
        {"s.json --frames s.json", "--frames: s.json: expected a directory"},
        {"s.json --frames f.PNG", "--frames: f.PNG: expected a directory, which gets a file"},
        {"s.json --history h.json", "--history: h.json: unknown ending .json, expected .csv"},
    };
    for (WrongCommand& command : commands) command.arguments.insert(0, "optimise ");
    expectErrors(commands);
}

TEST_F(Optimise, tellsHowItGetsOnAndWritesAllFiles) {
    write("s.json", cantilever(R"("title": "Bracket", "subdivision": 2, "meshFactor": 2)"));
    const Outcome outcome =
        run("optimise s.json --iterations 12 --picture p.png --frames frames --history h.csv");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out.find('\r'), std::string::npos);  // no terminal, no live line
    for (const char* text :
         {"Bracket\n", "12 x 6 elements, picture 48 x 24 cells\n", "iterations         12 of 12\n",
          "50.0 % asked for\n", "  iteration     100.0 % "})
        expectText(outcome.out, text);

    const std::string csv = contents(directory / "h.csv");
    EXPECT_EQ(csv.substr(0, csv.find('\n')),
              "iteration,compliance,volume,change,totalTime,updateTime,stateTime,assembleTime,"
              "factorizeTime,solveTime,sensitivityTime,meshTime");
    const auto volumes = column(csv, 2);
    const auto times = column(csv, 4);
    const auto sensitivityTimes = column(csv, 10);
    ASSERT_EQ(volumes.size(), 12u);
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_TRUE(volumes[i] > 0.3 && volumes[i] < 0.7) << volumes[i];
        EXPECT_TRUE(times[i] > sensitivityTimes[i] && sensitivityTimes[i] >= 0);
    }
    // One in ten is told, and the last.
    for (const char* line : {"\n        1  ", "\n       10  ", "\n       12  "})
        expectText(outcome.out, line);
    EXPECT_EQ(outcome.out.find("\n       11  "), std::string::npos);
    for (const char* frame : {"frames/frame-0001.png", "frames/frame-0012.png"})
        EXPECT_EQ(contents(directory / frame).substr(1, 3), "PNG");
    EXPECT_EQ(files(), (std::vector<std::string>{"frames", "h.csv", "p.png", "s.json"}));
}

TEST_F(Optimise, letsTheDesignLeave) {
    write("s.json", cantilever(R"("subdivision": 2, "meshFactor": 2)"));
    const Outcome outcome =
        run("optimise s.json --iterations 30 --picture p.svg --animation a.gif --design d.png "
            "--design d.csv --outline o.svg --outline o.dxf --outline o.stl --thickness 2.5");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    expectText(outcome.out, "  animation          a.gif (30 frames)\n");
    expectText(outcome.out, "  design             d.png (48 x 24 cells)\n");
    EXPECT_EQ(files(), (std::vector<std::string>{"a.gif", "d.csv", "d.png", "o.dxf", "o.stl",
                                                 "o.svg", "p.svg", "s.json"}));
    const std::string svg = contents(directory / "p.svg");
    expectText(svg, "<svg ");
    EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
    const std::string stl = contents(directory / "o.stl");
    float highest;
    std::memcpy(&highest, &stl[84 + 50 + 12 + 8], sizeof highest);
    EXPECT_EQ(highest, 2.5f);  // the second triangle lies on top

    // Both files are scored as fine as they are; that of numbers is worth what the run said and has
    // the outline to the bit, and 256 shades put a few cells on the other side of the level.
    const auto asDrawn = [](const std::string& out) {
        const auto end = out.find(" as drawn: black and white on 48 x 24 elements");
        EXPECT_NE(end, std::string::npos) << out;
        return std::stod(out.substr(out.rfind(' ', end - 1)));
    };
    for (const std::string design : {"d.csv", "d.png"}) {
        const Outcome scored = run("score s.json --outline again.svg --design " + design);
        EXPECT_EQ(scored.status, 0) << scored.err;
        expectText(scored.out, "  design             48 x 24 cells\n");
        EXPECT_NEAR(asDrawn(scored.out) / asDrawn(outcome.out), 1, design == "d.csv" ? 0 : 0.01);
        EXPECT_EQ(contents(directory / "again.svg") == contents(directory / "o.svg"),
                  design == "d.csv");
    }
    expectError(run("score s.json"), "densities: missing key");
    write("drawn.json", R"({"grid": {"width": 4, "height": 1}, "densities": 1, "supports": [],
        "loads": [{"x": 4, "y": 0, "fx": 1}]})");
    expectError(run("optimise drawn.json"), "volumeFraction: missing key");
    expectError(run("score s.json --design d.csv --outline d.csv"), "it is an input of the scene");
}

TEST_F(Optimise, picturesShowWhatIsFixedAndWhereTheBlobIs) {
    // Void and solid where the design would have them the other way round.
    const std::string scene = cantilever(R"("iterations": 12, "subdivision": 2, "meshFactor": 2,
        "passive": {"void": [{"x": 1, "y": 0}], "solid": [{"x": 10, "y": 5}],
                    "secondSolid": [{"x": 0, "y": 2}]}, "blob": [{"x": [3, 4], "y": [0, 1]}])");
    const auto atFirst = [](const Picture& picture) {
        return picture.isBlob(3, 0) + picture.isBlob(4, 0) + picture.isBlob(3, 1) +
               picture.isBlob(4, 1);
    };
    const Picture picture = draw(scene);
    EXPECT_GT(picture.red(1, 0), 230);
    EXPECT_LT(picture.red(10, 5), 60);
    EXPECT_LT(picture.red(0, 2), 60);
    EXPECT_FALSE(picture.isBlob(1, 0) || picture.isBlob(10, 5));
    EXPECT_EQ(atFirst(picture), 4);
    EXPECT_LT(atFirst(draw(scene, "--blob")), 3);
}

TEST_F(Optimise, sendsTheProblemAgainOnlyWhereItChanges) {
    const auto compliances = [&](const std::string& more) {
        write("run.json", cantilever(more));
        EXPECT_EQ(run("optimise run.json --iterations 30 --history run.csv").status, 0);
        return column(contents(directory / "run.csv"), 1);
    };
    EXPECT_EQ(compliances(R"("timeline": [{"iteration": 26, "penalty": 3}])"), compliances(""));
}

TEST_F(Optimise, stopsWhenLittleChangesAfterTheLastChange) {
    write("s.json", cantilever(R"("timeline": [{"iteration": 30, "penalty": 3.5}])"));
    expectText(run("optimise s.json --until 2").out,
               "iterations         50 of 100, then the change was below 2\n");
    // Not reached, so not waited for.
    expectText(run("optimise s.json --until 2 --iterations 29").out,
               "iterations         20 of 29,");
    expectText(run("optimise s.json --until 1e-30").out, "iterations         100 of 100\n");
}

TEST_F(Optimise, tellsWhatTheLibrarySays) {
    const std::string later = R"("timeline": [{"iteration": 3, "supports": []},
        {"iteration": 5, "penalty": 2}, {"iteration": 9, "supports": )" +
                              std::string(HELD) + R"(, "restart": {"design": "keep"}}])";
    write("mended.json", cantilever(later));
    const Outcome mended = run("optimise mended.json --iterations 10 --history h.csv");
    EXPECT_EQ(mended.status, 0);
    expectText(mended.err, "warning: timeline[0]: supports: the plate is free to move: nothing");
    expectText(mended.out, "9  changes: supports, restart\n");
    expectText(mended.out, "3  Change load/support; resumes with the change at iteration 5\n");
    EXPECT_EQ(column(contents(directory / "h.csv"), 0), (std::vector<double>{1, 2, 9, 10}));

    const Outcome cut = run("optimise mended.json --iterations 8 --picture p.png");
    EXPECT_EQ(cut.status, 1);
    expectText(cut.err, "\nvoxam: mended.json: iteration 5: Change load/support\n");
    expectText(cut.out, "iterations         2 of 8, then stopped: Change load/support\n");
    EXPECT_TRUE(fs::exists(directory / "p.png"));
}

TEST_F(Optimise, signalsEndARunInGoodOrder) {
    write("s.json", cantilever());
    for (const auto& [signal, status] :
         {std::pair("INT", 130), std::pair("TERM", 143), std::pair("KILL", 137)}) {
        SCOPED_TRACE(signal);
        fs::remove(directory / "p.png");
        write("h.csv", "");
        const Outcome outcome =
            run("optimise s.json --iterations 1000000 --picture p.png --history h.csv & pid=$!; "
                "while [ $(wc -l <h.csv) -lt 4 ]; do sleep 0.01; done; kill -" +
                std::string(signal) + " $pid; wait $pid");
        EXPECT_EQ(outcome.status, status) << outcome.err;
        const std::string csv = contents(directory / "h.csv");
        EXPECT_EQ(csv.back(), '\n');
        const auto iterations = column(csv, 0);
        EXPECT_GE(iterations.size(), 3u);
        EXPECT_EQ(iterations.back(), static_cast<double>(iterations.size()));
        const bool inGoodOrder = status != 137;
        EXPECT_EQ(outcome.out.find(", then interrupted\n") != std::string::npos, inGoodOrder);
        EXPECT_EQ(fs::exists(directory / "p.png"), inGoodOrder);
    }
}

}  // namespace
