#pragma once

#include <CLI/CLI.hpp>
#include <string>

/// Formats help for 80 columns.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() { column_width(DESCRIPTION_COLUMN); }

    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        return fitted(CLI::Formatter::make_option(option, isPositional));
    }
    std::string make_subcommand(const CLI::App* command) const override {
        return fitted(CLI::Formatter::make_subcommand(command));
    }

private:
    static constexpr std::size_t DESCRIPTION_COLUMN = 30;

    static std::string fitted(const std::string& lines);
};
