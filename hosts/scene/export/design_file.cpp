#include "export/design_file.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "export/file_ending.h"
#include "export/png_image.h"
#include "format/exact_text.h"
#include "format/input_error.h"
#include "format/json_value.h"
#include "format/refinement.h"
#include "format/symmetry.h"
#include "format/text.h"

namespace voxam::inline files {

namespace {

/// A list of numbers in lines, with commas or semicolons between them.
class CsvReader {
public:
    explicit CsvReader(const std::filesystem::path& csv) : file(csv) {}

    Field read(int width, int height) {
        const std::string text = readText(file, "a design");
        std::string_view rest = text;
        if (rest.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK)
            rest.remove_prefix(BYTE_ORDER_MARK.size());
        while (!rest.empty()) {
            const auto end = std::min(rest.find('\n'), rest.size());
            readLine(rest.substr(0, end));
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        const std::string wrong =
            wrongSize(columns, rows, width, height, Scene::MAX_DESIGN_REFINEMENT);
        if (!wrong.empty()) fail(wrong);
        Field field;
        field.width = static_cast<int>(columns);
        field.height = static_cast<int>(rows);
        field.values = std::move(values);
        return field;
    }

private:
    static constexpr const char* BLANKS = " \t\r";
    static constexpr std::string_view BYTE_ORDER_MARK = "\xef\xbb\xbf";

    static std::string_view trimmed(std::string_view text) {
        const auto begin = text.find_first_not_of(BLANKS);
        if (begin == std::string_view::npos) return {};
        return text.substr(begin, text.find_last_not_of(BLANKS) - begin + 1);
    }

    void readLine(std::string_view line) {
        ++lineNumber;
        if (trimmed(line).empty()) return;
        // Where semicolons separate, a comma may be meant to be a decimal point.
        const char separator = line.find(';') == std::string_view::npos ? ',' : ';';
        std::size_t column = 0;
        for (bool more = true; more; ++column) {
            const auto end = line.find(separator);
            values.push_back(readNumber(trimmed(line.substr(0, end)), column + 1));
            more = end != std::string_view::npos;
            if (more) line.remove_prefix(end + 1);
        }
        if (rows > 0 && column != columns)
            failInLine("has " + counted(column, "number") + ", the lines before have " +
                       std::to_string(columns));
        columns = column;
        ++rows;
    }

    float readNumber(std::string_view text, std::size_t column) const {
        float value = -1;
        const auto* const end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, value);
        if (error != std::errc() || rest != end || !(value >= 0 && value <= 1))
            failInLine("column " + std::to_string(column) + ": \"" +
                       std::string(text.substr(0, 40)) + "\" is not a number from 0 to 1");
        return value;
    }

    [[noreturn]] void failInLine(const std::string& why) const {
        fail("line " + std::to_string(lineNumber) + ": " + why);
    }

    [[noreturn]] void fail(const std::string& why) const {
        throw InputError("design " + nameOf(file) + ": " + why);
    }

    const std::filesystem::path& file;
    std::size_t lineNumber = 0;
    std::size_t columns = 0;
    std::size_t rows = 0;
    std::vector<float> values;
};

}  // namespace

Field readDesignPng(const std::filesystem::path& file, int width, int height) {
    Field design = readGreyPng(file, width, height, Scene::MAX_DESIGN_REFINEMENT);
    for (float& value : design.values) value = 1 - value;
    return design;
}

Field readDesignCsv(const std::filesystem::path& file, int width, int height) {
    return CsvReader(file).read(width, height);
}

Field readDesign(const std::filesystem::path& file, int width, int height) {
    return fileEnding(file) == ".csv" ? readDesignCsv(file, width, height)
                                      : readDesignPng(file, width, height);
}

namespace {

/// Reads the half of a symmetric design that its scene describes. If the size is wrong, the error
/// names both sizes.
Field readHalf(const std::filesystem::path& file, const Scene& scene, const Scene& whole) {
    try {
        return readDesign(file, scene.width, scene.height);
    } catch (const InputError& error) {
        const std::string text = error.what();
        if (!text.ends_with("(grid)")) throw;  // the fault is not the size
        throw InputError(text + " or " + std::to_string(whole.width) + " x " +
                         std::to_string(whole.height) + " times such a number (whole plate)");
    }
}

}  // namespace

Field readDesign(const std::filesystem::path& file, const Scene& scene) {
    if (scene.symmetry == Symmetry::NONE) return readDesign(file, scene.width, scene.height);
    const Scene whole = wholeOf(scene);
    try {
        const Field design = readDesign(file, whole.width, whole.height);
        Field half = halfOf(design, scene.symmetry);
        if (wholeOf(half, scene.symmetry) == design) return half;
    } catch (const InputError&) {
        return readHalf(file, scene, whole);
    }
    throw InputError(nameOf(file) + ": its halves differ, but the scene is symmetric");
}

std::vector<std::uint8_t> encodeDesignPng(const Field& design) {
    std::vector<std::uint8_t> pixels;
    pixels.reserve(design.values.size());
    for (const float value : design.values) {
        const double brightness = 255 * (1 - std::clamp(double(value), 0.0, 1.0));
        // A half that is rounded up would come back as less than a half.
        pixels.push_back(static_cast<std::uint8_t>(std::ceil(brightness - 0.5)));
    }
    return encodeGreyPng(design.width, design.height, pixels);
}

std::vector<std::uint8_t> encodeDesignCsv(const Field& design) {
    std::string text;
    for (int y = 0; y < design.height; ++y)
        for (int x = 0; x < design.width; ++x)
            text += exactText(design.at(x, y)) + (x + 1 < design.width ? ',' : '\n');
    return {text.begin(), text.end()};
}

std::vector<std::uint8_t> encodeDesign(const std::filesystem::path& file, const Field& design) {
    return fileEnding(file) == ".csv" ? encodeDesignCsv(design) : encodeDesignPng(design);
}

}  // namespace voxam::inline files
