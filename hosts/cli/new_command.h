#pragma once

#include "options.h"

/// Writes a scene of a well-known kind, to a file or to standard output. Returns the exit status.
/// Throws InputError when the file exists or cannot be written.
int runNew(const NewOptions& options);
