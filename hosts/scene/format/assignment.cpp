#include "format/assignment.h"

#include <algorithm>

#include "format/input_error.h"
#include "format/text.h"

namespace voxam::inline format {

namespace {

using Json = nlohmann::json;

[[noreturn]] void fail(const std::string& assignment, const std::string& why) {
    throw InputError("--set: " + quoted(assignment) + ": " + why);
}

/// "loads[0].fy" as the pointer /loads/0/fy. A pointer has ~0 for ~ and ~1 for /.
std::string pointerTo(const std::string& place) {
    std::string pointer = "/";
    for (const char character : place) {
        if (character == '.' || character == '[')
            pointer += '/';
        else if (character == '~')
            pointer += "~0";
        else if (character == '/')
            pointer += "~1";
        else if (character != ']')
            pointer += character;
    }
    return pointer;
}

Json valueOf(const std::string& text) {
    Json value = Json::parse(text, nullptr, false);
    return value.is_discarded() ? Json(text) : value;
}

/// The beginning of a place such as "loads[0].fy", with so many parts.
std::string firstParts(const std::string& place, std::size_t parts) {
    if (parts == 0) return "the scene";
    std::size_t end = place.find_first_of(".[");
    while (--parts > 0) end = place.find_first_of(".[", end + 1);
    return place.substr(0, end);
}

/// Why a document has no `target`, which `place` names: "loads has no entry 7: write 0 to 2".
std::string whyMissing(const Json& document, Json::json_pointer target, const std::string& place) {
    while (!document.contains(target.parent_pointer())) target = target.parent_pointer();
    const Json::json_pointer parent = target.parent_pointer();
    const std::string path = parent.to_string();
    const auto depth = static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
    const Json& around = document.at(parent);
    const std::string owner = firstParts(place, depth) + " has no ";
    if (!around.is_structured()) return owner + "entries or keys: it is a single value";
    if (!around.is_array()) return owner + "key " + target.back();
    const std::size_t size = around.size();
    if (size == 0) return owner + "entries";
    return owner + "entry " + target.back() + ": write 0" +
           (size > 1 ? " to " + std::to_string(size - 1) : "");
}

}  // namespace

void assign(Json& document, const std::vector<std::string>& assignments) {
    for (const std::string& assignment : assignments) {
        const auto equals = assignment.find('=');
        if (equals == std::string::npos || equals == 0)
            fail(assignment, "expected KEY=VALUE, such as volumeFraction=0.4 or loads[0].fy=2");
        const std::string place = assignment.substr(0, equals);
        const Json::json_pointer target(pointerTo(place));
        const Json::json_pointer parent = target.parent_pointer();
        const Json* const around =
            document.contains(parent) || parent.empty() ? &document.at(parent) : nullptr;
        const bool isElement = around && around->is_array();
        if (!around || !around->is_structured() || (isElement && !document.contains(target)))
            fail(assignment, whyMissing(document, target, place));
        document[target] = valueOf(assignment.substr(equals + 1));
    }
}

}  // namespace voxam::inline format
