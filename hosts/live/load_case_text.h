#pragma once

#include <QString>

#include "format/scene.h"

/// How the window calls a load case after the words "load case": "2 (wind)", or "2" without a name.
inline QString numberedCase(const voxam::Scene& scene, int loadCase) {
    return QString::fromStdString(voxam::numberedLoadCase(scene, loadCase));
}
