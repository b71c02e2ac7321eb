#include "json_value.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <set>

#include "input_error.h"
#include "json_error.h"
#include "text.h"

using nlohmann::json;

namespace {

// Far above the largest grid written as numbers; it only keeps an endless input from filling
// memory.
constexpr std::size_t MAX_FILE_BYTES = 64u << 20;

constexpr std::size_t LONGEST_KEY = 60;  // of an unknown one that is told

// The parser would silently keep the last of two equal keys, and a scene lose its first loads.
class DuplicateKeys {
public:
    explicit DuplicateKeys(std::string source) : file(std::move(source)) {}

    bool operator()(json::parse_event_t event, const json& parsed) {
        if (event == json::parse_event_t::object_start) keysOfObjects.emplace_back();
        if (event == json::parse_event_t::object_end) keysOfObjects.pop_back();
        if (event == json::parse_event_t::key) {
            const auto key = parsed.get<std::string>();
            if (!keysOfObjects.back().insert(key).second)
                throw InputError(file + ": key " + quoted(key) +
                                 " stands twice in the same object");
        }
        return true;
    }

private:
    std::string file;
    std::vector<std::set<std::string>> keysOfObjects;
};

std::string shortNumber(double value) { return json(value).dump(); }

std::string outside(const std::string& found, const std::string& from, const std::string& to) {
    return found + " is outside " + from + ".." + to;
}

}  // namespace

std::string readText(const std::filesystem::path& file) {
    if (std::filesystem::is_directory(file))
        throw InputError(file.string() + ": is a directory, expected a scene file");
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw InputError(file.string() + ": cannot be read: " + std::strerror(errno));
    std::string text;
    std::vector<char> buffer(1u << 16);
    while (stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) ||
           stream.gcount() > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
        if (text.size() > MAX_FILE_BYTES)
            throw InputError(file.string() + ": is larger than 64 MiB, too large for a scene");
    }
    return text;
}

json parseJson(const std::string& text, const std::filesystem::path& file) {
    constexpr bool throwing = true;
    constexpr bool withComments = true;
    DuplicateKeys duplicateKeys(file.string());
    const auto look = [&](int, json::parse_event_t event, json& parsed) {
        return duplicateKeys(event, parsed);
    };
    try {
        return json::parse(text, look, throwing, withComments);
    } catch (const json::parse_error& error) {
        throw InputError(file.string() + ": " + describeJsonError(text, error.byte, error.what()));
    } catch (const json::exception&) {
        throw InputError(file.string() + ": a number is too large for any computer");
    }
}

JsonValue::JsonValue(const json& document, std::string source)
    : value(&document), file(std::move(source)) {}

void JsonValue::fail(const std::string& what) const {
    throw InputError(file + ": " + (path.empty() ? "" : path + ": ") + what);
}

void JsonValue::expect(bool typeMatches, const std::string& what) const {
    if (!typeMatches)
        fail("expected " + what + ", found " +
             (value->is_number() ? value->dump() : value->type_name()));
}

void JsonValue::allowOnly(const std::vector<std::string>& keys) const {
    expect(value->is_object(), "an object");
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
    expect(value->is_number_integer(), "a whole number");
    const double number = value->get<double>();
    if (number < from || number > to)
        fail(outside(value->dump(), std::to_string(from), std::to_string(to)) + note);
    return static_cast<int>(number);
}

double JsonValue::number(double from, double to) const {
    expect(value->is_number(), "a number");
    const double number = value->get<double>();
    if (number < from || number > to)
        fail(outside(value->dump(), shortNumber(from), shortNumber(to)));
    return number;
}

Range JsonValue::range(int last, const std::string& note) const {
    if (!value->is_array()) {
        const int only = integer(0, last, note);
        return {only, only};
    }
    const auto ends = elements("a range");
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
