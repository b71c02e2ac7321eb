#pragma once

#include <vector>

#include "format/cell.h"

namespace voxam::inline format {

/// The elements whose centre is at least `inner` and less than `outer` from a point of the plate; a
/// disc if `inner` is 0. A ring may extend beyond the plate.
struct Ring {
    double x = 0;
    double y = 0;
    double inner = 0;
    double outer = 0;

    bool contains(const Cell& cell) const;
    bool operator==(const Ring&) const = default;
};

/// A set of elements.
struct Area {
    Cells cells;  ///< each once, by ascending x and then y
    /// The discs and rings that describe some of the elements, for a smooth outline. Code that
    /// removes an element must also remove the rings that contain it.
    std::vector<Ring> rings;
    /// The elements of `rings` that belong to the area by themselves, too: they remain if the rings
    /// go. In the order of `cells`.
    Cells covered = {};

    bool empty() const { return cells.empty(); }
    bool operator==(const Area&) const = default;
};

/// Elements that the optimiser leaves void, solid, or solid of a second kind. The
/// areas do not overlap.
struct PassiveAreas {
    Area voids;
    Area solids;
    Area secondSolids;

    bool empty() const { return voids.empty() && solids.empty() && secondSolids.empty(); }
    bool operator==(const PassiveAreas&) const = default;
};

/// The elements of a ring on a grid, in the order of an area.
Cells cellsOf(const Ring& ring, int width, int height);

/// The elements that belong to an area without its rings, in the order of an area.
Cells looseCells(const Area& area, int width, int height);

/// The area of loose elements and of rings. Elements outside the grid are ignored.
Area joinedArea(const Cells& loose, std::vector<Ring> rings, int width, int height);

}  // namespace voxam::inline format
