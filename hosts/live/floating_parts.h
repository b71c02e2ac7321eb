#pragma once

#include "field.h"
#include "scene.h"

/// Elements of a drawing that are joined, edge to edge, to neither a load nor a support.
Cells floatingParts(const Field& drawing, const Scene& scene);
