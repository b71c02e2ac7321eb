#include "usage_error.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string_view>

#include "format/text.h"

using namespace voxam;

namespace {

template <typename Number>
std::optional<Number> numberOf(std::string_view text) {
    Number number = 0;
    const auto* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) return std::nullopt;
    return number;
}

std::string helpOf(const CLI::App& command) {
    return std::string("see ") + (command.get_parent() ? "voxam " : "") + command.get_name() +
           " --help";
}

std::vector<std::string> namesOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) names.push_back(option->get_name());
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    return names;
}

/// What the person who typed these arguments may have meant, or nothing.
std::string hintFor(const std::vector<std::string>& arguments, const CLI::App& app) {
    const CLI::App* command = &app;
    for (const std::string& argument : arguments) {
        if (argument == "--") break;
        const std::string word = argument.substr(0, argument.find('='));
        const auto commands = command->get_subcommands(
            [&](const CLI::App* each) { return each->get_name() == word; });
        if (!commands.empty()) {
            command = commands.front();
            continue;
        }
        const auto names = namesOf(*command);
        const bool isOption = word.size() > 1 && word[0] == '-' && !numberOf<double>(word);
        const bool isCommand = command == &app;
        const bool isKnown = std::find(names.begin(), names.end(), word) != names.end();
        if (isKnown || !(isOption || isCommand)) continue;
        if (isCommand && std::filesystem::path(word).extension() == ".json")
            return nameOf(word) + ": a command is needed before it: voxam optimise " +
                   nameOf(word) + " or voxam score " + nameOf(word);
        const std::string meant = didYouMean(word, names);
        return quoted(word) + " is not known" + meant + " (" + helpOf(*command) + ")";
    }
    return "";
}

/// The command that was given, or the program.
const CLI::App& commandOf(const CLI::App& app) {
    const auto given = app.get_subcommands();
    return given.empty() ? app : *given.front();
}

/// What the parser's error says in its own words, told in ours.
std::string plainText(const CLI::ParseError& error, const CLI::App& command) {
    std::string told = error.what();
    const std::string name = told.substr(0, told.find_first_of(": "));
    const CLI::Option* option = command.get_option_no_throw(name);
    const auto extras = command.remaining();
    const auto extra = std::find_if(extras.begin(), extras.end(),
                                    [](const std::string& each) { return each != "--"; });
    if (dynamic_cast<const CLI::ExtrasError*>(&error) && extra != extras.end())
        return quoted(*extra) + " is an unexpected argument";
    if (!option) return told;
    if (dynamic_cast<const CLI::RequiredError*>(&error))
        return option->get_type_name() + " is missing";
    if (!dynamic_cast<const CLI::ArgumentMismatch*>(&error)) return told;
    if (option->count() > 1)
        return name + formatted(": is given %zu times, expected once", option->count());
    return name + ": " + option->get_type_name() + " is missing behind it";
}

}  // namespace

std::string describeUsageError(const CLI::ParseError& error, const CLI::App& app,
                               const std::vector<std::string>& arguments) {
    const std::string hint = hintFor(arguments, app);
    if (!hint.empty()) return hint;
    const CLI::App& command = commandOf(app);
    return plainText(error, command) + " (" + helpOf(command) + ")";
}

CLI::Validator numberWithin(double from, double to) {
    return {[=](const std::string& text) {
                const auto number = numberOf<double>(text);
                if (number && *number >= from && *number <= to) return std::string();
                return quoted(text) + " is not a number from " + plainNumber(from) + " to " +
                       plainNumber(to);
            },
            "", "number"};
}

CLI::Validator wholeNumberWithin(int from, int to) {
    return {[=](const std::string& text) {
                const auto number = numberOf<int>(text);
                if (number && *number >= from && *number <= to) return std::string();
                return quoted(text) + formatted(" is not a whole number from %d to %d", from, to);
            },
            "", "whole number"};
}

CLI::Validator positiveNumber() {
    return {[](const std::string& text) {
                const auto number = numberOf<double>(text);
                return number && *number > 0 && std::isfinite(*number)
                           ? ""
                           : quoted(text) + " is not a number above 0";
            },
            "", "positive number"};
}

CLI::Validator oneOf(const std::vector<std::string>& words) {
    return {[words](const std::string& text) {
                if (std::find(words.begin(), words.end(), text) != words.end())
                    return std::string();
                return quoted(text) + " is not one of " + listed(words) + didYouMean(text, words);
            },
            "", "word"};
}

CLI::Validator fileName() {
    return {[](const std::string& text) { return text.empty() ? "the name is empty" : ""; }, "",
            "file name"};
}
