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

/// Of the forces of a load, for the optimiser.
double factorOf(const Load& load, const Scene& scene) {
    return std::sqrt(scene.weight(load.loadCase));
}

/// `forceAtNode` turns a node's share of a force into the one that the library gets.
template <typename ForceAtNode>
std::vector<float> recordsOf(const std::vector<Load>& loads, ForceAtNode forceAtNode) {
    std::vector<float> records;
    for (const Load& load : loads) {
        const double nodes = static_cast<double>(load.x.count()) * load.y.count();
        // In the order of the Python package, to the same bits.
        const double fx = forceAtNode(load.fx / nodes, load);
        const double fy = forceAtNode(load.fy / nodes, load);
        forEachNode(load.x, load.y,
                    [&](int x, int y) { appendRecord(records, x, y, fx, fy, load.loadCase); });
    }
    return records;
}

}  // namespace

std::vector<float> loadRecords(const Scene& scene) {
    return recordsOf(scene.loads, [](double force, const Load&) { return force; });
}

std::vector<float> weightedLoadRecords(const Scene& scene, double forceUnit) {
    return recordsOf(scene.loads, [&](double force, const Load& load) {
        return force * factorOf(load, scene) / forceUnit;
    });
}

double forceUnit(const Scene& scene) {
    double largest = 0;
    const auto look = [&](const Settings& settings) {
        for (const Load& load : settings.loads) {
            const double factor = factorOf(load, scene);
            largest = std::max({largest, std::abs(load.fx) * factor, std::abs(load.fy) * factor});
        }
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
