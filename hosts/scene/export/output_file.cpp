#include "export/output_file.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "format/input_error.h"
#include "format/text.h"

namespace voxam::inline files {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& target, const std::string& why) {
    throw InputError(nameOf(target) + ": cannot be written: " + why);
}

std::string systemsReason() { return errno != 0 ? std::strerror(errno) : "unknown reason"; }

/// Of a directory.
fs::path withoutSlash(const fs::path& name) {
    return name.has_filename() ? name : name.parent_path();
}

/// What is at a place. Fails when there can be nothing at all.
fs::file_status statusOf(const fs::path& target, const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::none) fail(target, error.message());
    return status;
}

/// To replace a device such as /dev/null by a file would do harm.
void checkRegular(const fs::path& target, const fs::file_status& status) {
    if (fs::exists(status) && !fs::is_regular_file(status))
        fail(target, "not a regular file; choose another name");
}

void checkAccess(const fs::path& target, const fs::path& directory) {
    if (!fs::is_directory(statusOf(target, directory)))
        fail(target, "there is no directory " + nameOf(directory));
    if (access(directory.c_str(), W_OK | X_OK) != 0) fail(target, systemsReason());
}

/// In the directory of the file that it will be, under a short name: that one's may be as long as
/// the system allows.
fs::path temporaryName(const fs::path& target) {
    static std::atomic<unsigned> count = 0;
    return target.parent_path() / formatted(".voxam-%d-%u.tmp", getpid(), ++count);
}

class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& place)
        : path(place), file(std::fopen(path.c_str(), "wbx")) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (file) std::fclose(file);
        if (created) std::remove(path.c_str());
    }

    bool write(const std::vector<std::uint8_t>& bytes) {
        const bool written = file &&
                             std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
                             std::fflush(file) == 0;
        return written && std::fclose(std::exchange(file, nullptr)) == 0;
    }

    bool moveTo(const fs::path& target) {
        if (std::rename(path.c_str(), target.c_str()) != 0) return false;
        created = false;
        return true;
    }

private:
    fs::path path;
    std::FILE* file;
    bool created = file != nullptr;
};

}  // namespace

fs::path resolved(const fs::path& file) {
    std::error_code error;
    fs::path absolute = fs::absolute(file, error);
    if (error) return file;
    // A link may point to what does not exist yet.
    constexpr int mostLinks = 40;
    for (int i = 0; i < mostLinks && fs::is_symlink(absolute, error); ++i)
        absolute = absolute.parent_path() / fs::read_symlink(absolute, error);
    const fs::path result = fs::weakly_canonical(absolute, error);
    return error ? absolute : result;
}

bool isSamePlace(const fs::path& one, const fs::path& other) {
    return withoutSlash(resolved(one)) == withoutSlash(resolved(other));
}

void checkOutput(const fs::path& target, const std::vector<fs::path>& inputs,
                 const fs::path& planned) {
    const fs::path file = resolved(target);
    const fs::file_status status = statusOf(target, file);
    checkRegular(target, status);
    std::error_code error;
    for (const auto& input : inputs)
        if (fs::equivalent(file, input, error)) fail(target, "it is an input of the scene");
    if (!file.has_filename()) fail(target, "no file name");
    if (planned.empty() || !isSamePlace(file.parent_path(), planned))
        checkAccess(target, file.parent_path());
}

void writeFile(const fs::path& target, const std::vector<std::uint8_t>& bytes) {
    const fs::path file = resolved(target);
    checkRegular(target, statusOf(target, file));
    errno = 0;
    TemporaryFile temporary(temporaryName(file));
    if (!temporary.write(bytes) || !temporary.moveTo(file)) fail(target, systemsReason());
}

void checkDirectory(const fs::path& directory) {
    const fs::path place = withoutSlash(resolved(directory));
    const fs::file_status status = statusOf(directory, place);
    if (!fs::exists(status)) return checkAccess(directory, place.parent_path());
    if (!fs::is_directory(status)) fail(directory, "it is not a directory");
    checkAccess(directory, place);
}

void createDirectory(const fs::path& directory) {
    checkDirectory(directory);
    std::error_code error;
    fs::create_directory(resolved(directory), error);
    if (error) fail(directory, error.message());
}

}  // namespace voxam::inline files
