#include "format/json_value.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

#include "format/input_error.h"
#include "format/json_error.h"
#include "format/text.h"

namespace voxam::inline format {

using nlohmann::json;

namespace {

// Far above the largest grid written as numbers; it only keeps an endless input from filling
// memory.
constexpr std::size_t MAX_FILE_BYTES = 64u << 20;

constexpr std::size_t LONGEST_KEY = 60;  // of an unknown one that is told

/// Throws InputError if a text is not JSON, or if a key appears twice in one object: the parser
/// would silently keep the last, and a scene lose its first loads. (A callback of the parser that
/// builds the document would do, but it goes over a list again after each of its elements.)
class SyntaxCheck : public json::json_sax_t {
public:
    /// The parser reads from `buffer`, which holds the text.
    SyntaxCheck(const std::string& parsed, std::streambuf& buffer, std::string source)
        : text(parsed), read(buffer), file(std::move(source)) {}

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(json::number_integer_t) override { return true; }
    bool number_unsigned(json::number_unsigned_t) override { return true; }
    bool number_float(json::number_float_t, const std::string&) override { return true; }
    bool string(std::string&) override { return true; }
    bool binary(json::binary_t&) override { return true; }
    bool start_array(std::size_t) override { return true; }
    bool end_array() override { return true; }
    bool parse_error(std::size_t position, const std::string&,
                     const json::exception& error) override {
        if (dynamic_cast<const json::parse_error*>(&error))
            throw InputError(file + ": " + describeJsonError(text, position, error.what()));
        throw InputError(file + ": " + placeInText(text, position > 0 ? position - 1 : 0) +
                         ": a number is too large for any computer");
    }
    bool start_object(std::size_t) override {
        ends.emplace_back();
        return true;
    }
    bool end_object() override {
        ends.pop_back();
        return true;
    }
    bool key(std::string& name) override {
        const auto end = static_cast<std::size_t>(read.pubseekoff(0, std::ios::cur, std::ios::in));
        const auto [first, isNew] = ends.back().emplace(name, end);
        if (isNew) return true;
        throw InputError(file + ": " + placeOfKey(end) + ": the key " +
                         quoted(std::as_const(name)) +
                         " appears twice in the same object, first at " +
                         placeOfKey(first->second) + ": remove one of them");
    }

private:
    /// The place of the quote that opens a key. Quotes in the key may be escaped.
    std::string placeOfKey(std::size_t end) const {
        std::size_t open = end - 1;
        do open = text.rfind('"', open - 1);
        while (open > 0 && text[open - 1] == '\\');
        return placeInText(text, open);
    }

    const std::string& text;
    std::streambuf& read;
    std::string file;
    std::vector<std::map<std::string, std::size_t>> ends;  // of the keys of the objects around
};

std::string describe(const json& value) {
    switch (value.type()) {
        case json::value_t::object:
            return "keys in braces {}";
        case json::value_t::array:
            return "a list in brackets []";
        case json::value_t::string:
            return "the text " + quoted(value.get<std::string>());
        case json::value_t::number_float:
            return plainNumber(value.get<double>());
        default:
            return value.dump();
    }
}

std::string outside(const std::string& found, const std::string& from, const std::string& to) {
    return found + " is outside " + from + ".." + to;
}

}  // namespace

std::string readText(const std::filesystem::path& file, const std::string& what) {
    std::error_code unknown;  // of no interest: a name that is too long cannot be opened either
    if (std::filesystem::is_directory(file, unknown))
        throw InputError(nameOf(file) + ": is a directory, expected the file of " + what);
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw InputError(nameOf(file) + ": cannot be read: " + std::strerror(errno));
    std::string text;
    std::vector<char> buffer(1u << 16);
    while (stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) ||
           stream.gcount() > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
        if (text.size() > MAX_FILE_BYTES)
            throw InputError(nameOf(file) + ": is larger than 64 MiB, too large for " + what);
    }
    return text;
}

