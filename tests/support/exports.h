// The optimiser through its exported functions.
#pragma once

#include "support/plates.h"
#include "voxam.h"

namespace test {

/// Sends all settings to the optimiser there is.
inline void update(const Settings& s) {
    _UpdateVoxamApp(s.loads.count(), s.loads.data(), s.supports.count(), s.supports.data(),
                    s.volumeFraction, s.passive.data(), static_cast<int>(s.loadCases.size()),
                    s.loadCases.data(), s.blob.data());
}

}  // namespace test
