#include "CheckedProduct.h"

#include <algorithm>
#include <limits>
#include <new>

unsigned checkedProduct(std::initializer_list<uint64_t> sizes) {
    constexpr uint64_t largestInt = std::numeric_limits<int>::max();
    if (std::find(sizes.begin(), sizes.end(), 0U) != sizes.end()) return 0;
    uint64_t product = 1;
    for (const uint64_t size : sizes) {
        if (size > largestInt / product) throw std::bad_alloc();
        product *= size;
    }
    return static_cast<unsigned>(product);
}
