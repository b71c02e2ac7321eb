#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "field.h"

/// Files that take a design out of the program, each of the kind that its ending names.
struct ExportOptions {
    std::vector<std::filesystem::path> designs;
    std::vector<std::filesystem::path> outlines;
    std::optional<double> thickness;  ///< of a solid, in elements
};

void addOutlineOptions(CLI::App& command, ExportOptions& options);

/// A file that a command is to write, and the option that names it.
struct Output {
    std::string option;
    std::filesystem::path file;
    std::vector<std::string> endings;  ///< that it may have; none: any
};

/// The files of these options. Throws InputError when a thickness has no use.
std::vector<Output> outputsOf(const ExportOptions& options);

/// Throws InputError unless all files have an ending that is known and can be written, none of them
/// over an input or over another. A file without a name is none.
void checkOutputs(const std::vector<Output>& outputs,
                  const std::vector<std::filesystem::path>& inputs);

/// Writes the files of a design of `refinement` cells per edge of an element, and prints their
/// names. Throws InputError.
void writeExports(const ExportOptions& options, const Field& design, int refinement);