json parseJson(const std::string& text, const std::filesystem::path& file) {
    constexpr bool throwing = true;
    constexpr bool withComments = true;
    constexpr bool strict = true;
    std::istringstream stream(text);
    SyntaxCheck check(text, *stream.rdbuf(), nameOf(file));
    json::sax_parse(stream, &check, json::input_format_t::json, strict, withComments);
    return json::parse(text, nullptr, throwing, withComments);
}

JsonValue::JsonValue(const json& document, const std::string& source)
    : value(&document), file(std::make_shared<const std::string>(source)) {}

void JsonValue::fail(const std::string& what) const {
    throw InputError(*file + ": " + (path.empty() ? "" : path + ": ") + what);
}

void JsonValue::expect(bool typeMatches, const std::string& what) const {
    if (!typeMatches) fail("expected " + what + ", found " + describe(*value));
}

void JsonValue::allowOnly(const std::vector<std::string>& keys) const {
    expect(value->is_object(), "keys in braces {}");
    for (const auto& [key, ignored] : value->items()) {
        if (std::find(keys.begin(), keys.end(), key) != keys.end()) continue;
        const std::string hint = didYouMean(key, keys);
        const std::string name = shortened(key, LONGEST_KEY);
        JsonValue(*value, file, path.empty() ? name : path + "." + name)
            .fail("unknown key" + (hint.empty() ? ";" : hint) + " allowed keys: " + listed(keys));
    }
}

std::optional<JsonValue> JsonValue::find(const std::string& key) const {
    const auto found = value->find(key);
    if (found == value->end()) return std::nullopt;
    return JsonValue(*found, file, path.empty() ? key : path + "." + key);
}

JsonValue JsonValue::at(const std::string& key) const {
    if (auto found = find(key)) return *found;
    JsonValue(*value, file, path.empty() ? key : path + "." + key).fail("missing key");
}

std::vector<JsonValue> JsonValue::elements(const std::string& what) const {
    expect(value->is_array(), what);
    std::vector<JsonValue> result;
    result.reserve(value->size());
    for (const auto& element : *value)
        result.push_back(
            JsonValue(element, file, path + "[" + std::to_string(result.size()) + "]"));
    return result;
}

int JsonValue::integer(int from, int to, const std::string& note) const {
    // Programs that know no other numbers write 20.0.
    expect(value->is_number() && std::floor(value->get<double>()) == value->get<double>(),
           "a whole number");
    const double number = value->get<double>();
    if (number < from || number > to)
        fail(outside(value->dump(), std::to_string(from), std::to_string(to)) + note);
    return static_cast<int>(number);
}

double JsonValue::number(double from, double to) const {
    expect(value->is_number(), "a number");
    const double number = value->get<double>();
    if (number < from || number > to)
        fail(outside(describe(*value), plainNumber(from), plainNumber(to)));
    return number;
}

Range JsonValue::range(int last, const std::string& note) const {
    if (!value->is_array()) {
        const int only = integer(0, last, note);
        return {only, only};
    }
    const auto ends = elements("a list of two numbers");
    if (ends.size() != 2) fail("a range has two numbers, [from, to]");
    const Range range{ends[0].integer(0, last, note), ends[1].integer(0, last, note)};
    if (range.from > range.to) fail("the range runs backwards, expected [from, to]");
    return range;
}

std::string JsonValue::text() const {
    expect(value->is_string(), "a text");
    return value->get<std::string>();
}

std::string JsonValue::oneOf(const std::vector<std::string>& allowed) const {
    const std::string found = text();
    if (std::find(allowed.begin(), allowed.end(), found) != allowed.end()) return found;
    std::string list;
    for (const auto& name : allowed) list += (list.empty() ? "" : ", ") + quoted(name);
    fail(quoted(found) + " is not one of " + list + didYouMean(found, allowed));
}

}  // namespace voxam::inline format
