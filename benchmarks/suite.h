// What is measured, and how: every benchmark takes samples, and reports the median of each value.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "table.h"

/// The grid of a problem and its two refinements.
struct Plate {
    int width;
    int height;
    int subdivision = 1;
    int meshFactor = 1;

    int elements() const { return width * height; }
    unsigned dofs() const { return 2U * static_cast<unsigned>((width + 1) * (height + 1)); }
    std::string grid() const { return std::to_string(width) + "x" + std::to_string(height); }
    std::string refinement() const {
        return std::to_string(subdivision) + "," + std::to_string(meshFactor);
    }
};

/// Values by name. The first is the time of the sample.
using Sample = std::vector<std::pair<std::string, double>>;

/// Takes one sample. Throws std::runtime_error when what it measures fails.
using Sampler = std::function<Sample()>;

/// Wall time of an operation in milliseconds.
template <typename Operation>
double timed(const Operation& operation) {
    const auto start = std::chrono::steady_clock::now();
    operation();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double median(std::vector<double> values);

/// Registers benchmarks with Google Benchmark, by sections that become the tables.
class Suite {
public:
    /// A quick suite leaves out the large plates and takes few samples.
    Suite(bool quick, int repetitions) : quick(quick), repetitions(repetitions) {}

    /// Begins a section. `columns` names the values that its table shows.
    void beginSection(const std::string& group, const std::string& title,
                      const std::vector<std::string>& columns) {
        sections.push_back({group, title, columns});
    }

    /// Adds a benchmark to the section. Each repetition calls `prepare` once and then the sampler
    /// it returns. `iterationsPerSample` is what a sample costs, in iterations of the optimiser:
    /// the cheaper a sample and the smaller the plate, the more samples are taken.
    void add(const std::string& variant, const Plate& plate, double iterationsPerSample,
             const std::function<Sampler()>& prepare);

    const std::vector<Section>& getSections() const { return sections; }

private:
    int sampleCount(const Plate& plate, double iterationsPerSample) const;

    bool quick;
    int repetitions;
    std::vector<Section> sections;
};

void addAppBenchmarks(Suite& suite);
void addGameBenchmarks(Suite& suite);
void addAnalysisBenchmarks(Suite& suite);
void addAssemblyBenchmarks(Suite& suite);
