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
