#pragma once

#include <sys/time.h>

/// Wall-clock stopwatch with microsecond resolution. One owner; not thread-safe. Setting the system
/// clock between start and stop shows in the result.
class Timer {
public:
    void start();
    void stop();

    /// Time between start() and stop(), or up to now while running; a running timer keeps running.
    /// A timer that was never started counts from the clock's epoch.
    double getElapsedTimeInMicroSec();
    double getElapsedTimeInMilliSec();
    double getElapsedTimeInSec();
    /// In seconds.
    double getElapsedTime();

private:
    double startTimeInMicroSec = 0.0;
    double endTimeInMicroSec = 0.0;
    int stopped = 0;
    timeval startCount{};
    timeval endCount{};
};
