#include "saved_design.h"

#include <chrono>

#include "export/design_file.h"
#include "export/output_file.h"
#include "format/input_error.h"

using namespace voxam;
namespace fs = std::filesystem;

namespace {

// Copies of both files may have got their times in either order.
constexpr std::chrono::seconds SLACK(10);

}  // namespace

fs::path designFileOf(const fs::path& sceneFile) {
    return sceneFile.parent_path() / (sceneFile.stem().string() + ".design.png");
}

void writeDesignBeside(const fs::path& sceneFile, const Field& design) {
    writeFile(designFileOf(sceneFile), encodeDesignPng(design));
}

std::optional<Field> designBeside(const fs::path& sceneFile, const Scene& scene) {
    const fs::path file = designFileOf(sceneFile);
    std::error_code error;
    const auto sceneTime = fs::last_write_time(sceneFile, error);
    if (error) return std::nullopt;
    const auto designTime = fs::last_write_time(file, error);
    if (error || designTime + SLACK < sceneTime) return std::nullopt;
    try {
        return readDesignPng(file, scene.width, scene.height);
    } catch (const InputError&) {
        // The design has another grid, so the optimiser starts afresh.
        return std::nullopt;
    }
}
