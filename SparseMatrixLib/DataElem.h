#pragma once

#include <utility>

/// One candidate of the blob's redistribution.
struct DataElem {
    double value;    ///< the element's filtered blob sensitivity
    unsigned index;  ///< its number on the coarse grid
};

inline void swap(DataElem& a, DataElem& b) noexcept {
    std::swap(a.value, b.value);
    std::swap(a.index, b.index);
}
