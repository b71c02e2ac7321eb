#include "Timer.h"

#include <gtest/gtest.h>

#include <chrono>

#include "IterationTimers.h"
#include "voxam.h"

namespace {

using std::chrono::system_clock;

double microseconds(system_clock::duration d) {
    return std::chrono::duration<double, std::micro>(d).count();
}

void pass(std::chrono::microseconds time) {
    const auto end = system_clock::now() + time;
    while (system_clock::now() < end) continue;
}

TEST(TimerTest, ThatWasNotStartedCountsFromTheEpoch) {
    Timer timer;
    const double epoch = microseconds(system_clock::now().time_since_epoch());
    EXPECT_NEAR(timer.getElapsedTimeInMicroSec(), epoch, 1e7);
}

TEST(TimerTest, MeasuresWhatLiesBetweenStartAndStop) {
    Timer timer;
    for (int round = 0; round < 2; ++round) {  // a start discards what was measured before
        const auto beforeStart = system_clock::now();
        timer.start();
        const auto afterStart = system_clock::now();
        pass(std::chrono::microseconds(500));
        const auto beforeStop = system_clock::now();
        timer.stop();
        const auto afterStop = system_clock::now();
        const double elapsed = timer.getElapsedTimeInMicroSec();
        EXPECT_GE(elapsed, microseconds(beforeStop - afterStart) - 1.0);  // whole microseconds
        EXPECT_LE(elapsed, microseconds(afterStop - beforeStart) + 1.0);
    }
}

TEST(TimerTest, RunsUntilItIsStoppedAndConvertsItsUnits) {
    Timer timer;
    timer.stop();
    timer.start();
    const double first = timer.getElapsedTimeInMicroSec();
    pass(std::chrono::microseconds(50));
    EXPECT_GT(timer.getElapsedTimeInMicroSec(), first);
    timer.stop();
    const double stopped = timer.getElapsedTimeInMicroSec();
    pass(std::chrono::microseconds(50));
    EXPECT_EQ(timer.getElapsedTimeInMicroSec(), stopped);
    EXPECT_DOUBLE_EQ(timer.getElapsedTimeInMilliSec(), stopped / 1e3);
    EXPECT_DOUBLE_EQ(timer.getElapsedTimeInSec(), stopped / 1e6);
    EXPECT_DOUBLE_EQ(timer.getElapsedTime(), stopped / 1e6);
}

TEST(IterationTimersTest, EachFillsItsFieldOfTheHostsRecord) {
    constexpr std::pair<Timer IterationTimers::*, float RuntimeStat::*> fields[] = {
        {&IterationTimers::iterationTimer, &RuntimeStat::totalTime},
        {&IterationTimers::updateTimer, &RuntimeStat::updateTime},
        {&IterationTimers::stateTimer, &RuntimeStat::stateTime},
        {&IterationTimers::assembleTimer, &RuntimeStat::assembleTime},
        {&IterationTimers::factorizeTimer, &RuntimeStat::factorizeTime},
        {&IterationTimers::solveTimer, &RuntimeStat::solveTime},
        {&IterationTimers::sensitivityTimer, &RuntimeStat::sensitivityTime},
        {&IterationTimers::meshTimer, &RuntimeStat::meshTime}};
    IterationTimers timers;
    for (const auto& [timer, field] : fields) (timers.*timer).start();
    for (const auto& [timer, field] : fields) {  // each runs longer than those before
        pass(std::chrono::microseconds(20));
        (timers.*timer).stop();
    }
    RuntimeStat stat{};
    timers.publish(stat);
    for (const auto& [timer, field] : fields) {
        EXPECT_EQ(stat.*field, static_cast<float>((timers.*timer).getElapsedTimeInMilliSec()));
        EXPECT_GT(stat.*field, 0.0F);
    }
}

}  // namespace
