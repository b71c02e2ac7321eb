#include "output_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "input_error.h"

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& target, const std::string& why) {
    throw InputError(target.string() + ": cannot be written: " + why);
}

std::string systemsReason() { return errno != 0 ? std::strerror(errno) : "unknown reason"; }

// A symbolic link stays one: the file that it points to is replaced.
fs::path resolved(const fs::path& target) {
    std::error_code error;
    const fs::path absolute = fs::absolute(target);
    const fs::path result = fs::weakly_canonical(absolute, error);
    return error ? absolute : result;
}

class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target)
        : path(target.string() + ".tmp" + std::to_string(getpid())),
          file(std::fopen(path.c_str(), "wbx")) {}
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
    std::string path;
    std::FILE* file;
    bool created = file != nullptr;
};

}  // namespace

void checkOutput(const fs::path& target, const std::vector<fs::path>& inputs) {
    const fs::path file = resolved(target);
    std::error_code error;
    const auto status = fs::status(file, error);
    // Replacing a device such as /dev/null by a picture would do harm.
    if (fs::exists(status) && !fs::is_regular_file(status)) fail(target, "not a regular file");
    for (const auto& input : inputs)
        if (fs::equivalent(file, input, error)) fail(target, "it is an input of the scene");
    if (!file.has_filename()) fail(target, "no file name");
    const fs::path directory = file.parent_path();
    if (!fs::is_directory(directory, error))
        fail(target, "there is no directory " + directory.string());
    if (access(directory.c_str(), W_OK | X_OK) != 0) fail(target, systemsReason());
}

void writeFile(const fs::path& target, const std::vector<std::uint8_t>& bytes) {
    const fs::path file = resolved(target);
    errno = 0;
    TemporaryFile temporary(file);
    if (!temporary.write(bytes) || !temporary.moveTo(file)) fail(target, systemsReason());
}

void createDirectory(const fs::path& directory) {
    std::error_code error;
    fs::create_directory(directory, error);
    if (error) fail(directory, error.message());
    if (!fs::is_directory(directory)) fail(directory, "it is not a directory");
    if (access(directory.c_str(), W_OK | X_OK) != 0) fail(directory, systemsReason());
}
