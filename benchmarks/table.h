#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

/// One table: a group of benchmarks, and which of their counters it shows in which order.
struct Section {
    std::string group;
    std::string title;
    std::vector<std::string> columns;
    bool hasVariants = false;
};

/// Prints tables, in Markdown: a row for each benchmark, named group/variant/grid/refinement or
/// group/grid/refinement, as soon as it is done. Of several repetitions it shows the median.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    explicit TableReporter(const std::vector<Section>& sections) : sections(sections) {}

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override;

    bool hasFailures() const { return failed; }

private:
    void reportRun(const Run& run);
    void beginTable(const Section& section);
    void printRow(const std::vector<std::string>& cells);

    const std::vector<Section>& sections;
    const Section* current = nullptr;
    std::vector<std::string> headings;  ///< of the current table
    std::size_t textColumns = 0;        ///< how many of them come before the numbers
    bool failed = false;
};
