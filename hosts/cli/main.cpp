#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

#include "input_error.h"
#include "picture.h"
#include "score_command.h"

namespace {

constexpr int usageOrInputError = 2;

int report(const std::string& message) {
    std::fprintf(stderr, "voxam: %s\n", onOneLine(message).c_str());
    return usageOrInputError;
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
            ->type_name("OUT.png");
    score
        ->add_option("--scale", options.scale,
                     "Pixels per element of the picture\n"
                     "(default: as many as make it about 900 pixels wide)")
        ->type_name("N")
        ->check(CLI::Range(minPictureScale, maxPictureScale))
        ->needs(picture);
    score->footer(
        "Exit status:\n"
        "  0  scored\n"
        "  1  not supported: the supports leave the plate free to move\n"
        "  2  an error in the scene, the options or a file; one line on standard error tells\n"
        "     which, and no picture is left behind\n");
    return score;
}

int run(int argc, char** argv) {
    CLI::App app("Voxam: topology optimisation of plates from the command line.", "voxam");
    app.set_version_flag("--version", "voxam " VOXAM_CLI_VERSION);
    app.footer("voxam COMMAND --help tells more about a command.\nExit status 2 is an error.");

    ScoreOptions scoreOptions;
    const CLI::App* score = addScore(app, scoreOptions);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error);
        return report(std::string(error.what()) + " (voxam --help tells the usage)");
    }
    if (score->parsed()) return runScore(scoreOptions);
    return report("a command is required, such as score (voxam --help tells the usage)");
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const int status = run(argc, argv);
        if (std::fflush(stdout) != 0) return report("standard output cannot be written");
        return status;
    } catch (const std::exception& error) {
        return report(error.what());
    }
}
