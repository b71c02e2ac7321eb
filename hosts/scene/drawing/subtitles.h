#pragma once

#include <string>

#include "checks/assessment.h"
#include "run/iteration_record.h"

namespace voxam::inline drawing {

/// The compliance of a design, or "not supported".
std::string complianceText(const Assessment& found);

/// How much material a design has, such as "40.0 %  (960 of 2400 elements)".
std::string materialText(const Field& design, const Scene& scene);

/// The line below the title of a picture of a run. With a plane of symmetry it says that the
/// compliance is that of the half. `drawn` is the assessment of the design in black and white, or
/// null if it is not known.
std::string runSubtitle(const IterationRecord& shown, Symmetry symmetry,
                        const Assessment* drawn = nullptr);

/// The line below the title of a picture of a score. `drawn` is null if the design is black and
/// white.
std::string scoreSubtitle(const Field& design, const Scene& scene, const Assessment& found,
                          const Assessment* drawn = nullptr);

/// The same for a design of an optimiser that was kept as it is: all that is known of it is how it
/// does in black and white.
std::string keptSubtitle(const Field& design, const Scene& scene, const Assessment& drawn);

}  // namespace voxam::inline drawing
