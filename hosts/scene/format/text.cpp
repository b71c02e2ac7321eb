#include "format/text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <numeric>
#include <utility>

#include "format/exact_text.h"

namespace voxam::inline format {

namespace {

constexpr std::size_t LONGEST_QUOTE = 60;
constexpr std::size_t LONGEST_NAME = 200;  // of a file
constexpr std::size_t LONGEST_WORD = 40;   // that could be one of ours, mistyped

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

/// Whether the byte goes on with a character that began before it, in UTF-8.
bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }

std::string asUtf8(const std::string& text) {
    using Json = nlohmann::json;
    return Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace));
}

/// The words that begin with this one; nothing where there are many.
std::vector<std::string> wordsBeginningWith(const std::string& word,
                                            const std::vector<std::string>& words) {
    constexpr std::size_t most = 3;
    constexpr std::size_t leastLetters = 2;
    std::vector<std::string> found;
    if (word.size() < leastLetters + word.find_first_not_of('-')) return found;
    for (const auto& candidate : words)
        if (lowerCase(candidate).starts_with(word)) found.push_back(candidate);
    if (found.size() > most) found.clear();
    return found;
}

void blankOut(std::string& text, const std::string& character) {
    for (auto at = text.find(character); at != std::string::npos; at = text.find(character, at))
        text.replace(at, character.size(), " ");
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
    text = asUtf8(text);
    for (char& character : text)
        if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') character = ' ';
    // Further controls, which begin at U+0080, and the separators of lines and of paragraphs.
    for (int code = 0x80; code < 0xa0; ++code) blankOut(text, {'\xc2', static_cast<char>(code)});
    blankOut(text, "\u2028");
    blankOut(text, "\u2029");
    return text;
}

std::string nameOf(const std::filesystem::path& file) {
    return file.empty() ? "\"\"" : shortened(onOneLine(file.string()), LONGEST_NAME);
}

std::string shortened(const std::string& text, std::size_t most) {
    if (text.size() <= most) return text;
    std::size_t head = (most - 3) / 2;
    std::size_t tail = text.size() - head;
    while (head > 0 && continues(text[head])) --head;
    while (tail < text.size() && continues(text[tail])) ++tail;
    return text.substr(0, head) + "..." + text.substr(tail);
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
    std::string meant = best ? *best : "";
    const auto longer = wordsBeginningWith(word, allowed);
    if (least > 1 && !longer.empty()) {
        meant.clear();
        for (const auto& candidate : longer) meant += (meant.empty() ? "" : " or ") + candidate;
    }
    return meant.empty() ? "" : ", did you mean " + meant + "?";
}

std::size_t characterCount(const std::string& text) {
    return text.size() -
           static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
}

std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (const auto& word : words) text += (text.empty() ? "" : ", ") + word;
    return text;
}

std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string plainNumber(double value) {
    const double size = std::abs(value);
    return size == 0 || (size >= 1e-10 && size < 1e15) ? exactDecimalText(value) : exactText(value);
}

std::string placeText(double x, double y) {
    const auto rounded = [](double value) { return std::round(100 * value) / 100; };
    return formatted("x %.6g, y %.6g", rounded(x), rounded(y));
}

std::string wrapped(const std::string& text, std::size_t width, std::size_t indent) {
    std::string result;
    std::size_t column = 0;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t begin = std::min(text.find_first_not_of(' ', end), text.size());
        std::string blanks(begin - end, ' ');
        end = std::min(text.find(' ', begin), text.size());
        while (text.compare(end, 2, " %") == 0)  // stays with its number
            end = std::min(text.find(' ', end + 1), text.size());
        const std::string word = text.substr(begin, end - begin);
        const std::size_t room =
            width > column + blanks.size() ? width - column - blanks.size() : 0;
        if (column > indent && characterCount(word) > room) {
            result += '\n';
            blanks.assign(indent, ' ');
            column = 0;
        }
        result += blanks + word;
        column += blanks.size() + characterCount(word);
    }
    return result;
}

}  // namespace voxam::inline format
