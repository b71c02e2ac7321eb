#include "suite.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <exception>
#include <map>

namespace {

constexpr int MOST_ELEMENTS_WHEN_QUICK = 16000;

void run(benchmark::State& state, const std::function<Sampler()>& prepare) {
    std::map<std::string, std::vector<double>> values;
    try {
        const Sampler sampler = prepare();
        for ([[maybe_unused]] auto iteration : state) {
            const Sample sample = sampler();
            state.SetIterationTime(sample.front().second / 1000.0);
            for (const auto& [name, value] : sample) values[name].push_back(value);
        }
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
        return;
    }
    for (const auto& [name, list] : values) state.counters[name] = median(list);
}

}  // namespace

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2.0;
}

void Suite::add(const std::string& variant, const Plate& plate, double iterationsPerSample,
                const std::function<Sampler()>& prepare) {
    if (quick && plate.elements() > MOST_ELEMENTS_WHEN_QUICK) return;
    Section& section = sections.back();
    if (!variant.empty()) section.hasVariants = true;
    const std::string name = section.group + (variant.empty() ? "" : "/" + variant) + "/" +
                             plate.grid() + "/" + plate.refinement();
    benchmark::RegisterBenchmark(name.c_str(), [prepare](auto& state) { run(state, prepare); })
        ->Iterations(sampleCount(plate, iterationsPerSample))
        ->Repetitions(repetitions)
        ->DisplayAggregatesOnly()
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

int Suite::sampleCount(const Plate& plate, double iterationsPerSample) const {
    const double affordable = 600000.0 / (plate.elements() * iterationsPerSample);
    const auto count = static_cast<int>(std::clamp(affordable, 5.0, 100.0));
    return quick ? std::max(3, count / 5) : count;
}
