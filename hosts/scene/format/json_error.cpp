#include "format/json_error.h"

#include <algorithm>
#include <array>
#include <utility>

#include "format/text.h"

namespace voxam::inline format {

namespace {

using Phrase = std::pair<const char*, const char*>;

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The second of the first pair whose first is in the text.
template <std::size_t COUNT>
std::string translated(const std::string& text, const std::array<Phrase, COUNT>& phrases,
                       const char* otherwise) {
    for (const auto& [theirs, ours] : phrases)
        if (has(text, theirs)) return ours;
    return otherwise;
}

/// What is wrong within a word, a number or a text; nothing when it is out of place.
std::string faultWithin(const std::string& complaint) {
    constexpr std::array<Phrase, 8> faults = {
        {{"missing closing quote", "a text without its closing quote"},
         {"must be escaped",
          "a line break or control character within a text; is a closing quote "
          "missing?"},
         {"invalid string", "a text with a backslash or a byte that it must not have"},
         {"invalid number; expected digit after '-'", "a minus sign without a number"},
         {"invalid number; expected digit after '.'", "a number without digits after its point"},
         {"invalid number", "a number that is not complete"},
         {"missing closing '*/'", "a comment without its end, */"},
         {"invalid comment", "a single /; a comment begins with // or /*"}}};
    return translated(complaint, faults, "");
}

std::string whatWasExpected(const std::string& complaint) {
    constexpr std::array<Phrase, 6> expectations = {
        {{"; expected end of input", "nothing more: the scene is complete"},
         {"parsing object key", "a key in double quotes"},
         {"parsing object separator", "a colon after the key"},
         {"parsing object", "a comma or }"},
         {"parsing array", "a comma or ]"},
         {"parsing value",
          "a value: a number, a text in double quotes, true, false, null, [ or {"}}};
    return translated(complaint, expectations, "JSON");
}

std::size_t lastNonBlankBefore(const std::string& text, std::size_t position) {
    while (position > 0 && has(" \t\r\n", std::string(1, text[position - 1]))) --position;
    return position;
}

std::string whatIsThere(const std::string& text, std::size_t at, const std::string& complaint) {
    if (at < text.size() && text[at] == '\0') return "a byte 0: this is no text";
    if (has(complaint, "unexpected end of input") || at >= text.size())
        return "the end of the file";
    if (has(complaint, "unexpected string literal")) return "a text";
    if (has(complaint, "number literal")) return "a number";
    const auto character = static_cast<unsigned char>(text[at]);
    if (character <= ' ' || character > '~') return "another character";
    return std::string("'") + text[at] + "'";
}

}  // namespace

std::string placeInText(const std::string& text, std::size_t position) {
    const auto begin = text.begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(std::min(position, text.size()));
    const auto line = 1 + std::count(begin, end, '\n');
    const auto lineStart = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
    return formatted("line %td, column %td", line, 1 + (end - lineStart));
}

std::string describeJsonError(const std::string& text, std::size_t position,
                              const std::string& complaint) {
    const std::size_t at = position > 0 ? position - 1 : 0;
    const std::string place = placeInText(text, at) + ": ";
    const std::string fault = faultWithin(complaint);
    if (!fault.empty()) return place + "found " + fault;

    std::string error = place + "expected " + whatWasExpected(complaint) + ", found " +
                        whatIsThere(text, at, complaint);
    const std::size_t before = lastNonBlankBefore(text, at);
    const bool closes = at < text.size() && (text[at] == ']' || text[at] == '}');
    if (closes && before > 0 && text[before - 1] == ',') error += "; remove the comma before it";
    return error;
}

}  // namespace voxam::inline format
