#include "memory_need.h"

#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <numbers>

namespace {

// A filter holds an index and a weight for each pair of cells that are nearer than its radius, and
// is put together in memory that grows by doubling.
constexpr double BYTES_OF_PAIR = 28;
constexpr double BYTES_OF_CELL = 150;      // vectors of the design and of the picture
constexpr double DESIGN_RADIUS = 3;        // in cells of the design
constexpr double BYTES_OF_NODE = 1500;     // the equations
constexpr double BYTES_OF_FACTOR = 130;    // its entries grow with the logarithm of the nodes
constexpr double BYTES_OF_LOAD_CASE = 32;  // forces and displacements, two each of a node

/// Pairs of cells in a filter, each counted once.
double pairs(double cells, double radius) {
    return cells * (0.5 * std::numbers::pi * radius * radius + radius + 1);
}

/// The value in bytes of a line such as "MemAvailable:  123 kB", or infinity.
double systemMemory(const std::string& wanted) {
    std::ifstream lines("/proc/meminfo");
    std::string key;
    double kilobytes = 0;
    std::string unit;
    while (lines >> key >> kilobytes && std::getline(lines, unit))
        if (key == wanted + ":") return 1024 * kilobytes;
    return std::numeric_limits<double>::infinity();
}

}  // namespace

MemoryNeed memoryNeed(const Scene& scene) {
    const double elements = 1.0 * scene.width * scene.height;
    const double nodes = (scene.width + 1.0) * (scene.height + 1.0);
    const double designCells = elements * scene.subdivision * scene.subdivision;
    const double pictureCells = designCells * scene.meshFactor * scene.meshFactor;
    const double design =
        BYTES_OF_PAIR * pairs(designCells, DESIGN_RADIUS) + BYTES_OF_CELL * designCells;
    const double picture =
        BYTES_OF_PAIR * pairs(pictureCells, scene.meshFactor) + BYTES_OF_CELL * pictureCells;
    const double equations = nodes * (BYTES_OF_NODE + BYTES_OF_FACTOR * std::log2(nodes) +
                                      BYTES_OF_LOAD_CASE * scene.loadCases);
    MemoryNeed need{design + picture + equations, "grid", "lower its width and height"};
    if (picture > std::max(design, equations) && scene.meshFactor > 1) {
        need.key = "meshFactor";
        need.advice = "lower meshFactor or subdivision";
    } else if (design + picture > equations && scene.subdivision > 1) {
        need.key = "subdivision";
        need.advice = "lower it";
    }
    return need;
}

double availableMemory() {
    double available = systemMemory("MemAvailable");
    rlimit limit = {};
    if (getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        available = std::min(available, static_cast<double>(limit.rlim_cur));
    return available;
}
