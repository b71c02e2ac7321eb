#include "text.h"

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <numeric>
#include <utility>

namespace {

constexpr std::size_t LONGEST_QUOTE = 60;
constexpr std::size_t LONGEST_WORD = 40;  // that could be one of ours, mistyped

std::string lowerCase(std::string text) {
    for (char& character : text)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return text;
}

/// Characters to insert, to delete or to replace, and neighbours to swap, to turn one word into the
/// other.
std::size_t distance(const std::string& from, const std::string& to) {
    std::vector<std::size_t> beforeLast(to.size() + 1);
    std::vector<std::size_t> last(to.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::vector<std::size_t> row(to.size() + 1, i);
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const bool same = from[i - 1] == to[j - 1];
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
            const bool swapped =
                i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
            if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        beforeLast = std::exchange(last, row);
    }
    return last.back();
}

}  // namespace

std::string formatted(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(static_cast<std::size_t>(std::max(0, length)), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

std::string onOneLine(std::string text) {
    for (char& character : text)
        if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') character = ' ';
    return text;
}

std::string shortened(const std::string& text, std::size_t most) {
    if (text.size() <= most) return text;
    const std::size_t half = (most - 3) / 2;
    return text.substr(0, half) + "..." + text.substr(text.size() - half);
}

std::string quoted(const std::string& text) { return '"' + shortened(text, LONGEST_QUOTE) + '"'; }

std::string didYouMean(const std::string& found, const std::vector<std::string>& allowed) {
    if (found.empty() || found.size() > LONGEST_WORD) return "";
    const std::string word = lowerCase(found);
    const std::string* best = nullptr;
    std::size_t least = std::max<std::size_t>(1, found.size() / 3) + 1;
    for (const auto& candidate : allowed) {
        const std::size_t steps = distance(word, lowerCase(candidate));
        if (steps >= least || steps >= candidate.size()) continue;
        least = steps;
        best = &candidate;
    }
    return best ? ", did you mean " + *best + "?" : "";
}

std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (const auto& word : words) text += (text.empty() ? "" : ", ") + word;
    return text;
}
