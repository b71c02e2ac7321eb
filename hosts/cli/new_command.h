#pragma once

#include "options.h"

/// Writes a template scene to a file or to standard output. Returns the exit status. Throws
/// InputError if the file exists or cannot be written.
int runNew(const NewOptions& options);
