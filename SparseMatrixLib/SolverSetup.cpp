#include "SolverSetup.h"

#include <algorithm>
#include <limits>
#include <new>

namespace {

constexpr uint64_t LARGEST_INT = std::numeric_limits<int>::max();

// The product, or LARGEST_INT + 1 when it is larger than LARGEST_INT.
uint64_t saturatedProduct(std::initializer_list<uint64_t> sizes) {
    if (std::find(sizes.begin(), sizes.end(), 0U) != sizes.end()) return 0;
    uint64_t product = 1;
    for (const uint64_t size : sizes) {
        if (size > LARGEST_INT / product) return LARGEST_INT + 1;
        product *= size;
    }
    return product;
}

}  // namespace

unsigned checkedProduct(std::initializer_list<uint64_t> sizes) {
    const uint64_t product = saturatedProduct(sizes);
    if (product > LARGEST_INT) throw std::bad_alloc();
    return static_cast<unsigned>(product);
}

int clampedCapacity(std::initializer_list<uint64_t> sizes) {
    return static_cast<int>(std::min(saturatedProduct(sizes), LARGEST_INT));
}

kmat::DenseMatrix undefinedVector(unsigned rows) {
    constexpr double undefined = std::numeric_limits<double>::quiet_NaN();
    kmat::DenseMatrix vector(rows, 1, undefined);
    if (!vector.begin()) throw std::bad_alloc();
    vector.fill(undefined);
    return vector;
}

bool isOnGrid(const TopologyOptimizationComponentData& record, unsigned nodesX, unsigned nodesY) {
    return record.x >= 0 && static_cast<unsigned>(record.x) < nodesX && record.y >= 0 &&
           static_cast<unsigned>(record.y) < nodesY;
}
