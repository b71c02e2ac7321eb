#include "command_line.h"

#include <memory>
#include <string>

#include "help_formatter.h"
#include "usage_error.h"

namespace {

constexpr const char* VERSION = "voxam " VOXAM_CLI_VERSION;

constexpr double MIN_LENGTH = 1e-6;
constexpr double MAX_LENGTH = 1e6;
constexpr int MAX_SCALE = 64;
constexpr int MAX_ITERATIONS = 1000000;
constexpr int MAX_LOAD_CASE = 63;
constexpr int MAX_SIDE = 1000;
constexpr int MIN_TEMPLATE_SIDE = 10;

constexpr const char* SCORE_FOOTER =
    "Exit status:\n"
    "  0  scored\n"
    "  1  not supported: the plate, or material under a load, is free to move; a line\n"
    "     on standard error explains it. Or --strict and a warning\n"
    "  2  an error in the scene, the options or a file; one line on standard error\n"
    "     explains it. No picture is written then, nor when standard output is full\n";

constexpr const char* OPTIMISE_FOOTER =
    "SIGINT (Ctrl-C), SIGTERM and SIGHUP end the run after the current iteration.\n"
    "The program then writes the picture, the summary and the other files. A second\n"
    "signal ends it at once.\n"
    "Exit status:\n"
    "  0  optimised\n"
    "  1  the optimiser could not go on: one line on standard error names the\n"
    "     iteration and the reason, and the picture shows the last design, if there\n"
    "     was one. A failure before a change of the timeline does not end the run.\n"
    "     Or --strict and a warning, or --values and a design that is not supported\n"
    "     as drawn\n"
    "  2  an error in the scene, the options or a file; one line on standard error\n"
    "     explains it. When a file cannot be written the others still are; when\n"
    "     standard output is full all files are written\n"
    "  129, 130, 143  ended by SIGHUP, SIGINT, SIGTERM\n";

constexpr const char* CHECK_FOOTER =
    "Exit status:\n"
    "  0  nothing is wrong, or there are warnings only\n"
    "  1  --strict and a warning\n"
    "  2  an error in the scene, or its design is not supported\n";

constexpr const char* COMPARE_FOOTER =
    "Each file is a scene with densities; or, with --scene, a design (.png or .csv)\n"
    "under the loads and supports of that scene.\n"
    "The table ranks the designs by their compliance as drawn, in black and white.\n"
    "\"of first\" divides it by that of the first design.\n"
    "Exit status: 0 compared, 1 a design is not supported, 2 an error.\n";

constexpr const char* NEW_FOOTER =
    "The templates:\n"
    "  cantilever  held at its left edge, with a force at the middle of the right one\n"
    "  mbb         the right half of a beam on two supports, by symmetry\n"
    "  bridge      a solid deck under a distributed load, between two supports\n"
    "  l-bracket   held at the top, around a corner that stays void\n";

constexpr const char* PERFORMANCE_FOOTER =
    "Prints a table for each plate: a line per way, and in it for 1, 2, 4 and 8\n"
    "assemblies the milliseconds in all and, in parentheses, those that built the\n"
    "sparsity pattern.\n";

CLI::Option* addFile(CLI::App& command, const char* name, std::filesystem::path& file,
                     const char* type, const std::string& help) {
    return command.add_option(name, file, help)->type_name(type)->check(fileName());
}

CLI::Option* addFiles(CLI::App& command, const char* name,
                      std::vector<std::filesystem::path>& files, const char* type,
                      const std::string& help) {
    return command.add_option(name, files, help + "; may be given more than once")
        ->type_name(type)
        ->check(fileName())
        ->allow_extra_args(false);
}

void addScene(CLI::App& command, CommonOptions& options, const char* help) {
    addFile(command, "scene", options.scene, "SCENE.json",
            std::string(help) + "; - for standard input")
        ->required();
    command
        .add_option("--set", options.assignments,
                    "Replace a value of the scene, such as volumeFraction=0.4 or loads[0].fy=2; "
                    "may be given more than once")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
}

void addCommonFlags(CLI::App& command, CommonOptions& options) {
    command.add_flag("--strict", options.isStrict, "Exit with status 1 after a warning");
    command.add_flag("--quiet", options.isQuiet,
                     "Print nothing but errors and warnings, on standard error");
    command.add_flag("--json", options.isJson,
                     "Print one JSON object on standard output, and nothing else there");
}

void addViewOptions(CLI::App& command, ViewOptions& options, ExportOptions& exports) {
    command
        .add_option("--view", options.view,
                    "What the picture shows: the material, the energy or the von Mises stress of "
                    "the elements, or the deformed plate\n(default: " +
                        options.view + ")")
        ->type_name("material|energy|stress|deformed")
        ->check(oneOf({"material", "energy", "stress", "deformed"}));
    command
        .add_option("--load-case", options.loadCase,
                    "Show this load case only\n(default: the energy of all load cases, the largest "
                    "stress of any, the deformation of the first)")
        ->type_name("N")
        ->check(wholeNumberWithin(0, MAX_LOAD_CASE));
    addFiles(command, "--values", exports.values, "OUT.csv|.vti",
             "Write density, energy and stresses by element and displacements by node: "
             "OUT.csv and OUT-nodes.csv, or OUT.vti for ParaView");
}

void addOutlineOptions(CLI::App& command, ExportOptions& options) {
    addFiles(command, "--outline", options.outlines, "OUT.svg|.dxf|.stl",
             "Write where the material ends, in millimetres: a drawing or, as .stl, a solid");
    command
        .add_option("--thickness", options.thickness,
                    "Thickness of the solid in millimetres\n"
                    "(default: a tenth of the plate's shorter side)")
        ->type_name("T")
        ->check(numberWithin(MIN_LENGTH, MAX_LENGTH));
    command
        .add_option("--element-size", options.elementSize,
                    "Edge of an element in millimetres, for outlines, solids and values\n"
                    "(default: what the scene says, or else 1)")
        ->type_name("MM")
        ->check(numberWithin(MIN_LENGTH, MAX_LENGTH));
}

void addScore(CLI::App& app, ScoreOptions& options) {
    CLI::App& score = *app.add_subcommand(
        "score", "Score the design of a scene: how stiff it is and which elements work hardest");
    addScene(score, options, "Scene file: grid, loads, supports and densities");
    CLI::Option* picture = addFiles(score, "--picture", options.exports.pictures, "OUT.png|.svg",
                                    "Draw the design; plain grey when it is not supported");
    score
        .add_option("--scale", options.scale,
                    "Pixels per element of the picture\n"
                    "(default: as many as make it about 900 pixels wide)")
        ->type_name("N")
        ->check(wholeNumberWithin(1, MAX_SCALE))
        ->needs(picture);
    addFile(score, "--design", options.design, "IN.png|.csv",
            "Score this design instead of the scene's densities, such as one that "
            "voxam optimise wrote");
    addViewOptions(score, options.view, options.exports);
    addOutlineOptions(score, options.exports);
    addCommonFlags(score, options);
    score.footer(SCORE_FOOTER);
}

void addRunOptions(CLI::App& optimise, OptimiseOptions& options) {
    optimise
        .add_option("--iterations", options.iterations,
                    "How many iterations to run\n(default: what the scene says, or else 100)")
        ->type_name("N")
        ->check(wholeNumberWithin(1, MAX_ITERATIONS));
    optimise
        .add_option("--until", options.until,
                    "Stop when no density changes by as much as this in an iteration; not in "
                    "the first 20 iterations, and not before all changes of the timeline and "
                    "20 iterations more")
        ->type_name("CHANGE")
        ->check(positiveNumber());
    optimise.add_flag("--blob", options.movesBlob,
                      "Let the blob of the scene move to where material is least useful");
}

void addOptimise(CLI::App& app, OptimiseOptions& options) {
    CLI::App& optimise = *app.add_subcommand(
        "optimise", "Find the stiffest design for a scene and an amount of material");
    addScene(optimise, options, "Scene file: grid, loads, supports and volumeFraction");
    addRunOptions(optimise, options);
    addFiles(optimise, "--picture", options.exports.pictures, "OUT.png|.svg",
             "Draw the last design");
    addFile(optimise, "--animation", options.animation, "OUT.gif",
            "Show how the design forms: pictures of the iterations, or of those in "
            "which most happens, and a pause at the end");
    addFiles(optimise, "--design", options.exports.designs, "OUT.png|.csv",
             "Write the density of each cell, as a grey pixel (black is solid) or as a "
             "number; voxam score reads it with --design");
    addViewOptions(optimise, options.view, options.exports);
    addOutlineOptions(optimise, options.exports);
    addFile(optimise, "--frames", options.frames, "DIR",
            "Draw the design after each iteration: frame-0001.png and so on in this "
            "directory, which is created when needed");
    addFile(optimise, "--history", options.history, "OUT.csv",
            "Write a line for each iteration, as it ends: compliance, volume, change "
            "and all timings in milliseconds");
    addCommonFlags(optimise, options);
    optimise.footer(OPTIMISE_FOOTER);
}

void addCheck(CLI::App& app, CommonOptions& options) {
    CLI::App& check = *app.add_subcommand(
        "check", "Check a scene, and its design if it has one, without optimising");
    addScene(check, options, "Scene file");
    addCommonFlags(check, options);
    check.footer(CHECK_FOOTER);
}

void addCompare(CLI::App& app, CompareOptions& options) {
    CLI::App& compare = *app.add_subcommand("compare", "Rank designs by their compliance as drawn");
    compare.add_option("files", options.files, "Scenes with densities, or designs with --scene")
        ->type_name("FILE")
        ->check(fileName())
        ->required();
    addFile(compare, "--scene", options.scene, "SCENE.json",
            "Take loads and supports from this scene; the files are designs");
    addFile(compare, "--picture", options.picture, "OUT.png",
            "Draw the designs side by side, coloured by the energy of their elements");
    compare.add_flag("--json", options.isJson,
                     "Print one JSON object on standard output, and nothing else there");
    compare.footer(COMPARE_FOOTER);
}

void addNew(CLI::App& app, NewOptions& options) {
    CLI::App& command = *app.add_subcommand("new", "Write a scene to start from");
    command.add_option("template", options.kind, "What to start from; see below")
        ->type_name("cantilever|mbb|bridge|l-bracket")
        ->check(oneOf({"cantilever", "mbb", "bridge", "l-bracket"}))
        ->required();
    addFile(command, "file", options.file, "OUT.json",
            "File to write, which must not exist; standard output if left out");
    const auto addSide = [&](const char* name, int& side, const char* help) {
        command.add_option(name, side, help)
            ->type_name("N")
            ->check(wholeNumberWithin(MIN_TEMPLATE_SIDE, MAX_SIDE));
    };
    addSide("--width", options.width, "Elements in x\n(default: that of the template)");
    addSide("--height", options.height, "Elements in y\n(default: that of the template)");
    command.footer(NEW_FOOTER);
}

void addPerformance(CLI::App& app) {
    app.add_subcommand("performance",
                       "Time four ways of assembling the equations, on plates of five sizes")
        ->footer(PERFORMANCE_FOOTER);
}

}  // namespace

CommandLine::CommandLine() {
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_version_flag("--version", VERSION);
    app.footer("voxam COMMAND --help describes a command.\nExit status 2 is an error.");
    addScore(app, score);
    addOptimise(app, optimise);
    addCheck(app, check);
    addCompare(app, compare);
    addNew(app, newScene);
    addPerformance(app);
    for (CLI::App* command : app.get_subcommands({}))
        command->set_version_flag("--version", VERSION)->group("");
}
