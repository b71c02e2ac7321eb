#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace voxam::inline files {

/// Throws InputError unless a file can be written at `target` without overwriting one of `inputs`.
/// Finds most faults before a long computation; writeFile still reports the rest. `planned` is a
/// directory that will exist when the file is written.
void checkOutput(const std::filesystem::path& target,
                 const std::vector<std::filesystem::path>& inputs,
                 const std::filesystem::path& planned = {});

/// Writes a complete file or nothing: the bytes go to a temporary file in the same directory, which
/// is renamed when complete. Throws InputError if that fails, or if the target exists but is not a
/// regular file: a device, a pipe or a directory.
void writeFile(const std::filesystem::path& target, const std::vector<std::uint8_t>& bytes);

/// Throws InputError unless createDirectory() is likely to succeed.
void checkDirectory(const std::filesystem::path& directory);

/// Creates a directory unless it exists. Its parent must exist. Throws InputError.
void createDirectory(const std::filesystem::path& directory);

/// Whether two names denote the same file, which need not exist.
bool isSamePlace(const std::filesystem::path& one, const std::filesystem::path& other);

/// The name of a file, which need not exist, without links and "..". If the system cannot resolve
/// the name, for example because it is too long, the absolute name.
std::filesystem::path resolved(const std::filesystem::path& file);

}  // namespace voxam::inline files
