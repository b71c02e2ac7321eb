#pragma once

#include <string>

/// Makes sure that standard input, output and error exist: a file that is opened while one of them is
/// closed would take its place, and get what is printed.
void openStandardStreams();

/// From now on nothing appears on standard output, whoever prints it.
void silenceStandardOutput();

/// Writes "voxam: ", the text on one line and a line end on standard error.
void complain(const std::string& text);

/// Sends what was printed on its way. Throws InputError when standard output did not take all.
void flushStandardOutput();
