#pragma once

#include <stdexcept>
#include <string>

#include "format/text.h"

/// A fault of what the user handed in: a scene, an image, an output path, an option. Its text is
/// one sentence that names the file, the key and the allowed values; the program prints it and
/// exits with status 2.
class InputError : public std::runtime_error {
public:
    explicit InputError(const std::string& what) : std::runtime_error(onOneLine(what)) {}
};
