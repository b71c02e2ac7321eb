#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace voxam::inline format {

/// What std::printf would print.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

/// The text with every control character and line separator replaced by a blank, and every byte
/// that is not UTF-8 by U+FFFD.
std::string onOneLine(std::string text);

/// The name of a file for messages: on one line, its middle left out if it is long.
std::string nameOf(const std::filesystem::path& file);

/// The text in quotes, its middle left out if it is long.
std::string quoted(const std::string& text);

/// The text, its middle left out if it is longer than `most` bytes; no character is cut.
std::string shortened(const std::string& text, std::size_t most);

/// ", did you mean loads?" if one of the allowed words resembles the word found or begins with it;
/// otherwise an empty text.
std::string didYouMean(const std::string& found, const std::vector<std::string>& allowed);

/// Characters (code points) of a UTF-8 text.
std::size_t characterCount(const std::string& text);

/// The words with commas between them.
std::string listed(const std::vector<std::string>& words);

/// "1 part", "2 parts".
std::string counted(std::size_t count, const std::string& what);

/// The shortest text that reads back as the same number, with an exponent only if there would be
/// too many digits to count.
std::string plainNumber(double value);

/// "x 12.25, y 3", in elements from the plate's top left corner.
std::string placeText(double x, double y);

/// The text broken at blanks into lines of at most `width` columns where words allow it; all lines
/// but the first begin with `indent` blanks.
std::string wrapped(const std::string& text, std::size_t width, std::size_t indent);

}  // namespace voxam::inline format
