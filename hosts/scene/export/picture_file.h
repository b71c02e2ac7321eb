#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "drawing/picture.h"
#include "export/file_ending.h"
#include "export/png_image.h"

namespace voxam::inline files {

/// Endings of files with a picture.
inline const std::vector<std::string> PICTURE_ENDINGS = {".png", ".svg"};

/// The bytes of a picture in the format of the file's ending, one of PICTURE_ENDINGS.
inline std::vector<std::uint8_t> encodePicture(const std::filesystem::path& file,
                                               const Scene& scene, const PictureContent& content,
                                               int scale) {
    if (fileEnding(file) == ".svg") return drawPictureSvg(scene, content, scale);
    return encodePng(drawPicture(scene, content, scale));
}

}  // namespace voxam::inline files
