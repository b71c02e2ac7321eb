#pragma once

#include "format/area.h"
#include "format/field.h"

namespace voxam::inline checks {

/// Whether one of the elements around a node has material. Nodes are those of the field's own grid.
bool hasMaterialAround(const Field& material, int x, int y);

/// Takes the material away (sets it to 0) that hangs together with these cells by edges or corners,
/// and returns its cells. Cells without material count for nothing.
Cells takeConnected(Field& material, Cells cells);

}  // namespace voxam::inline checks
