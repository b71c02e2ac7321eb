#include "table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iomanip>
#include <ostream>
#include <sstream>

namespace {

// About three digits.
std::string formatted(double value) {
    const int decimals = value >= 100.0 ? 0 : value >= 10.0 ? 1 : value >= 1.0 ? 2 : 3;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return text.data();
}

std::size_t widthOf(const std::string& heading) {
    constexpr std::size_t least = 8;
    constexpr std::size_t variant = 30;
    return heading == "variant" ? variant : std::max(least, heading.size());
}

}  // namespace

// There is an aggregate only when there were several repetitions.
void TableReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Iteration || run.aggregate_name == "median") reportRun(run);
    }
}

void TableReporter::reportRun(const Run& run) {
    std::istringstream name(run.run_name.function_name);
    std::vector<std::string> cells;
    for (std::string part; std::getline(name, part, '/');) cells.push_back(part);
    if (!current || current->group != cells.front()) {
        beginTable(*std::find_if(sections.begin(), sections.end(), [&](const Section& section) {
            return section.group == cells.front();
        }));
    }
    cells.erase(cells.begin());
    for (const std::string& column : current->columns) {
        cells.push_back(run.error_occurred ? "failed" : formatted(run.counters.at(column)));
    }
    printRow(cells);
    if (!run.error_occurred) return;
    failed = true;
    GetErrorStream() << run.benchmark_name() << ": " << run.error_message << std::endl;
}

void TableReporter::beginTable(const Section& section) {
    current = &section;
    headings = {"grid", "refinement"};
    if (section.hasVariants) headings.insert(headings.begin(), "variant");
    textColumns = headings.size();
    headings.insert(headings.end(), section.columns.begin(), section.columns.end());
    std::vector<std::string> rules;
    for (const std::string& heading : headings) {
        rules.emplace_back(widthOf(heading), '-');
        if (rules.size() > textColumns) rules.back().back() = ':';
    }
    GetOutputStream() << "\n" << section.group << ": " << section.title << "\n\n";
    printRow(headings);
    printRow(rules);
}

void TableReporter::printRow(const std::vector<std::string>& cells) {
    std::ostream& out = GetOutputStream();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        out << "| " << (i < textColumns ? std::left : std::right)
            << std::setw(static_cast<int>(widthOf(headings[i]))) << cells[i] << ' ';
    }
    out << '|' << std::endl;
}
