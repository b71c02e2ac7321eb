#pragma once

#include <optional>
#include <string>
#include <vector>

#include "format/range.h"

namespace voxam::inline checks {

/// A place on the grid of a scene: the nodes or the elements of a rectangle.
struct Place {
    bool ofNodes = true;
    Range x;
    Range y;

    bool operator==(const Place&) const = default;
};

/// An error or a warning about a scene or its design.
struct Finding {
    enum Severity { WARNING, ERROR };  ///< an error makes a run pointless

    Severity severity = WARNING;
    std::string key;   ///< of the scene file, such as loads[2]; or design, compliance
    std::string text;  ///< what is wrong, and what to do about it, in one line
    std::optional<Place> place;
};

using Findings = std::vector<Finding>;

/// "loads[2]: what is wrong".
inline std::string lineOf(const Finding& finding) { return finding.key + ": " + finding.text; }

/// A line for each finding. If there are many, only the first ones and the number of the others.
std::vector<std::string> shownLines(const Findings& findings);

}  // namespace voxam::inline checks
