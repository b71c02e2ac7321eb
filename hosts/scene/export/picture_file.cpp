#include "export/picture_file.h"

#include "export/file_ending.h"
#include "export/png_image.h"

std::vector<std::uint8_t> encodePicture(const std::filesystem::path& file, const Scene& scene,
                                        const PictureContent& content, int scale) {
    if (fileEnding(file) == ".svg") return drawPictureSvg(scene, content, scale);
    return encodePng(drawPicture(scene, content, scale));
}
