#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <type_traits>

namespace test {

/// FNV-1a over the bytes of numbers. NaNs count as one, since their payload is no result.
class Hash {
public:
    template <typename Number>
    void add(Number value) {
        if constexpr (std::is_floating_point_v<Number>) {
            if (std::isnan(value)) value = 0;
        }
        using Bits = std::conditional_t<sizeof(Number) == 8, uint64_t, uint32_t>;
        const auto bits = std::bit_cast<Bits>(value);
        for (unsigned i = 0; i < sizeof bits; ++i) {
            state = (state ^ ((bits >> (8 * i)) & 0xff)) * 0x100000001b3;
        }
    }
    void add(const std::string& text) {
        for (const char c : text) add(static_cast<int>(c));
    }
    uint64_t value() const { return state; }

private:
    uint64_t state = 0xcbf29ce484222325;
};

}  // namespace test
