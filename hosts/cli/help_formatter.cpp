#include "help_formatter.h"

#include <sstream>

#include "format/text.h"

using namespace voxam;

std::string HelpFormatter::fitted(const std::string& lines) {
    constexpr std::size_t width = 80;
    std::istringstream stream(lines);
    std::string result;
    for (std::string line; std::getline(stream, line);)
        result += wrapped(line, width, DESCRIPTION_COLUMN) + '\n';
    return result;
}
