#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "format/scene.h"

namespace voxam::inline format {

// The limits of single values of a scene, for readers and edits. For the rules of the detail, see
// detail.h. Each function returns what is wrong, in lower case and without a full
// stop, or an empty text.

/// The library counts a list of elements in a 16-bit number.
constexpr std::size_t MAX_CELLS = 32767;

std::string faultOfTitle(const std::string& title);
/// Of a load case that has a name.
std::string faultOfLoadCaseName(const std::string& name);
/// The library takes a record for each node.
std::string faultOfNodes(const std::vector<Load>& loads);
std::string faultOfNodes(const std::vector<Support>& supports);
std::string faultOfArea(const Area& area);

/// Throws InputError if a value of the scene or of its timeline is beyond its limit. The text is a
/// sentence that names the key, and the iteration of the change.
void checkLimits(const Scene& scene);

}  // namespace voxam::inline format
