#pragma once

#include <array>
#include <charconv>
#include <string>

/// The shortest text that reads back as the same number.
template <typename Number>
std::string exactText(Number value) {
    std::array<char, 64> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

/// The same without an exponent.
inline std::string exactDecimalText(double value) {
    std::array<char, 400> text;
    return {
        text.data(),
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ptr};
}
