#pragma once

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "format/range.h"

namespace voxam::inline format {

/// The text of a file that should be `what`, such as "a scene". Throws InputError if it cannot be
/// read or is too large.
std::string readText(const std::filesystem::path& file, const std::string& what = "a scene");

/// Reads JSON. Throws InputError naming `file` if the text is malformed (with line and column) or
/// has the same key twice in one object.
nlohmann::json parseJson(const std::string& text, const std::filesystem::path& file);

/// A value of a JSON document together with the file it comes from and its place there, such as
/// loads[2].x. Every reader checks the type and the range, and throws InputError naming both.
/// The document must outlive the value.
class JsonValue {
public:
    JsonValue(const nlohmann::json& document, const std::string& source);

    [[noreturn]] void fail(const std::string& what) const;
    /// Fails unless the text is empty.
    void failIf(const std::string& fault) const {
        if (!fault.empty()) fail(fault);
    }

    const nlohmann::json& raw() const { return *value; }

    /// Fails unless the value is an object with no keys but these.
    void allowOnly(const std::vector<std::string>& keys) const;
    std::optional<JsonValue> find(const std::string& key) const;
    JsonValue at(const std::string& key) const;

    /// The elements of an array; the error says that it should be `what`.
    std::vector<JsonValue> elements(const std::string& what) const;

    /// The error shows `note` after the range, to explain where the range comes from.
    int integer(int from, int to, const std::string& note = "") const;
    double number(double from, double to) const;
    /// A whole number from 0 to `last`, or [from, to] of two such numbers.
    Range range(int last, const std::string& note) const;
    std::string text() const;
    /// A text that is one of these.
    std::string oneOf(const std::vector<std::string>& allowed) const;

private:
    JsonValue(const nlohmann::json& element, std::shared_ptr<const std::string> source,
              std::string place)
        : value(&element), file(std::move(source)), path(std::move(place)) {}

    void expect(bool typeMatches, const std::string& what) const;

    const nlohmann::json* value;
    std::shared_ptr<const std::string> file;  // shared, because there may be a million values
    std::string path;
};

}  // namespace voxam::inline format
