#include "run/records.h"

#include <algorithm>
#include <cmath>

namespace voxam::inline run {

namespace {

template <typename Visit>
void forEachNode(const Range& columns, const Range& rows, Visit visit) {
    for (int x = columns.from; x <= columns.to; ++x)
        for (int y = rows.from; y <= rows.to; ++y) visit(x, y);
}

void appendRecord(std::vector<float>& records, int x, int y, double third, double fourth,
                  int fifth) {
    for (const double value : {double(x), double(y), third, fourth, double(fifth)})
        records.push_back(static_cast<float>(value));
}

void append(std::vector<short>& records, const Cells& cells) {
    for (const Cell& cell : cells) {
        records.push_back(static_cast<short>(cell.x));
        records.push_back(static_cast<short>(cell.y));
    }
}

}  // namespace

std::vector<float> loadRecords(const Settings& settings, double forceUnit) {
    std::vector<float> records;
    for (const Load& load : settings.loads) {
        const double nodes = static_cast<double>(load.x.count()) * load.y.count();
        forEachNode(load.x, load.y, [&](int x, int y) {
            // In the order of the Python package, to the same bits.
            appendRecord(records, x, y, load.fx / nodes / forceUnit, load.fy / nodes / forceUnit,
                         load.loadCase);
        });
    }
    return records;
}

double forceUnit(const Scene& scene) {
    double largest = 0;
    const auto look = [&](const Settings& settings) {
        for (const Load& load : settings.loads)
            largest = std::max({largest, std::abs(load.fx), std::abs(load.fy)});
    };
    look(scene);
    for (const Change& change : scene.timeline) look(change.settings);
    return largest > 0 ? largest : 1;
}

std::vector<float> supportRecords(const Settings& settings) {
    std::vector<float> records;
    for (const Support& support : settings.supports)
        forEachNode(support.x, support.y, [&](int x, int y) {
            if (support.fixX) appendRecord(records, x, y, 0, 0, 0);
            if (support.fixY) appendRecord(records, x, y, 1, 0, 0);
        });
    return records;
}

std::vector<short> cellRecords(const Area& area) {
    std::vector<short> records = {static_cast<short>(area.cells.size())};
    append(records, area.cells);
    return records;
}

std::vector<short> passiveRecords(const PassiveAreas& passive) {
    std::vector<short> records;
    const auto areas = {&passive.voids, &passive.solids, &passive.secondSolids};
    for (const Area* area : areas) records.push_back(static_cast<short>(area->cells.size()));
    for (const Area* area : areas) append(records, area->cells);
    return records;
}

}  // namespace voxam::inline run
