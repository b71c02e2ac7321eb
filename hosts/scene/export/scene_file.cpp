#include "export/scene_file.h"

#include "export/design_file.h"
#include "format/json_value.h"
#include "format/scene_reader.h"

namespace voxam::inline files {

Scene readScene(const std::filesystem::path& file, const std::vector<std::string>& assignments) {
    const DesignReaders readers = {readDesignPng, readDesignCsv};
    if (file == "-")
        return parseScene(readText("/dev/stdin"), "standard input", readers, assignments);
    return parseScene(readText(file), file, readers, assignments);
}

Scene parseScene(const std::string& text, const std::filesystem::path& file) {
    return format::parseScene(text, file, {readDesignPng, readDesignCsv});
}

}  // namespace voxam::inline files
