#pragma once

#include <algorithm>
#include <string_view>

/// Writes a text to the host's buffer of `length` bytes, cut to fit and always terminated. A null
/// buffer or a length below 1 gets nothing.
inline void writeText(std::string_view text, int length, char* buffer) {
    if (!buffer || length < 1) return;
    const std::size_t count = std::min(text.size(), static_cast<std::size_t>(length - 1));
    std::copy_n(text.begin(), count, buffer);
    buffer[count] = '\0';
}
