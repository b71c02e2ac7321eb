// Random choices that are the same on every platform for the same seed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>

namespace soak {

class Dice {
public:
    explicit Dice(uint64_t seed) : engine(seed) {}

    uint64_t bits() { return engine(); }

    /// A number of 0 .. most.
    int upTo(int most) { return static_cast<int>(engine() % (static_cast<uint64_t>(most) + 1)); }
    int between(int least, int most) { return least + upTo(most - least); }
    bool oneIn(int times) { return upTo(times - 1) == 0; }

    /// A number from 0 up to but excluding 1.
    double fraction() { return static_cast<double>(engine() >> 11) * 0x1p-53; }

    template <typename T>
    T pick(std::initializer_list<T> values) {
        return std::data(values)[engine() % values.size()];
    }
    template <typename Container>
    auto& pickFrom(Container& values) {
        return values[static_cast<std::size_t>(engine() % values.size())];
    }

private:
    std::mt19937_64 engine;
};

}  // namespace soak
