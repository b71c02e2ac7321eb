#include "design_reader.h"

#include "export/design_file.h"
#include "export/file_ending.h"

using namespace voxam;

void readDesignInto(Scene& scene, const std::filesystem::path& file, const std::string& option) {
    checkEnding(option, file, DESIGN_ENDINGS);
    scene.densities = readDesign(file, scene);
    scene.files.push_back(file);
}
