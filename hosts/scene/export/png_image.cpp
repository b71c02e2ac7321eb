#include "export/png_image.h"

#include <png.h>

#include <memory>
#include <string>

#include "format/input_error.h"
#include "format/refinement.h"
#include "format/text.h"

namespace voxam::inline files {

namespace {

struct PngImage : png_image {
    PngImage() : png_image{} { version = PNG_IMAGE_VERSION; }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;
    ~PngImage() { png_image_free(this); }
};

std::vector<std::uint8_t> encode(int width, int height, std::uint32_t format,
                                 const std::vector<std::uint8_t>& pixels) {
    PngImage png;
    png.width = static_cast<png_uint_32>(width);
    png.height = static_cast<png_uint_32>(height);
    png.format = format;
    png_alloc_size_t bytes = PNG_IMAGE_PNG_SIZE_MAX(png);
    std::vector<std::uint8_t> result(bytes);
    if (!png_image_write_to_memory(&png, result.data(), &bytes, 0, pixels.data(), 0, nullptr))
        throw std::runtime_error(std::string("PNG encoder: ") + png.message);
    result.resize(bytes);
    return result;
}

}  // namespace

Field readGreyPng(const std::filesystem::path& file, int width, int height, int maxRefinement) {
    PngImage png;
    const auto fail = [&](const std::string& why) {
        throw InputError("image " + nameOf(file) + ": " + why);
    };
    if (!png_image_begin_read_from_file(&png, file.c_str())) fail(png.message);
    // The size is checked before anything is decoded: a small file may unpack to gigabytes.
    const std::string wrong = wrongSize(png.width, png.height, width, height, maxRefinement);
    if (!wrong.empty()) fail(wrong);
    Field field(static_cast<int>(png.width), static_cast<int>(png.height));
    png.format = PNG_FORMAT_GRAY;
    png.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
    std::vector<std::uint8_t> grey(field.values.size());
    const png_color white = {255, 255, 255};
    if (!png_image_finish_read(&png, &white, grey.data(), 0, nullptr)) fail(png.message);
    for (std::size_t i = 0; i < grey.size(); ++i)
        field.values[i] = static_cast<float>(grey[i]) / 255.0f;
    return field;
}

std::vector<std::uint8_t> encodePng(const RgbImage& image) {
    return encode(image.width, image.height, PNG_FORMAT_RGB, image.pixels);
}

std::vector<std::uint8_t> encodeGreyPng(int width, int height,
                                        const std::vector<std::uint8_t>& pixels) {
    return encode(width, height, PNG_FORMAT_GRAY, pixels);
}

}  // namespace voxam::inline files
