#include "console.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <new>

#include "format/input_error.h"
#include "format/text.h"

using namespace voxam;

namespace {

constexpr std::size_t LONGEST_COMPLAINT = 2000;
constexpr std::size_t COMFORTABLE_WIDTH = 80;
constexpr std::size_t ROW_INDENT = 21;

int realOutput = -1;  // standard output before it was silenced

/// The text in lines of at most `width`, or on one line.
void put(const std::string& text, std::FILE* file, std::optional<std::size_t> width,
         std::size_t indent) {
    std::string lines = onOneLine(text);
    if (width) lines = wrapped(lines, std::min(*width, COMFORTABLE_WIDTH), indent);
    std::fprintf(file, "%s\n", lines.c_str());
}

}  // namespace

void openStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) == -1 && open("/dev/null", O_RDWR) == -1)
            throw InputError("/dev/null cannot be opened");
}

void silenceStandardOutput() {
    std::fflush(stdout);
    if (realOutput < 0) realOutput = dup(STDOUT_FILENO);
    if (!std::freopen("/dev/null", "w", stdout)) throw InputError("/dev/null cannot be opened");
}

void printDespiteSilence(const std::string& text) {
    const int stream = realOutput < 0 ? STDOUT_FILENO : realOutput;
    std::fflush(stdout);
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = write(stream, text.data() + done, text.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) throw InputError("standard output cannot be written");
        done += static_cast<std::size_t>(count);
    }
}

std::optional<std::size_t> terminalWidth(int stream) {
    if (isatty(stream) != 1) return std::nullopt;
    winsize size = {};
    const bool known = ioctl(stream, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return known ? size.ws_col : COMFORTABLE_WIDTH;
}

void complain(const std::string& text) {
    std::fflush(stdout);  // so that both stay in order where they end up in one place
    const std::string prefix = "voxam: ";
    put(prefix + shortened(text, LONGEST_COMPLAINT), stderr, terminalWidth(STDERR_FILENO),
        prefix.size());
}

void complain(const std::exception& error) {
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
    complain(std::string(isMemory ? "not enough memory" : error.what()));
}

void printRow(const char* what, const std::string& text) {
    put(formatted("  %-*s", static_cast<int>(ROW_INDENT) - 2, what) + text, stdout,
        terminalWidth(STDOUT_FILENO).value_or(COMFORTABLE_WIDTH), ROW_INDENT);
}

void flushStandardOutput() {
    std::cout.flush();
    const bool flushed = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    if (!flushed || !std::cout) throw InputError("standard output cannot be written");
}
