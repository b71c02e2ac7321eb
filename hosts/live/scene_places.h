#pragma once

#include <filesystem>
#include <vector>

/// The directory with the scenes that come with the program: installed next to it, or in the source
/// tree it was built from. Empty if it does not exist.
std::filesystem::path shippedScenes();

/// Whether a file lies in that directory.
bool isShipped(const std::filesystem::path& file);
