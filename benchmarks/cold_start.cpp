// What the first moments of a process take, in milliseconds: "library 60x40" creates an optimiser,
// sends the settings and iterates once; "floor 60x40" has CHOLMOD alone analyse, factorise and
// solve once. One measurement is a process, as only the first start in it is cold: its memory comes
// from the system, its code from the disk's cache.
#include <cstdio>
#include <exception>
#include <string_view>
#include <vector>

#include "cholmod_floor.h"
#include "host.h"
#include "plate_stiffness.h"

namespace {

double timeOfLibrary(const Plate& plate) {
    Host host(plate, test::cantilever(plate.width, plate.height));
    return timed([&] {
        host.create();
        host.send();
        host.iterate();
    });
}

double timeOfFloor(const Plate& plate) {
    PlateStiffness stiffness(plate,
                             std::vector<double>(static_cast<std::size_t>(plate.elements()), 1.0));
    stiffness.refillByEntries(false);
    kmat::SparseMatrix& K = stiffness.getMatrix();
    for (unsigned dof = 0; dof < 2U * static_cast<unsigned>(plate.height + 1); ++dof) {
        K.getValue(dof, dof) += 1.0;  // holds the left edge
    }
    CholmodFloor floor(K, kmat::DenseMatrix(plate.dofs(), 1, 1.0));
    return floor.getAnalysisTime() + floor.measure();
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 1 ? argv[1] : "";
    Plate plate{};
    if (argc != 3 || (what != "library" && what != "floor") ||
        std::sscanf(argv[2], "%dx%d", &plate.width, &plate.height) != 2) {
        std::fprintf(stderr, "Usage: %s library|floor WIDTHxHEIGHT\n", argv[0]);
        return 2;
    }
    try {
        const double time = what == "library" ? timeOfLibrary(plate) : timeOfFloor(plate);
        std::fprintf(stderr, "%.3f\n", time);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
    return 0;
}
