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
        else if (character != ']')
            pointer += character;
    }
    return pointer;
}

Json valueOf(const std::string& text) {
    Json value = Json::parse(text, nullptr, false);
    return value.is_discarded() ? Json(text) : value;
}

}  // namespace

void assign(Json& document, const std::vector<std::string>& assignments) {
    for (const std::string& assignment : assignments) {
        const auto equals = assignment.find('=');
        if (equals == std::string::npos || equals == 0)
            fail(assignment, "expected KEY=VALUE, such as volumeFraction=0.4 or loads[0].fy=2");
        const Json::json_pointer target(pointerTo(assignment.substr(0, equals)));
        const Json::json_pointer parent = target.parent_pointer();
        const Json* const around =
            document.contains(parent) || parent.empty() ? &document.at(parent) : nullptr;
        const bool isElement = around && around->is_array();
        if (!around || !around->is_structured() || (isElement && !document.contains(target)))
            fail(assignment, "the scene has no such place");
        document[target] = valueOf(assignment.substr(equals + 1));
    }
}

}  // namespace voxam::inline format
