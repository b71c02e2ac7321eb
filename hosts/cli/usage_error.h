#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// One line that says what is wrong with the arguments of a command line, what the user may have
/// meant, and where to find help. `error` is the exception of parsing them with `app`.
std::string describeUsageError(const CLI::ParseError& error, const CLI::App& app,
                               const std::vector<std::string>& arguments);

/// Accepts numbers from `from` to `to`, and rejects other text.
CLI::Validator numberWithin(double from, double to);
CLI::Validator wholeNumberWithin(int from, int to);

/// Accepts numbers above 0.
CLI::Validator positiveNumber();

/// Accepts these words.
CLI::Validator oneOf(const std::vector<std::string>& words);

/// Accepts names that are not empty.
CLI::Validator fileName();
