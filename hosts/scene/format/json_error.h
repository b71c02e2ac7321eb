#pragma once

#include <cstddef>
#include <string>

namespace voxam::inline format {

/// The place of the byte at `position`, which counts from 0, such as "line 2, column 9".
std::string placeInText(const std::string& text, std::size_t position);

/// Describes where a text is not valid JSON: line, column, what was expected and what was found.
/// `position` is the number of bytes that the parser had read, and `complaint` its message.
std::string describeJsonError(const std::string& text, std::size_t position,
                              const std::string& complaint);

}  // namespace voxam::inline format
