#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "format/scene.h"

namespace voxam::inline format {

// The rules for subdivision, meshFactor and the rest of a scene. Readers, edits and panels all use
// these functions.

/// The grid of a scene and how it is refined.
struct Detail {
    int width = 0;
    int height = 0;
    int subdivision = 1;
    int meshFactor = 1;
};

Detail detailOf(const Scene& scene);

/// What is wrong with the detail of a scene.
struct DetailFault {
    std::optional<std::size_t> change;  ///< index in the timeline; empty: the scene itself
    std::string key;                    ///< the key at fault; empty if several keys are
    std::string text;                   ///< what is wrong, in lower case and without a full stop
};

/// The first fault in a scene and its timeline, if any: too many cells in the design or in
/// the picture, or passive elements or a blob while subdivision and meshFactor differ. The library
/// would put such elements in the wrong place.
std::optional<DetailFault> findDetailFault(const Scene& scene);
/// The first fault if the scene began with another detail.
std::optional<DetailFault> findDetailFault(const Scene& scene, const Detail& detail);

/// Throws InputError with the first fault, as a sentence that names the iteration of the change.
void checkDetail(const Scene& scene, const Detail& detail);

}  // namespace voxam::inline format
