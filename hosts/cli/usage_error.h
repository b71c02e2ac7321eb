#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// Tells in one line what is wrong with the arguments of a command line, what may have been meant,
/// and where help is. `error` is what parsing them with `app` threw.
std::string describeUsageError(const CLI::ParseError& error, const CLI::App& app,
                               const std::vector<std::string>& arguments);

/// Takes numbers from `from` to `to`, and no text that is none.
CLI::Validator numberWithin(double from, double to);
CLI::Validator wholeNumberWithin(int from, int to);

/// Takes numbers above 0.
CLI::Validator positiveNumber();

/// Takes these words.
CLI::Validator oneOf(const std::vector<std::string>& words);

/// Takes names that are not empty.
CLI::Validator fileName();
