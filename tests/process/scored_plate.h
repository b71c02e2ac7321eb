// What the hosts of this directory score.
#pragma once

#include <vector>

#include "support/loaded_library.h"
#include "support/plates.h"

namespace test {

/// A solid cantilever.
class ScoredPlate {
public:
    ScoredPlate(int nelx, int nely)
        : nelx(nelx),
          nely(nely),
          settings(cantilever(nelx, nely)),
          densities(static_cast<std::size_t>(nelx * nely), 1.0F) {}

    double score(const LoadedLibrary& library) const {
        library.createGame(nelx, nely, 1, 1, settings.loads.count(), settings.loads.data(),
                           settings.supports.count(), settings.supports.data(), 1);
        return scoreAgain(library);
    }
    /// By the solver there is.
    double scoreAgain(const LoadedLibrary& library) const {
        return library.solve(densities.data(), nullptr);
    }

private:
    int nelx;
    int nely;
    Settings settings;
    std::vector<float> densities;
};

}  // namespace test
