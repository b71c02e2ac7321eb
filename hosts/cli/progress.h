#pragma once

#include <cstddef>
#include <string>

#include "run/iteration_record.h"

using namespace voxam;

/// The line of a terminal that shows an iteration in `width` columns. If parts do not fit, it omits
/// first the bar, then the time, the volume, the change, the compliance, and last the iteration.
std::string liveLine(const IterationRecord& record, int of, std::size_t width);

/// Shows the progress of a run on standard output: on a terminal in one line that is overwritten,
/// elsewhere in a line for every tenth iteration.
class Progress {
public:
    /// `iterations` is the largest possible number of iterations. Shows the start at once, because
    /// the first iteration of a large plate takes a while.
    explicit Progress(int iterations);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { closeLine(); }

    void show(const IterationRecord& record);

    /// Prints a line that stays.
    void note(int iteration, const std::string& text);

    /// Ends with the last iteration shown, if there was one.
    void finish();

    /// Makes the next output start on a new line.
    void closeLine();

private:
    void showPlain(const IterationRecord& record);
    void showPending();
    void showLine(const std::string& text);

    int last;
    bool live;
    bool lineOpen = false;  // the last line will be overwritten
    int printed = 0;        // the last iteration that has a plain line
    IterationRecord latest;
};
