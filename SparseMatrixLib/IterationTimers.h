#pragma once

#include "Timer.h"

struct RuntimeStat;

/// Where the time of an iteration goes.
struct IterationTimers {
    Timer assembleTimer;
    Timer factorizeTimer;
    Timer solveTimer;
    Timer stateTimer;
    Timer sensitivityTimer;
    Timer iterationTimer;
    Timer updateTimer;
    Timer meshTimer;

    /// Writes the host's record of the times. It is defined with the exports, whose header owns the
    /// record.
    void publish(RuntimeStat& stat);
};
