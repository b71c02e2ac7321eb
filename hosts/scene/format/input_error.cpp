#include "format/input_error.h"

#include "format/text.h"

InputError::InputError(const std::string& what) : std::runtime_error(onOneLine(what)) {}
