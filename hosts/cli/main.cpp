#include <voxam.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <memory>
#include <string>

#include "console.h"
#include "drawing/picture.h"
#include "export/picture_file.h"
#include "format/scene.h"
#include "help_formatter.h"
#include "optimise_command.h"
#include "score_command.h"
#include "usage_error.h"

namespace {

constexpr const char* STRICT_HELP = "Make a warning count: exit status 1";
constexpr const char* QUIET_HELP = "Print nothing but errors and warnings, on standard error";

int report(const std::string& message) {
    complain(message);
    return ERROR_STATUS;
}

CLI::App* addScore(CLI::App& app, ScoreOptions& options) {
    CLI::App* score = app.add_subcommand(
        "score", "Score the design of a scene: how stiff it is and which elements work hardest");
    score->add_option("scene", options.scene, "Scene file: grid, loads, supports and densities")
        ->type_name("SCENE.json")
        ->check(fileName())
        ->required();
    CLI::Option* picture =
        score
            ->add_option("--picture", options.picture,
                         "Draw the design, coloured by the energy of its elements; "
                         "plain grey when the scene is not supported")
            ->type_name("OUT.png|.svg")
            ->check(fileName());
    score
        ->add_option("--scale", options.scale,
                     "Pixels per element of the picture\n"
                     "(default: as many as make it about 900 pixels wide)")
        ->type_name("N")
        ->check(wholeNumberWithin(MIN_PICTURE_SCALE, MAX_PICTURE_SCALE))
        ->needs(picture);
    score
        ->add_option("--design", options.design,
                     "Score this design instead of the scene's densities, such as one that "
                     "voxam optimise wrote")
        ->type_name("IN.png|.csv")
        ->check(fileName());
    addOutlineOptions(*score, options.exports);
    score->add_flag("--strict", options.isStrict, STRICT_HELP);
    score->add_flag("--quiet", options.isQuiet, QUIET_HELP);
    score->footer(
        "Exit status:\n"
        "  0  scored\n"
        "  1  not supported: the plate or what carries a load is free to move, as a line\n"
        "     on standard error tells; or --strict and a warning\n"
        "  2  an error in the scene, the options or a file; one line on standard error\n"
        "     tells which, and no picture is written: also when standard output is full\n");
    return score;
}

constexpr const char* OPTIMISE_FOOTER =
    "SIGINT (Ctrl-C) and SIGTERM end the run after the iteration at hand, with\n"
    "picture and summary; the second one ends it at once.\n"
    "Exit status:\n"
    "  0  optimised\n"
    "  1  the library could not go on: one line on standard error tells the iteration\n"
    "     and why, and the picture shows the last design, if there was one. A text\n"
    "     that is followed by a change of the timeline does not end the run. Or\n"
    "     --strict and a warning\n"
    "  2  an error in the scene, the options or a file; one line on standard error\n"
    "     tells which. When a file cannot be written the others still are; when\n"
    "     standard output is full all files are written\n"
    "  130, 143  ended by SIGINT, SIGTERM\n";

CLI::App* addOptimise(CLI::App& app, OptimiseOptions& options) {
    CLI::App* optimise = app.add_subcommand(
        "optimise", "Find the stiffest design for a scene and an amount of material");
    optimise
        ->add_option("scene", options.scene, "Scene file: grid, loads, supports and volumeFraction")
        ->type_name("SCENE.json")
        ->check(fileName())
        ->required();
    optimise
        ->add_option("--iterations", options.iterations,
                     "How many iterations to run\n(default: what the scene says, or else 100)")
        ->type_name("N")
        ->check(wholeNumberWithin(1, Scene::MAX_ITERATIONS));
    optimise
        ->add_option("--until", options.until,
                     "Stop when no density changes by as much as this in an iteration; not in "
                     "the first 20 iterations, and not before all changes of the timeline and "
                     "20 iterations more")
        ->type_name("CHANGE")
        ->check(positiveNumber());
    optimise->add_option("--picture", options.picture, "Draw the last design")
        ->type_name("OUT.png|.svg")
        ->check(fileName());
    optimise
        ->add_option("--animation", options.animation,
                     "Show how the design forms: pictures of the iterations, or of those in "
                     "which most happens, and a pause at the end")
        ->type_name("OUT.gif")
        ->check(fileName());
    optimise
        ->add_option("--design", options.exports.designs,
                     "Write the density of each cell, as a grey pixel (black is solid) or as a "
                     "number; voxam score reads it with --design; may be given more than once")
        ->type_name("OUT.png|.csv")
        ->check(fileName())
        ->allow_extra_args(false);
    addOutlineOptions(*optimise, options.exports);
    optimise
        ->add_option("--frames", options.frames,
                     "Draw the design after each iteration: frame-0001.png and so on in this "
                     "directory, which is made when needed")
        ->type_name("DIR")
        ->check(fileName());
    optimise
        ->add_option("--history", options.history,
                     "Write a line for each iteration, as it ends: compliance, volume, change "
                     "and all timings in milliseconds")
        ->type_name("OUT.csv")
        ->check(fileName());
    optimise->add_flag("--blob", options.movesBlob,
                       "Let the blob of the scene move to where material is least useful");
    optimise->add_flag("--strict", options.isStrict, STRICT_HELP);
    optimise->add_flag("--quiet", options.isQuiet, QUIET_HELP);
    optimise->footer(OPTIMISE_FOOTER);
    return optimise;
}

CLI::App* addPerformance(CLI::App& app) {
    CLI::App* performance = app.add_subcommand(
        "performance", "Time four ways of assembling the equations, on plates of five sizes");
    performance->footer(
        "Prints a table for each plate: a line per way, and in it for 1, 2, 4 and 8\n"
        "assemblies the milliseconds in all and, in parentheses, those that built the\n"
        "sparsity pattern.\n");
    return performance;
}

int run(int argc, char** argv) {
    CLI::App app("Voxam: topology optimisation of plates from the command line.", "voxam");
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_version_flag("--version", "voxam " VOXAM_CLI_VERSION);
    app.footer("voxam COMMAND --help tells more about a command.\nExit status 2 is an error.");

    ScoreOptions scoreOptions;
    const CLI::App* score = addScore(app, scoreOptions);
    OptimiseOptions optimiseOptions;
    const CLI::App* optimise = addOptimise(app, optimiseOptions);
    const CLI::App* performance = addPerformance(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error);
        return report(describeUsageError(error, app, {argv + 1, argv + argc}));
    }
    if (score->parsed()) return runScore(scoreOptions);
    if (optimise->parsed()) return runOptimise(optimiseOptions);
    if (performance->parsed()) {
        _VoxamPerformanceTest();
        return 0;
    }
    return report(
        "a command is required, such as voxam optimise SCENE.json (voxam --help tells the usage)");
}

}  // namespace

int main(int argc, char** argv) {
    try {
        openStandardStreams();
        const int status = run(argc, argv);
        flushStandardOutput();
        return status;
    } catch (const std::exception& error) {
        complain(error);
        return ERROR_STATUS;
    }
}
