#pragma once

#include <string>

#include "checks/assessment.h"
#include "drawing/picture.h"
#include "options.h"

using namespace voxam;

/// Shows in a picture what the options ask for: the energy or the stress of the elements, or the
/// deformed plate. `found` has its states, of a design of the picture's resolution. Returns what
/// the subtitle should add, such as ",  load case 1 of 2", or nothing.
std::string showView(const ViewOptions& options, const Assessment& found, const Scene& scene,
                     PictureContent& content);

/// The same content for the whole of a symmetric plate.
PictureContent mirrored(const PictureContent& content, const Scene& scene);

/// Throws InputError when a load case is asked for that the scene does not use.
void checkView(const ViewOptions& options, const Scene& scene);

/// Whether a view needs the displacements or stresses of an assessment.
bool needsStates(const ViewOptions& options);
