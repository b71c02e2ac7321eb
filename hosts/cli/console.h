#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <string>

/// Exit status of the program after an error.
inline constexpr int ERROR_STATUS = 2;

/// Makes sure that standard input, output and error exist. Otherwise a file that is opened would
/// get the number of a closed stream, and the texts that are printed to it.
void openStandardStreams();

/// From now on only printDespiteSilence() prints on standard output. Other texts, also of
/// libraries, are discarded.
void silenceStandardOutput();

/// Prints to standard output, even if it was silenced. Throws InputError if not everything could be
/// written.
void printDespiteSilence(const std::string& text);

/// Columns of the terminal of a stream, such as STDOUT_FILENO; empty if it is not a terminal.
std::optional<std::size_t> terminalWidth(int stream);

/// Writes "voxam: " and the text on one line of standard error; on a terminal in lines that fit.
void complain(const std::string& text);

/// Writes the text of an error in the same way.
void complain(const std::exception& error);

/// Prints a row of a summary, a word or two and a text after them, in lines of at most 80 columns
/// that fit the terminal, if there is one.
void printRow(const char* what, const std::string& text);

/// Flushes standard output. Throws InputError if not everything could be written.
void flushStandardOutput();
