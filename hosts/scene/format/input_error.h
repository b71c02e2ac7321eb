#pragma once

#include <stdexcept>
#include <string>

#include "format/text.h"

namespace voxam::inline format {

/// A fault in the user's input: a scene, an image, an output path, an option. Its text is
/// one sentence that names the file, the key and the allowed values; the program prints it and
/// exits with status 2.
class InputError : public std::runtime_error {
public:
    /// Puts the text on one line, so that a control character cannot cut it short.
    explicit InputError(const std::string& what) : std::runtime_error(onOneLine(what)) {}
};

}  // namespace voxam::inline format
