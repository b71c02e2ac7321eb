#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "checks/assessment.h"
#include "format/scene.h"
#include "options.h"

using namespace voxam;

/// A file that a command will write, and the option that names it.
struct Output {
    std::string option;
    std::filesystem::path file;
    std::vector<std::string> endings;  ///< allowed endings; empty: any
};

/// The files of these options. Throws InputError if an option has no effect.
std::vector<Output> outputsOf(const ExportOptions& options);

/// Throws InputError unless all files have a known ending and can be written, and no file replaces
/// an input or another output. Empty names are skipped. `planned` is a directory that will exist
/// when the files are written.
void checkOutputs(const std::vector<Output>& outputs,
                  const std::vector<std::filesystem::path>& inputs,
                  const std::filesystem::path& planned = {});

/// A file that was written, and its kind.
struct WrittenFile {
    std::string kind;
    std::filesystem::path name;
};

/// Writes files. If one fails, the others are still written.
class Writer {
public:
    /// `write` writes files and reports their names; it may throw.
    void attempt(const std::function<void()>& write);

    /// Writes a file and prints its name and a note.
    void write(const char* kind, const std::filesystem::path& file,
               const std::vector<std::uint8_t>& bytes, const std::string& note = "");

    /// Prints the name of a file or a directory that was written, and a note.
    void report(const char* kind, const std::filesystem::path& file, const std::string& note);

    /// Whether a file could not be written. Standard error then has the reason.
    bool hasFailed() const { return failed; }
    const std::vector<WrittenFile>& files() const { return written; }

private:
    bool failed = false;
    std::vector<WrittenFile> written;
};

/// Writes designs and outlines of a design of the whole plate. Outlines run where the density is
/// `level`.
void writeExports(Writer& writer, const ExportOptions& options, const Field& design,
                  const Scene& scene, double level);

/// Writes the values of an analysis with all its states.
void writeValues(Writer& writer, const ExportOptions& options, const Field& design,
                 const Assessment& found, const Scene& scene);

/// "black and white on 480 x 160 elements, solid from density 0.47".
std::string describeDrawn(const Field& drawn, double level);
