#include <voxam.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <string>

#include "check_command.h"
#include "command_line.h"
#include "compare_command.h"
#include "console.h"
#include "new_command.h"
#include "optimise_command.h"
#include "score_command.h"
#include "usage_error.h"

namespace {

int report(const std::string& message) {
    complain(message);
    return ERROR_STATUS;
}

int runCommand(int argc, char** argv) {
    CommandLine line;
    try {
        line.app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return line.app.exit(error);
        return report(describeUsageError(error, line.app, {argv + 1, argv + argc}));
    }
    const auto isGiven = [&](const char* command) { return line.app.got_subcommand(command); };
    if (isGiven("score")) return runScore(line.score);
    if (isGiven("optimise")) return runOptimise(line.optimise);
    if (isGiven("check")) return runCheck(line.check);
    if (isGiven("compare")) return runCompare(line.compare);
    if (isGiven("new")) return runNew(line.newScene);
    if (isGiven("performance")) {
        _VoxamPerformanceTest();
        return 0;
    }
    return report("a command is required, such as voxam optimise SCENE.json (see voxam --help)");
}

}  // namespace

int main(int argc, char** argv) {
    try {
        openStandardStreams();
        const int status = runCommand(argc, argv);
        flushStandardOutput();
        return status;
    } catch (const std::exception& error) {
        complain(error);
        return ERROR_STATUS;
    }
}
