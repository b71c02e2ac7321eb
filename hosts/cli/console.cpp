#include "console.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "input_error.h"
#include "text.h"

namespace {

constexpr std::size_t LONGEST_COMPLAINT = 2000;

}  // namespace

void openStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) == -1 && open("/dev/null", O_RDWR) == -1)
            throw InputError("/dev/null cannot be opened");
}

void silenceStandardOutput() {
    if (!std::freopen("/dev/null", "w", stdout)) throw InputError("/dev/null cannot be opened");
}

void complain(const std::string& text) {
    std::fflush(stdout);  // so that both stay in order where they end up in one place
    std::fprintf(stderr, "voxam: %s\n", onOneLine(shortened(text, LONGEST_COMPLAINT)).c_str());
}

void flushStandardOutput() {
    std::cout.flush();
    const bool flushed = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    if (!flushed || !std::cout) throw InputError("standard output cannot be written");
}
