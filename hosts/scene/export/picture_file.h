#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "drawing/picture.h"
#include "export/file_ending.h"
#include "export/png_image.h"

namespace voxam::inline files {

/// Endings of the files that hold a picture.
inline const std::vector<std::string> PICTURE_ENDINGS = {".png", ".svg"};

/// Draws a picture as the bytes of a file of the kind that its ending names, one of
/// PICTURE_ENDINGS.
inline std::vector<std::uint8_t> encodePicture(const std::filesystem::path& file,
                                               const Scene& scene, const PictureContent& content,
                                               int scale) {
    if (fileEnding(file) == ".svg") return drawPictureSvg(scene, content, scale);
    return encodePng(drawPicture(scene, content, scale));
}

}  // namespace voxam::inline files
