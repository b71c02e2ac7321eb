#include "progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int INTERVAL = 10;  // iterations from one plain line to the next
constexpr std::size_t BAR_WIDTH = 24;
constexpr const char* ERASE_LINE = "\r\x1b[K";

bool canOverwriteLines() {
    const char* terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) == 1 && terminal && std::strcmp(terminal, "dumb") != 0;
}

// A line that wraps could not be overwritten.
std::size_t terminalWidth() {
    winsize size = {};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return known ? size.ws_col - 1u : 79u;
}

std::string bar(int done, int of) {
    const auto filled = BAR_WIDTH * static_cast<std::size_t>(done) / static_cast<std::size_t>(of);
    return "[" + std::string(filled, '#') + std::string(BAR_WIDTH - filled, '.') + "]";
}

}  // namespace

Progress::Progress(int iterations) : last(iterations), live(canOverwriteLines()) {}

void Progress::show(const IterationRecord& record) {
    latest = record;
    if (live)
        showLive(record);
    else if (record.iteration == 1 || record.iteration % INTERVAL == 0)
        showPlain(record);
}

void Progress::showLive(const IterationRecord& record) {
    char text[160];
    std::snprintf(text, sizeof text,
                  " %d/%d  compliance %.6g  volume %.1f %%  change %.4f  %.1f ms", record.iteration,
                  last, record.compliance, 100 * record.volume, record.change,
                  double(record.times.totalTime));
    std::string line = bar(record.iteration, last) + text;
    line.resize(std::min(line.size(), terminalWidth()));
    std::printf("%s%s", ERASE_LINE, line.c_str());
    std::fflush(stdout);
    lineOpen = true;
}

void Progress::showPlain(const IterationRecord& record) {
    if (!headed) std::printf("iteration    compliance   volume   change        ms\n");
    headed = true;
    printed = record.iteration;
    std::printf("%9d  %12.6g  %5.1f %%   %.4f  %8.1f\n", record.iteration, record.compliance,
                100 * record.volume, record.change, double(record.times.totalTime));
    std::fflush(stdout);
}

void Progress::note(int iteration, const std::string& text) {
    showPending();
    std::printf("%s%9d  %s\n", live ? ERASE_LINE : "", iteration, text.c_str());
    std::fflush(stdout);
    lineOpen = false;
}

void Progress::showPending() {
    if (!live && printed != latest.iteration) showPlain(latest);
}

void Progress::closeLine() {
    if (lineOpen) std::printf("\n");
    std::fflush(stdout);
    lineOpen = false;
}

void Progress::finish() {
    showPending();
    closeLine();
    std::printf("\n");
}
