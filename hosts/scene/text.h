#pragma once

#include <string>
#include <vector>

/// What std::printf would print.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

/// The text with every control character replaced by a space.
std::string onOneLine(std::string text);

/// The text in quotes, its middle left out when it is long.
std::string quoted(const std::string& text);

/// The text, its middle left out when it is longer than `most` bytes.
std::string shortened(const std::string& text, std::size_t most);

/// ", did you mean loads?" when one of the allowed words is near to what was found, else nothing.
std::string didYouMean(const std::string& found, const std::vector<std::string>& allowed);

/// The words with commas between them.
std::string listed(const std::vector<std::string>& words);
