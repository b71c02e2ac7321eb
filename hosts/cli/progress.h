#pragma once

#include <string>

#include "iteration_record.h"

/// Tells on standard output how a run gets on: on a terminal in one line that is overwritten, else
/// in a line for every tenth iteration.
class Progress {
public:
    /// `iterations` is the number that the run has at most.
    explicit Progress(int iterations);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// An error message that follows is to begin on a line of its own.
    ~Progress() { closeLine(); }

    void show(const IterationRecord& record);

    /// A line of its own that stays.
    void note(int iteration, const std::string& text);

    /// Ends with the last iteration shown, if there was one.
    void finish();

private:
    void showLive(const IterationRecord& record);
    void showPlain(const IterationRecord& record);
    void showPending();
    void closeLine();

    int last;
    bool live;
    bool lineOpen = false;  // the live line waits to be overwritten
    bool headed = false;
    int printed = 0;  // the last iteration that has a plain line
    IterationRecord latest;
};
