// Writes the manual page and the completions of shells, from the commands and their options, so
// that they say what the program's --help says. Runs while the program is built.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "command_line.h"

namespace {

using Apps = std::vector<const CLI::App*>;
using Options = std::vector<const CLI::Option*>;

Apps commandsOf(const CLI::App& app) { return app.get_subcommands({}); }

bool isPositional(const CLI::Option& option) { return option.get_lnames().empty(); }

Options optionsOf(const CLI::App& command, bool positional) {
    Options found;
    for (const CLI::Option* option : command.get_options())
        if (isPositional(*option) == positional && !option->get_group().empty())
            found.push_back(option);
    return found;
}

std::string nameOf(const CLI::Option& option) { return "--" + option.get_lnames().front(); }

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

/// Text of a manual page: hyphens that may be typed, and no line that begins with a command of it.
std::string forManual(std::string text) {
    text = replaced(replaced(std::move(text), "\\", "\\e"), "-", "\\-");
    if (!text.empty() && (text.front() == '.' || text.front() == '\'')) text.insert(0, "\\&");
    return replaced(replaced(std::move(text), "\n.", "\n\\&."), "\n'", "\n\\&'");
}

std::string firstLineOf(const std::string& text) { return text.substr(0, text.find('\n')); }

/// The end of a command's help: paragraphs, and lists with items such as "  0  scored", which the
/// manual page breaks where its own lines end.
std::string footerForManual(const std::string& footer) {
    std::string text;
    std::istringstream lines(footer);
    bool isList = true;  // whether an unindented line begins a paragraph
    for (std::string line; std::getline(lines, line);) {
        const auto begin = line.find_first_not_of(' ');
        if (begin == std::string::npos) continue;
        const auto gap = line.find("  ", begin);
        const auto end = line.find_first_not_of(' ', gap);
        const bool isItem = begin > 0 && end != std::string::npos;
        if (isItem)
            text += ".TP\n\\fB" + forManual(line.substr(begin, gap - begin)) + "\\fR\n" +
                    forManual(line.substr(end)) + "\n";
        else
            text += (begin == 0 && (isList || line.starts_with("Exit status")) ? ".PP\n" : "") +
                    forManual(line.substr(begin)) + "\n";
        isList = begin > 0;
    }
    return text;
}

std::string optionForManual(const CLI::Option& option) {
    const std::string value =
        takesValue(option) ? " \\fI" + forManual(option.get_type_name()) + "\\fR" : "";
    return ".TP\n\\fB" + forManual(nameOf(option)) + "\\fR" + value + "\n" +
           replaced(forManual(option.get_description()), "\n", "\n.br\n") + "\n";
}

std::string commandForManual(const CLI::App& command) {
    std::string text = ".SS voxam " + forManual(command.get_name());
    for (const CLI::Option* option : optionsOf(command, true))
        text += option->get_required() ? ' ' + forManual(option->get_type_name())
                                       : " [" + forManual(option->get_type_name()) + "]";
    text += "\n" + forManual(command.get_description()) + ".\n";
    for (const CLI::Option* option : optionsOf(command, true))
        text += ".TP\n\\fI" + forManual(option->get_type_name()) + "\\fR\n" +
                forManual(option->get_description()) + "\n";
    for (const CLI::Option* option : optionsOf(command, false)) text += optionForManual(*option);
    return text + footerForManual(command.get_footer());
}

std::string manual(const CLI::App& app) {
    std::string text =
        ".TH VOXAM 1 \"\" \"voxam " VOXAM_CLI_VERSION
        "\" \"User Commands\"\n.SH NAME\nvoxam \\- topology optimisation of plates\n"
        ".SH SYNOPSIS\n.B voxam\n.I COMMAND\n.RI [ OPTION ...]\n"
        ".SH DESCRIPTION\n" +
        forManual(app.get_description()) +
        "\nA scene is a JSON file; docs/scenes.md of the source describes its keys.\n"
        ".SH COMMANDS\n";
    for (const CLI::App* command : commandsOf(app)) text += commandForManual(*command);
    return text;
}

std::string wordsOf(const CLI::App& command) {
    std::string words;
    for (const CLI::Option* option : optionsOf(command, false)) words += nameOf(*option) + ' ';
    return words;
}

/// The words that an option accepts, or nothing if it accepts any text. They are in its help
/// between bars, and files have a dot.
std::string choicesOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const bool isChoice =
        type.find('|') != std::string::npos && type.find('.') == std::string::npos;
    return isChoice ? replaced(type, "|", " ") : "";
}

/// The words that may follow a command, such as templates; empty if files follow.
std::string firstWordsOf(const CLI::App& command) {
    const Options positionals = optionsOf(command, true);
    return positionals.empty() ? "" : choicesOf(*positionals.front());
}

