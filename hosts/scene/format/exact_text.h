#pragma once

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace voxam::inline format {

#ifdef __EMSCRIPTEN__

// The standard library of Emscripten has no std::to_chars() for floating point. This
// version adds digits until the text reads back as the same number.
inline std::string exactText(double value, bool exponent, int least) {
    std::array<char, 400> text;
    int digits = least;
    do {
        if (exponent)
            std::snprintf(text.data(), text.size(), "%.*g", digits++, value);
        else
            std::snprintf(text.data(), text.size(), "%.*f", digits++, value);
    } while (std::strtod(text.data(), nullptr) != value && digits < 340);
    return text.data();
}

/// The shortest text that reads back as the same number.
inline std::string exactText(double value) { return exactText(value, true, 1); }

/// The same number without an exponent.
inline std::string exactDecimalText(double value) { return exactText(value, false, 0); }

#else

/// The shortest text that reads back as the same number.
template <typename Number>
std::string exactText(Number value) {
    std::array<char, 64> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

/// The same number without an exponent.
inline std::string exactDecimalText(double value) {
    std::array<char, 400> text;
    return {
        text.data(),
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ptr};
}

#endif

}  // namespace voxam::inline format
