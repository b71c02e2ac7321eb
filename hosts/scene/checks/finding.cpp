#include "checks/finding.h"

namespace voxam::inline checks {

namespace {

constexpr std::size_t MOST_LINES = 20;

}  // namespace

std::vector<std::string> shownLines(const Findings& findings) {
    std::vector<std::string> lines;
    for (const Finding& finding : findings) {
        if (lines.size() == MOST_LINES) {
            lines.push_back("and " + std::to_string(findings.size() - MOST_LINES) + " more");
            break;
        }
        lines.push_back(lineOf(finding));
    }
    return lines;
}

}  // namespace voxam::inline checks
