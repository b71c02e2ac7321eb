#include "design_exports.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "design_file.h"
#include "file_ending.h"
#include "input_error.h"
#include "outline.h"
#include "outline_file.h"
#include "output_file.h"

namespace fs = std::filesystem;

namespace {

constexpr double MAX_THICKNESS = 1e6;

// Of the plate's shorter side: a solid that is neither a foil nor a block.
constexpr double DEFAULT_THICKNESS = 0.1;

}  // namespace

void addOutlineOptions(CLI::App& command, ExportOptions& options) {
    command
        .add_option("--outline", options.outlines,
                    "Write where the material ends, in units of an element's edge: a drawing\n"
                    "or, as .stl, a solid; may be given more than once")
        ->type_name("OUT.svg|.dxf|.stl")
        ->allow_extra_args(false);
    command
        .add_option("--thickness", options.thickness,
                    "Thickness of the solid in the same units\n"
                    "(default: a tenth of the plate's shorter side)")
        ->type_name("T")
        ->check(CLI::Range(1e-6, MAX_THICKNESS));
}

std::vector<Output> outputsOf(const ExportOptions& options) {
    std::vector<Output> outputs;
    const auto add = [&](const char* option, const std::vector<fs::path>& files,
                         const std::vector<std::string>& endings) {
        for (const fs::path& file : files) outputs.push_back({option, file, endings});
    };
    add("--design", options.designs, DESIGN_ENDINGS);
    add("--outline", options.outlines, OUTLINE_ENDINGS);
    const bool hasSolid =
        std::any_of(options.outlines.begin(), options.outlines.end(),
                    [](const fs::path& file) { return fileEnding(file) == ".stl"; });
    if (options.thickness && !hasSolid) throw InputError("--thickness: needs --outline OUT.stl");
    // Comparisons with its bounds let a NaN pass.
    if (options.thickness && std::isnan(*options.thickness)) {
        throw InputError("--thickness: nan is no thickness");
    }
    return outputs;
}

void checkOutputs(const std::vector<Output>& outputs, const std::vector<fs::path>& inputs) {
    std::vector<Output> before;
    for (const Output& output : outputs) {
        if (output.file.empty()) continue;
        checkOutput(output.file, inputs);
        const auto same = [&](const Output& other) {
            return fs::weakly_canonical(fs::absolute(other.file)) ==
                   fs::weakly_canonical(fs::absolute(output.file));
        };
        const auto found = std::find_if(before.begin(), before.end(), same);
        if (found != before.end())
            throw InputError(output.option + ": names the same file as " +
                             (found->option == output.option ? "before" : found->option));
        if (!output.endings.empty()) checkEnding(output.option, output.file, output.endings);
        before.push_back(output);
    }
}

void writeExports(const ExportOptions& options, const Field& design, int refinement) {
    for (const fs::path& file : options.designs) {
        writeFile(file, encodeDesign(file, design));
        std::printf("  design             %s (%d x %d cells)\n", file.c_str(), design.width,
                    design.height);
    }
    if (options.outlines.empty()) return;
    const Outline outline = traceOutline(design, refinement);
    const double thickness =
        options.thickness.value_or(DEFAULT_THICKNESS * std::min(outline.width, outline.height));
    for (const fs::path& file : options.outlines) {
        writeFile(file, encodeOutline(file, outline, thickness));
        std::printf("  outline            %s ", file.c_str());
        if (outline.contours.empty())
            std::printf("(empty: no material is half solid)\n");
        else
            std::printf("(%zu contours, area %.6g)\n", outline.contours.size(), area(outline));
    }
}
