#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace voxam::inline files {

/// Throws InputError unless a file can be written at `target` without overwriting one of `inputs`.
/// Finds most faults before a long computation; writeFile still reports the rest. `planned` is a
/// directory that will be there by then.
void checkOutput(const std::filesystem::path& target,
                 const std::vector<std::filesystem::path>& inputs,
                 const std::filesystem::path& planned = {});

/// Writes a file whole or not at all: the bytes go to a temporary file in the same directory that
/// takes the target's name when complete. Throws InputError when that fails, and when the target is
/// there but is not a regular file: a device, a pipe or a directory.
void writeFile(const std::filesystem::path& target, const std::vector<std::uint8_t>& bytes);

/// Throws InputError unless createDirectory() is likely to succeed.
void checkDirectory(const std::filesystem::path& directory);

/// Makes sure that there is a directory to write files to, whose parent exists. Throws InputError.
void createDirectory(const std::filesystem::path& directory);

/// Whether two names, of files that need not exist, stand for the same place.
bool isSamePlace(const std::filesystem::path& one, const std::filesystem::path& other);

/// A name without links and detours, of a file that need not exist. Where the system cannot tell,
/// as of one that is too long, just the absolute name.
std::filesystem::path resolved(const std::filesystem::path& file);

}  // namespace voxam::inline files
