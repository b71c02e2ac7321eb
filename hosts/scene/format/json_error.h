#pragma once

#include <cstddef>
#include <string>

namespace voxam::inline format {

/// "line 2, column 9": where the byte at `position`, from 0, stands.
std::string placeInText(const std::string& text, std::size_t position);

/// Tells in plain words where a text is no JSON: line, column, what was expected and what is there.
/// `position` is the number of bytes that the parser had read, and `complaint` what it said.
std::string describeJsonError(const std::string& text, std::size_t position,
                              const std::string& complaint);

}  // namespace voxam::inline format
