#pragma once

#include <voxam.h>

#include <cstdint>
#include <string>
#include <vector>

#include "area.h"
#include "field.h"
#include "game.h"

/// What is told about an iteration.
struct IterationNumbers {
    std::uint64_t revision = 0;  ///< of the settings that it was computed with
    int iteration = 0;           ///< from 1, since the design last started afresh
    double compliance = 0;       ///< of the design that the iteration started from
    double volume = 0;           ///< mean density of the picture, 0 to 1
    double change = 0;           ///< largest change of a density
    RuntimeStat times = {};
};

/// A picture of the design, in the library's layout: row by row from the top, 0 solid and 1 void.
struct Frame {
    int columns = 0;
    int rows = 0;
    int refinement = 1;  ///< cells of the picture per edge of an element
    std::vector<float> picture;
    bool hasBlob = false;   ///< whether `blob` tells where a moving blob has got to
    std::vector<int> blob;  ///< one for each element, row by row from the top: 1 in the blob
    IterationNumbers numbers;
};

/// The elements of a moving blob.
Area blobOf(const Frame& frame);

/// The picture as a hand would draw it on the elements: as many are solid as its material fills,
/// those with the most of it.
Field designAsDrawn(const Frame& frame);

/// Material of a design, in percent of all elements.
double materialOf(const Field& design);

/// A text with which the library refuses to iterate, or none.
struct LibraryText {
    std::string text;
    std::uint64_t revision = 0;
};

/// The score of a design whose elements are solid or void.
struct ScoreResult {
    std::uint64_t revision = 0;
    Field design;
    Score score;
};
