#include "time_table.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <numeric>

namespace {

struct Part {
    const char* name;
    std::function<float(const RuntimeStat&)> time;
};

float rest(const RuntimeStat& t) {
    return t.totalTime - t.assembleTime - t.factorizeTime - t.solveTime - t.sensitivityTime -
           t.updateTime - t.meshTime;
}

const std::vector<Part> PARTS = {{"assembly", &RuntimeStat::assembleTime},
                                 {"factorisation", &RuntimeStat::factorizeTime},
                                 {"solves", &RuntimeStat::solveTime},
                                 {"sensitivities", &RuntimeStat::sensitivityTime},
                                 {"update", &RuntimeStat::updateTime},
                                 {"picture", &RuntimeStat::meshTime},
                                 {"rest", rest},
                                 {"iteration", &RuntimeStat::totalTime}};

float median(std::vector<float>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

std::vector<PartTime> partTimes(const std::vector<IterationRecord>& records) {
    double total = 0;
    for (const auto& record : records) total += double(record.times.totalTime);
    std::vector<PartTime> result;
    for (const Part& part : PARTS) {
        std::vector<float> times;
        times.reserve(records.size());
        for (const auto& record : records) times.push_back(part.time(record.times));
        const double sum = std::accumulate(times.begin(), times.end(), 0.0);
        result.push_back({part.name, total > 0 ? sum / total : 0, double(median(times))});
    }
    return result;
}

void printTimeTable(const std::vector<PartTime>& times) {
    std::printf("\n  time spent      share       median\n");
    for (const PartTime& part : times)
        std::printf("  %-13s %5.1f %% %9.3f ms\n", part.name, 100 * part.share, part.median);
}
