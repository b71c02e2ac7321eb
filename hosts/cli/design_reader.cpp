#include "design_reader.h"

#include "export/design_file.h"
#include "export/file_ending.h"
#include "format/input_error.h"
#include "format/symmetry.h"
#include "format/text.h"

using namespace voxam;

namespace {

Field readHalf(const Scene& scene, const std::filesystem::path& file) {
    const Scene whole = wholeOf(scene);
    try {
        const Field design = readDesign(file, whole.width, whole.height);
        const Field half = halfOf(design, scene.symmetry);
        if (wholeOf(half, scene.symmetry) == design) return half;
    } catch (const InputError&) {
        return readDesign(file, scene.width, scene.height);
    }
    throw InputError(nameOf(file) + ": its halves differ, but the scene is symmetric");
}

}  // namespace

void readDesignInto(Scene& scene, const std::filesystem::path& file, const std::string& option) {
    checkEnding(option, file, DESIGN_ENDINGS);
    scene.densities = scene.symmetry == Symmetry::NONE ? readDesign(file, scene.width, scene.height)
                                                       : readHalf(scene, file);
    scene.files.push_back(file);
}