std::string bash(const CLI::App& app) {
    std::string cases;
    std::string commands;
    for (const CLI::App* command : commandsOf(app)) {
        commands += command->get_name() + ' ';
        cases += "        " + command->get_name() + ") words=\"" + wordsOf(*command) + "\" ;;\n";
    }
    std::string values;
    for (const CLI::App* command : commandsOf(app))
        if (const std::string words = firstWordsOf(*command); !words.empty())
            values += "        " + command->get_name() +
                      ") [[ $word == -* ]] || { COMPREPLY=($(compgen -W \"" + words +
                      "\" -- \"$word\")); return; } ;;\n";
    for (const CLI::App* command : commandsOf(app))
        for (const CLI::Option* option : optionsOf(*command, false))
            if (const std::string choices = choicesOf(*option);
                !choices.empty() && values.find(nameOf(*option) + ")") == std::string::npos)
                values += "        " + nameOf(*option) + ") COMPREPLY=($(compgen -W \"" + choices +
                          "\" -- \"$word\")); return ;;\n";
    return "# Completion of voxam for bash.\n"
           "_voxam() {\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} words\n"
           "    case $before in\n" +
           values +
           "    esac\n"
           "    if ((COMP_CWORD == 1)); then\n"
           "        COMPREPLY=($(compgen -W \"" +
           commands + wordsOf(app) +
           "\" -- \"$word\"))\n"
           "        return\n"
           "    fi\n"
           "    case ${COMP_WORDS[1]} in\n" +
           cases +
           "    esac\n"
           "    if [[ $word == -* ]]; then\n"
           "        COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n"
           "    else\n"
           "        COMPREPLY=($(compgen -f -- \"$word\"))\n"
           "    fi\n"
           "}\n"
           "complete -o filenames -F _voxam voxam\n";
}

std::string shellQuoted(const std::string& text) {
    return "'" + replaced(text, "'", "'\\''") + "'";
}

std::string zsh(const CLI::App& app) {
    std::string text =
        "#compdef voxam\n"
        "local -a commands\ncommands=(\n";
    for (const CLI::App* command : commandsOf(app))
        text += "    " + shellQuoted(command->get_name() + ":" + command->get_description()) + "\n";
    text +=
        ")\nif ((CURRENT == 2)); then\n    _describe command commands\n    return\nfi\n"
        "case $words[2] in\n";
    for (const CLI::App* command : commandsOf(app)) {
        text += "    " + command->get_name() + ") _arguments";
        for (const CLI::Option* option : optionsOf(*command, false)) {
            const std::string help =
                replaced(replaced(firstLineOf(option->get_description()), "[", "("), "]", ")");
            const std::string choices = choicesOf(*option);
            const std::string value =
                !takesValue(*option) ? ""
                                     : ":" + replaced(option->get_type_name(), ":", " ") + ":" +
                                           (choices.empty() ? "_files" : "(" + choices + ")");
            text += " \\\n        " + shellQuoted("*" + nameOf(*option) + "[" + help + "]" + value);
        }
        if (const std::string words = firstWordsOf(*command); !words.empty())
            text += " \\\n        '2:template:(" + words + ")'";
        text += " \\\n        '*:file:_files' ;;\n";
    }
    return text + "esac\n";
}

std::string fish(const CLI::App& app) {
    std::string text = "# Completion of voxam for fish.\n";
    for (const CLI::App* command : commandsOf(app)) {
        text += "complete -c voxam -n __fish_use_subcommand -f -a " + command->get_name() + " -d " +
                shellQuoted(command->get_description()) + "\n";
        if (const std::string words = firstWordsOf(*command); !words.empty())
            text += "complete -c voxam -n '__fish_seen_subcommand_from " + command->get_name() +
                    "; and not __fish_seen_subcommand_from " + words + "' -f -a " +
                    shellQuoted(words) + "\n";
        for (const CLI::Option* option : optionsOf(*command, false)) {
            const std::string choices = choicesOf(*option);
            text += "complete -c voxam -n '__fish_seen_subcommand_from " + command->get_name() +
                    "' -l " + option->get_lnames().front() + (takesValue(*option) ? " -r" : "") +
                    (choices.empty() ? "" : " -f -a " + shellQuoted(choices)) + " -d " +
                    shellQuoted(firstLineOf(option->get_description())) + "\n";
        }
    }
    return text;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: voxam_documentation MANUAL BASH ZSH FISH\n", stderr);
        return 2;
    }
    const CommandLine line;
    const std::vector<std::string> texts = {manual(line.app), bash(line.app), zsh(line.app),
                                            fish(line.app)};
    for (int i = 1; i < argc; ++i) {
        std::ofstream file(argv[i]);
        file << texts[static_cast<std::size_t>(i - 1)] << std::flush;
        if (!file) {
            std::cerr << argv[i] << ": cannot be written\n";
            return 2;
        }
    }
    return 0;
}
