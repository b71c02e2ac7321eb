// Scenes and designs for the tests of what the programs share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "checks/finding.h"
#include "format/scene.h"

using namespace voxam;

/// A plate that is clamped at its left edge, with a unit force down at the middle of its right
/// edge.
inline Scene clampedPlate(int width, int height) {
    Scene scene;
    scene.width = width;
    scene.height = height;
    scene.volumeFraction = 0.5;
    scene.loadCasesInUse = {0};
    scene.files = {"scene.json"};
    scene.loads = {{{width, width}, {height / 2, height / 2}, 0, 1, 0}};
    scene.supports = {{{0, 0}, {0, height}, true, true}};
    return scene;
}

/// '#' is solid, everything else void; the top row first.
inline Field designOf(const std::vector<std::string>& rows) {
    Field design(static_cast<int>(rows.front().size()), static_cast<int>(rows.size()));
    for (int y = 0; y < design.height; ++y)
        for (int x = 0; x < design.width; ++x)
            design.at(x, y) =
                rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#' ? 1.0f : 0.0f;
    return design;
}

inline std::vector<std::string> linesOf(const Findings& findings) {
    std::vector<std::string> lines;
    for (const Finding& finding : findings)
        lines.push_back((finding.severity == Finding::ERROR ? "error: " : "warning: ") +
                        lineOf(finding));
    return lines;
}
