#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <string>

/// Exit status of the program after an error.
inline constexpr int ERROR_STATUS = 2;

/// Makes sure that standard input, output and error exist: a file that is opened while one of them
/// is closed would take its place, and get what is printed.
void openStandardStreams();

/// From now on nothing appears on standard output, whoever prints it, except by
/// printDespiteSilence().
void silenceStandardOutput();

/// Prints where standard output led before it was silenced, or on standard output. Throws
/// InputError when that did not take all.
void printDespiteSilence(const std::string& text);

/// Columns of the terminal that a stream (STDOUT_FILENO and such) is; none where it is none.
std::optional<std::size_t> terminalWidth(int stream);

/// Writes "voxam: " and the text on one line of standard error; on a terminal in lines that fit.
void complain(const std::string& text);

/// The same for an error.
void complain(const std::exception& error);

/// Prints a row of a summary, a word or two and a text behind them, in lines of at most 80 columns
/// that fit the terminal if there is one.
void printRow(const char* what, const std::string& text);

/// Sends what was printed on its way. Throws InputError when standard output did not take all.
void flushStandardOutput();
