#include <voxam.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "console.h"
#include "optimise_command.h"
#include "picture.h"
#include "scene.h"
#include "score_command.h"
#include "text.h"

namespace {

constexpr int USAGE_OR_INPUT_ERROR = 2;
constexpr const char* STRICT_HELP = "Make a warning count: exit status 1";

int report(const std::string& message) {
    complain(message);
    return USAGE_OR_INPUT_ERROR;
}

CLI::Validator finite() {
    return {[](const std::string& text) {
                const double number = std::strtod(text.c_str(), nullptr);
                return number > 0 && std::isfinite(number) ? "" : text + " is not a number above 0";
            },
            "", "finite"};
}

CLI::App* addScore(CLI::App& app, ScoreOptions& options) {
    CLI::App* score = app.add_subcommand(
        "score", "Score the design of a scene: how stiff it is and which elements work hardest");
    score->add_option("scene", options.scene, "Scene file: grid, loads, supports and densities")
        ->type_name("SCENE.json")
        ->required();
    CLI::Option* picture =
        score
            ->add_option("--picture", options.picture,
                         "Draw the design, coloured by the energy of its elements;\n"
                         "plain grey when the scene is not supported")
            ->type_name("OUT.png|.svg");
    score
        ->add_option("--scale", options.scale,
                     "Pixels per element of the picture\n"
                     "(default: as many as make it about 900 pixels wide)")
        ->type_name("N")
        ->check(CLI::Range(MIN_PICTURE_SCALE, MAX_PICTURE_SCALE))
        ->needs(picture);
    score
        ->add_option("--design", options.design,
                     "Score this design instead of the scene's densities, such as one that\n"
                     "voxam optimise wrote")
        ->type_name("IN.png|.csv");
    addOutlineOptions(*score, options.exports);
    score->add_flag("--strict", options.isStrict, STRICT_HELP);
    score->footer(
        "Exit status:\n"
        "  0  scored\n"
        "  1  not supported: the plate or what carries a load is free to move; or --strict and a\n"
        "     warning\n"
        "  2  an error in the scene, the options or a file; one line on standard error tells\n"
        "     which, and no picture is written\n");
    return score;
}

constexpr const char* OPTIMISE_FOOTER =
    "SIGINT (Ctrl-C) and SIGTERM end the run after the iteration at hand, with picture and\n"
    "summary; the second one ends it at once.\n"
    "Exit status:\n"
    "  0  optimised\n"
    "  1  the library could not go on: one line on standard error tells the iteration and\n"
    "     why, and the picture shows the last design, if there was one. A text that is\n"
    "     followed by a change of the timeline does not end the run. Or --strict and a\n"
    "     warning\n"
    "  2  an error in the scene, the options or a file; one line on standard error tells\n"
    "     which\n"
    "  130, 143  ended by SIGINT, SIGTERM\n";

CLI::App* addOptimise(CLI::App& app, OptimiseOptions& options) {
    CLI::App* optimise = app.add_subcommand(
        "optimise", "Find the stiffest design for a scene and an amount of material");
    optimise
        ->add_option("scene", options.scene, "Scene file: grid, loads, supports and volumeFraction")
        ->type_name("SCENE.json")
        ->required();
    optimise
        ->add_option("--iterations", options.iterations,
                     "How many iterations to run\n(default: what the scene says, or else 100)")
        ->type_name("N")
        ->check(CLI::Range(1, Scene::MAX_ITERATIONS));
    optimise
        ->add_option("--until", options.until,
                     "Stop when no density changes by as much as this in an iteration; not in\n"
                     "the first 20 iterations, and not before all changes of the timeline and\n"
                     "20 iterations more")
        ->type_name("CHANGE")
        ->check(finite());
    optimise->add_option("--picture", options.picture, "Draw the last design")
        ->type_name("OUT.png|.svg");
    optimise
        ->add_option("--animation", options.animation,
                     "Show how the design forms: pictures of the iterations, or of those in\n"
                     "which most happens, and a pause at the end")
        ->type_name("OUT.gif");
    optimise
        ->add_option("--design", options.exports.designs,
                     "Write the density of each cell, as a grey pixel (black is solid) or as a\n"
                     "number; voxam score reads it with --design; may be given more than once")
        ->type_name("OUT.png|.csv")
        ->allow_extra_args(false);
    addOutlineOptions(*optimise, options.exports);
    optimise
        ->add_option("--frames", options.frames,
                     "Draw the design after each iteration: frame-0001.png and so on in this\n"
                     "directory, which is made when needed")
        ->type_name("DIR");
    optimise
        ->add_option("--history", options.history,
                     "Write a line for each iteration, as it ends: compliance, volume, change\n"
                     "and all timings in milliseconds")
        ->type_name("OUT.csv");
    optimise->add_flag("--blob", options.movesBlob,
                       "Let the blob of the scene move to where material is least useful");
    optimise->add_flag("--strict", options.isStrict, STRICT_HELP);
    optimise->add_flag("--quiet", options.isQuiet,
                       "Print nothing but errors and warnings, on standard error");
    optimise->footer(OPTIMISE_FOOTER);
    return optimise;
}

CLI::App* addPerformance(CLI::App& app) {
    CLI::App* performance = app.add_subcommand(
        "performance", "Time four ways of assembling the equations, on plates of five sizes");
    performance->footer(
        "Prints a table for each plate: a line per way, and in it for 1, 2, 4 and 8 assemblies\n"
        "the milliseconds in all and, in parentheses, those that built the sparsity pattern.\n");
    return performance;
}

std::vector<std::string> namesOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) names.push_back(option->get_name());
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    return names;
}

/// What the person who typed these arguments may have meant, or nothing.
std::string hintFor(const std::vector<std::string>& arguments, const CLI::App& app) {
    const CLI::App* command = &app;
    for (const std::string& argument : arguments) {
        const std::string word = argument.substr(0, argument.find('='));
        const auto commands = command->get_subcommands(
            [&](const CLI::App* each) { return each->get_name() == word; });
        if (!commands.empty()) {
            command = commands.front();
            continue;
        }
        const auto names = namesOf(*command);
        const bool isOption = word.size() > 2 && word[0] == '-' && word[1] == '-';
        const bool isCommand = command == &app;
        const bool isKnown = std::find(names.begin(), names.end(), word) != names.end();
        if (isKnown || !(isOption || isCommand)) continue;
        if (isCommand && std::filesystem::path(word).extension() == ".json")
            return word + ": a command is needed before it: voxam optimise " + word +
                   " or voxam score " + word;
        const std::string meant = didYouMean(word, names);
        return quoted(word) + " is not known" + (meant.empty() ? ";" : meant) + " voxam" +
               (isCommand ? "" : " " + command->get_name()) + " --help tells the usage";
    }
    return "";
}

int run(int argc, char** argv) {
    CLI::App app("Voxam: topology optimisation of plates from the command line.", "voxam");
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
        const std::string hint = hintFor({argv + 1, argv + argc}, app);
        return report(hint.empty() ? std::string(error.what()) + " (voxam --help tells the usage)"
                                   : hint);
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
        return report(error.what());
    }
}
