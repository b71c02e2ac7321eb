#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "checks/assessment.h"
#include "format/scene.h"
#include "options.h"

using namespace voxam;

/// A file that a command is to write, and the option that names it.
struct Output {
    std::string option;
    std::filesystem::path file;
    std::vector<std::string> endings;  ///< that it may have; none: any
};

/// The files of these options. Throws InputError when an option has no use.
std::vector<Output> outputsOf(const ExportOptions& options);

/// Throws InputError unless all files have an ending that is known and can be written, none of them
/// over an input or over another. A file without a name is none. `planned` is a directory that will
/// be there by then.
void checkOutputs(const std::vector<Output>& outputs,
                  const std::vector<std::filesystem::path>& inputs,
                  const std::filesystem::path& planned = {});

/// A file that was written, and what it is.
struct WrittenFile {
    std::string kind;
    std::filesystem::path name;
};

/// Writes files, of which one that fails does not keep the next from being written.
class Writer {
public:
    /// `write` writes files and tells their names; it may throw.
    void attempt(const std::function<void()>& write);

    /// Writes a file and tells its name, and a note behind it.
    void write(const char* kind, const std::filesystem::path& file,
               const std::vector<std::uint8_t>& bytes, const std::string& note = "");

    /// Tells the name of a file or a directory that was written, and a note.
    void tell(const char* kind, const std::filesystem::path& file, const std::string& note);

    /// Whether one could not be written, which was then told on standard error.
    bool hasFailed() const { return failed; }
    const std::vector<WrittenFile>& files() const { return written; }

private:
    bool failed = false;
    std::vector<WrittenFile> written;
};

/// Writes designs and outlines of a design of the whole of a symmetric plate. Outlines run where
/// the density is `level`.
void writeExports(Writer& writer, const ExportOptions& options, const Field& design,
                  const Scene& scene, double level);

/// Writes the values of an analysis with all its states.
void writeValues(Writer& writer, const ExportOptions& options, const Field& design,
                 const Assessment& found, const Scene& scene);

/// "black and white on 480 x 160 elements, solid from density 0.47".
std::string describeDrawn(const Field& drawn, double level);
