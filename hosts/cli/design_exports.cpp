#include "design_exports.h"

#include <algorithm>

#include "console.h"
#include "export/design_file.h"
#include "export/file_ending.h"
#include "export/outline.h"
#include "export/outline_file.h"
#include "export/output_file.h"
#include "export/picture_file.h"
#include "export/values_file.h"
#include "format/input_error.h"
#include "format/refinement.h"
#include "format/symmetry.h"
#include "format/text.h"

using namespace voxam;

namespace fs = std::filesystem;

namespace {

// Of the plate's shorter side: a solid that is neither a foil nor a block.
constexpr double DEFAULT_THICKNESS = 0.1;

double elementSizeOf(const ExportOptions& options, const Scene& scene) {
    return options.elementSize.value_or(scene.elementSize);
}

}  // namespace

std::vector<Output> outputsOf(const ExportOptions& options) {
    std::vector<Output> outputs;
    const auto add = [&](const char* option, const std::vector<fs::path>& files,
                         const std::vector<std::string>& endings) {
        for (const fs::path& file : files) outputs.push_back({option, file, endings});
    };
    add("--picture", options.pictures, PICTURE_ENDINGS);
    add("--design", options.designs, DESIGN_ENDINGS);
    add("--outline", options.outlines, OUTLINE_ENDINGS);
    add("--values", options.values, VALUES_ENDINGS);
    for (const fs::path& file : options.values)
        if (fileEnding(file) == ".csv") outputs.push_back({"--values", nodesFileOf(file), {}});
    const bool hasSolid =
        std::any_of(options.outlines.begin(), options.outlines.end(),
                    [](const fs::path& file) { return fileEnding(file) == ".stl"; });
    if (options.thickness && !hasSolid) throw InputError("--thickness: needs --outline OUT.stl");
    if (options.elementSize && options.outlines.empty() && options.values.empty())
        throw InputError("--element-size: needs --outline or --values");
    return outputs;
}

void checkOutputs(const std::vector<Output>& outputs, const std::vector<fs::path>& inputs,
                  const fs::path& planned) {
    std::vector<Output> before;
    for (const Output& output : outputs) {
        if (output.file.empty()) continue;
        checkOutput(output.file, inputs, planned);
        const auto same = [&](const Output& other) { return isSamePlace(other.file, output.file); };
        const auto found = std::find_if(before.begin(), before.end(), same);
        if (found != before.end())
            throw InputError(output.option + ": names the same file as " +
                             (found->option == output.option ? "before" : found->option));
        if (!output.endings.empty()) checkEnding(output.option, output.file, output.endings);
        before.push_back(output);
    }
}

std::string describeDrawn(const Field& drawn, double level) {
    return formatted("black and white on %d x %d elements, solid from density %.2g", drawn.width,
                     drawn.height, level);
}

void Writer::attempt(const std::function<void()>& write) {
    try {
        write();
    } catch (const std::exception& error) {
        failed = true;
        complain(error);
    }
}

void Writer::write(const char* kind, const fs::path& file, const std::vector<std::uint8_t>& bytes,
                   const std::string& note) {
    writeFile(file, bytes);
    report(kind, file, note);
}

void Writer::report(const char* kind, const fs::path& file, const std::string& note) {
    written.push_back({kind, file});
    printRow(kind, nameOf(file) + (note.empty() ? "" : " (" + note + ")"));
}

void writeExports(Writer& writer, const ExportOptions& options, const Field& design,
                  const Scene& scene, double level) {
    const Field whole = wholeOf(design, scene.symmetry);
    for (const fs::path& file : options.designs)
        writer.attempt([&] {
            writer.write("design", file, encodeDesign(file, whole),
                         formatted("%d x %d cells", whole.width, whole.height));
        });
    if (options.outlines.empty()) return;
    writer.attempt([&] {
        const Outline outline =
            traceOutline(whole, refinementOf(design, scene), elementSizeOf(options, scene), level);
        const double thickness =
            options.thickness.value_or(DEFAULT_THICKNESS * std::min(outline.width, outline.height));
        const std::string content = outline.contours.empty()
                                        ? "empty: there is no material"
                                        : counted(outline.contours.size(), "contour") +
                                              formatted(", area %.6g", area(outline));
        for (const fs::path& file : options.outlines)
            writer.attempt([&] {
                writer.write("outline", file, encodeOutline(file, outline, thickness), content);
            });
    });
}

void writeValues(Writer& writer, const ExportOptions& options, const Field& design,
                 const Assessment& found, const Scene& scene) {
    if (!found.problems.empty()) {
        for (const fs::path& file : options.values)
            complain(nameOf(file) + ": not written: the design is not supported");
        return;
    }
    const AnalysedDesign analysed{scene, design, found.states, elementSizeOf(options, scene)};
    for (const fs::path& file : options.values)
        writer.attempt([&] {
            if (fileEnding(file) == ".vti")
                return writer.write("values", file, encodeVti(analysed));
            writer.write("values", file, encodeElementsCsv(analysed), "by element");
            writer.write("values", nodesFileOf(file), encodeNodesCsv(analysed), "by node");
        });
}
