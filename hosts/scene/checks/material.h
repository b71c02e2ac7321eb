#pragma once

#include "format/area.h"
#include "format/field.h"

namespace voxam::inline checks {

/// Whether an element around a node of the field's own grid has material.
bool hasMaterialAround(const Field& material, int x, int y);

/// Removes the material (sets it to 0) that is connected with these cells by edges or corners, and
/// returns its cells. Cells without material are ignored.
Cells takeConnected(Field& material, Cells cells);

}  // namespace voxam::inline checks
