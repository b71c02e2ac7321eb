#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <vector>

#include "console.h"
#include "format/text.h"

using namespace voxam;

namespace {

constexpr int INTERVAL = 10;  // iterations from one plain line to the next
constexpr std::size_t BAR_WIDTH = 24;
constexpr std::size_t LEAST_BAR_WIDTH = 8;
constexpr const char* ERASE_LINE = "\r\x1b[K";

bool canOverwriteLines() {
    const char* terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) == 1 && terminal && std::strcmp(terminal, "dumb") != 0;
}

std::string bar(int done, int of, std::size_t width) {
    const auto filled = width * static_cast<std::size_t>(done) / static_cast<std::size_t>(of);
    return "[" + std::string(filled, '#') + std::string(width - filled, '.') + "] ";
}

/// As much of a bar as there is room for, and the text.
std::string withBar(const std::string& text, int done, int of, std::size_t room) {
    const std::size_t frame = bar(0, 1, 0).size();
    if (text.size() + frame + LEAST_BAR_WIDTH > room) return text;
    return bar(done, of, std::min(BAR_WIDTH, room - text.size() - frame)) + text;
}

}  // namespace

std::string liveLine(const IterationRecord& record, int of, std::size_t width) {
    std::vector<std::string> fields = {formatted("%d/%d", record.iteration, of),
                                       formatted("  compliance %.6g", record.compliance),
                                       formatted("  volume %.1f %%", 100 * record.volume),
                                       formatted("  change %.4f", record.change),
                                       formatted("  %.1f ms", double(record.times.totalTime))};
    const auto line = [&] { return std::accumulate(fields.begin(), fields.end(), std::string()); };
    // The change tells how far the run is; the volume settles early.
    for (const std::size_t leastWorth : {4, 2, 3, 1, 0})
        if (line().size() > width) fields[leastWorth].clear();
    return withBar(line(), record.iteration, of, width);
}

Progress::Progress(int iterations) : last(iterations), live(canOverwriteLines()) {
    // The library prints a line of its own before the first iteration.
    std::printf("preparing %s\n", counted(static_cast<std::size_t>(last), "iteration").c_str());
    std::fflush(stdout);
}

void Progress::show(const IterationRecord& record) {
    latest = record;
    if (live)
        // A line that wraps could not be overwritten.
        showLine(liveLine(record, last, terminalWidth(STDOUT_FILENO).value_or(80) - 1));
    else if (record.iteration == 1 || record.iteration % INTERVAL == 0)
        showPlain(record);
}

void Progress::showLine(const std::string& text) {
    std::printf("%s%s", ERASE_LINE, text.c_str());
    std::fflush(stdout);
    lineOpen = true;
}

void Progress::showPlain(const IterationRecord& record) {
    if (printed == 0) std::printf("iteration    compliance   volume   change        ms\n");
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
