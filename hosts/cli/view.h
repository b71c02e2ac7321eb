#pragma once

#include <string>

#include "checks/assessment.h"
#include "drawing/picture.h"
#include "options.h"

using namespace voxam;

/// Shows in a picture the energy or the stress of the elements, or the deformed plate, as the
/// options say. `found` contains the states of a design of the picture's resolution. Returns an
/// addition to the subtitle, such as ",  load case 1 of 2", or an empty text.
std::string showView(const ViewOptions& options, const Assessment& found, const Scene& scene,
                     PictureContent& content);

/// Throws InputError if the options name a load case that the scene does not use.
void checkView(const ViewOptions& options, const Scene& scene);

/// Whether a view needs the displacements or stresses of an assessment.
bool needsStates(const ViewOptions& options);
