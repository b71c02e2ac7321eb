#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

/// Throws InputError unless a file can be written at `target` without overwriting one of `inputs`.
/// Finds most faults before a long computation; writeFile still reports the rest.
void checkOutput(const std::filesystem::path& target,
                 const std::vector<std::filesystem::path>& inputs);

/// Writes a file whole or not at all: the bytes go to a temporary file in the same directory that
/// takes the target's name when complete. Throws InputError when that fails.
void writeFile(const std::filesystem::path& target, const std::vector<std::uint8_t>& bytes);

/// Makes sure that there is a directory to write files to, whose parent exists. Throws InputError.
void createDirectory(const std::filesystem::path& directory);
