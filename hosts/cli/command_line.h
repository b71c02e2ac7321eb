#pragma once

#include <CLI/CLI.hpp>

#include "options.h"

/// The commands and options of the program, and where parsing puts their values. The manual page
/// and the completions of shells are generated from it, too.
struct CommandLine {
    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    CLI::App app{"Voxam: topology optimisation of plates from the command line.", "voxam"};
    ScoreOptions score;
    OptimiseOptions optimise;
    CommonOptions check;
    CompareOptions compare;
    NewOptions newScene;
};
