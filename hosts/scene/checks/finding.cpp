#include "checks/finding.h"

namespace voxam::inline checks {

namespace {

constexpr std::size_t MOST_TOLD = 20;

}  // namespace

std::vector<std::string> toldLines(const Findings& findings) {
    std::vector<std::string> lines;
    for (const Finding& finding : findings) {
        if (lines.size() == MOST_TOLD) {
            lines.push_back("and " + std::to_string(findings.size() - MOST_TOLD) + " more");
            break;
        }
        lines.push_back(lineOf(finding));
    }
    return lines;
}

}  // namespace voxam::inline checks
