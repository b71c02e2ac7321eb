#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "drawing/picture.h"

/// Endings of the files that hold a picture.
inline const std::vector<std::string> PICTURE_ENDINGS = {".png", ".svg"};

/// Draws a picture as the bytes of a file of the kind that its ending names, one of
/// PICTURE_ENDINGS.
std::vector<std::uint8_t> encodePicture(const std::filesystem::path& file, const Scene& scene,
                                        const PictureContent& content, int scale);
