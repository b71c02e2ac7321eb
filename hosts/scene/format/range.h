#pragma once

namespace voxam::inline format {

/// Inclusive range of node or element coordinates; a single one has from == to.
struct Range {
    int from = 0;
    int to = 0;

    int count() const { return to - from + 1; }
    bool contains(int value) const { return from <= value && value <= to; }
    bool operator==(const Range&) const = default;
};

}  // namespace voxam::inline format
