#pragma once

#include "checks/finding.h"
#include "format/scene.h"

/// An error when the supports outside passive void leave the plate free to move or to turn.
Findings findFreePlate(const Scene& scene);
