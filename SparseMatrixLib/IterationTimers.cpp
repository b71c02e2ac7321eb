#include "IterationTimers.h"

#include "voxam.h"

void IterationTimers::publish(RuntimeStat& stat) {
    const auto milliseconds = [](Timer& timer) {
        return static_cast<float>(timer.getElapsedTimeInMilliSec());
    };
    stat.totalTime = milliseconds(iterationTimer);
    stat.updateTime = milliseconds(updateTimer);
    stat.stateTime = milliseconds(stateTimer);
    stat.assembleTime = milliseconds(assembleTimer);
    stat.factorizeTime = milliseconds(factorizeTimer);
    stat.solveTime = milliseconds(solveTimer);
    stat.sensitivityTime = milliseconds(sensitivityTimer);
    stat.meshTime = milliseconds(meshTimer);
}
