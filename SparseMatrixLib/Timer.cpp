#include "Timer.h"

namespace {

double inMicroseconds(const timeval& count) {
    return static_cast<double>(count.tv_sec) * 1e6 + static_cast<double>(count.tv_usec);
}

}  // namespace

void Timer::start() {
    stopped = 0;
    gettimeofday(&startCount, nullptr);
}

void Timer::stop() {
    stopped = 1;
    gettimeofday(&endCount, nullptr);
}

double Timer::getElapsedTimeInMicroSec() {
    if (!stopped) gettimeofday(&endCount, nullptr);
    startTimeInMicroSec = inMicroseconds(startCount);
    endTimeInMicroSec = inMicroseconds(endCount);
    return endTimeInMicroSec - startTimeInMicroSec;
}

double Timer::getElapsedTimeInMilliSec() { return getElapsedTimeInMicroSec() * 0.001; }

double Timer::getElapsedTimeInSec() { return getElapsedTimeInMicroSec() * 1e-6; }

double Timer::getElapsedTime() { return getElapsedTimeInSec(); }
