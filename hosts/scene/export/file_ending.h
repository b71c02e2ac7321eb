#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace voxam::inline files {

/// The ending of a file's name in small letters, such as ".png"; empty without an ending.
std::string fileEnding(const std::filesystem::path& file);

/// Throws InputError, naming the option and the endings, unless the file has one of the endings.
void checkEnding(const std::string& option, const std::filesystem::path& file,
                 const std::vector<std::string>& endings);

}  // namespace voxam::inline files
