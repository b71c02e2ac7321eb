#pragma once

#include <cstddef>
#include <string>

#include "run/iteration_record.h"

using namespace voxam;

/// The line of a terminal that shows an iteration in `width` columns. What does not fit is left
/// out: the bar, then the time, the volume, the change, the compliance, and the iteration last.
std::string liveLine(const IterationRecord& record, int of, std::size_t width);

/// Tells on standard output how a run gets on: on a terminal in one line that is overwritten, else
/// in a line for every tenth iteration.
class Progress {
public:
    /// `iterations` is the number that the run has at most. Shows at once that it begins: the first
    /// iteration of a large plate takes a while.
    explicit Progress(int iterations);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { closeLine(); }

    void show(const IterationRecord& record);

    /// A line of its own that stays.
    void note(int iteration, const std::string& text);

    /// Ends with the last iteration shown, if there was one.
    void finish();

    /// What follows begins on a line of its own.
    void closeLine();

private:
    void showPlain(const IterationRecord& record);
    void showPending();
    void showLine(const std::string& text);

    int last;
    bool live;
    bool lineOpen = false;  // the live line waits to be overwritten
    int printed = 0;        // the last iteration that has a plain line
    IterationRecord latest;
};
