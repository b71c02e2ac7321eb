#include "export/scene_file.h"

#include "export/design_file.h"
#include "format/json_value.h"
#include "format/scene_reader.h"

Scene readScene(const std::filesystem::path& file) { return parseScene(readText(file), file); }

Scene parseScene(const std::string& text, const std::filesystem::path& file) {
    return parseScene(text, file, {readDesignPng, readDesignCsv});
}
