#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "format/field.h"
#include "options.h"

/// A file that a command is to write, and the option that names it.
struct Output {
    std::string option;
    std::filesystem::path file;
    std::vector<std::string> endings;  ///< that it may have; none: any
};

/// The files of these options. Throws InputError when a thickness has no use.
std::vector<Output> outputsOf(const ExportOptions& options);

/// Throws InputError unless all files have an ending that is known and can be written, none of them
/// over an input or over another. A file without a name is none. `planned` is a directory that will
/// be there by then.
void checkOutputs(const std::vector<Output>& outputs,
                  const std::vector<std::filesystem::path>& inputs,
                  const std::filesystem::path& planned = {});

/// Writes files, of which one that fails does not keep the next from being written.
class Writer {
public:
    /// `write` writes a file and prints its name; it may throw.
    void attempt(const std::function<void()>& write);

    /// Whether one could not be written, which was then told on standard error.
    bool hasFailed() const { return failed; }

private:
    bool failed = false;
};

/// Writes the files of a design of `refinement` cells per edge of an element, and prints their
/// names. Outlines run where the density is `level`.
void writeExports(Writer& writer, const ExportOptions& options, const Field& design, int refinement,
                  double level);

/// "black and white on 480 x 160 elements, solid from density 0.47".
std::string describeDrawn(const Field& drawn, double level);
