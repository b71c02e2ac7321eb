#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace test {

/// An array for the library to write to, between guard zones.
template <typename T>
class Guarded {
public:
    static constexpr T UNTOUCHED = 77;

    explicit Guarded(std::size_t size) : values(size + 2 * GUARD, UNTOUCHED) {}

    T* data() { return values.data() + GUARD; }
    auto begin() const { return values.begin() + GUARD; }
    auto end() const { return values.end() - GUARD; }
    std::vector<T> copy() const { return {begin(), end()}; }

    bool untouched() const { return isUntouched(begin(), end()); }
    /// Whether nothing was written beside the array.
    bool isIntact() const {
        return isUntouched(values.begin(), begin()) && isUntouched(end(), values.end());
    }

private:
    static constexpr std::ptrdiff_t GUARD = 64;

    template <typename Iterator>
    static bool isUntouched(Iterator from, Iterator to) {
        return std::all_of(from, to, [](T v) { return v == UNTOUCHED; });
    }

    std::vector<T> values;
};

/// Whether a copy of such an array shows that nothing was written.
template <typename T>
bool untouched(const std::vector<T>& copy) {
    return std::ranges::all_of(copy, [](T v) { return v == Guarded<T>::UNTOUCHED; });
}

}  // namespace test
