// Prints a hash of everything that whole runs hand to a host: one line for each run. Two builds of
// the library whose lines agree gave the same bits.
//
//     voxam_fingerprint LIBRARY
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "support/hash.h"
#include "support/loaded_library.h"
#include "support/plates.h"
#include "support/textbook.h"

namespace {

using test::Hash;
using Library = test::LoadedLibrary;

struct Plate {
    int nelx;
    int nely;
    int subdivision;
    int meshFactor;
};

// What the runs differ in. The parts are combined freely.
struct Run {
    Plate plate;
    bool passive = false;
    bool blob = false;
    bool twoLoadCases = false;
    bool editedMidway = false;
    float penalty = 3.0F;
    int iterations = 25;
};

test::Settings settingsOf(const Run& run) {
    const auto& [nelx, nely, subdivision, meshFactor] = run.plate;
    test::Settings settings = test::cantilever(nelx, nely);
    settings.volumeFraction = 0.45F;
    if (run.twoLoadCases) {
        settings.loads.add(static_cast<float>(nelx), 0, 0.3F, -0.7F, 1);
        settings.loadCases = {1, 0};
    }
    if (run.passive) {
        test::addBlock(settings.passive, 0, nelx / 2, nelx / 2 + 3, 1, 4);
        test::addBlock(settings.passive, 1, 0, nelx, nely - 1, nely);
        test::addBlock(settings.passive, 2, 0, 2, 0, 2);
    }
    if (run.blob) test::addBlock(settings.blob, 0, nelx / 3, nelx / 3 + 5, nely / 3, nely / 3 + 4);
    return settings;
}

void send(const Library& library, const test::Settings& s) {
    library.update(s.loads.count(), s.loads.data(), s.supports.count(), s.supports.data(),
                   s.volumeFraction, s.passive.data(), static_cast<int>(s.loadCases.size()),
                   s.loadCases.data(), s.blob.data());
}

// Moves the load, frees what was passive, and asks for less material.
void edit(const Run& run, test::Settings& settings) {
    settings.loads.floats[1] = 1;
    settings.loads.floats[2] = 0.25F;
    settings.passive = {0, 0, 0};
    settings.volumeFraction = 0.3F;
    if (run.blob) settings.blob = {2, 1, 1, 2, 1};
}

uint64_t fingerprint(const Library& library, const Run& run, int restartId) {
    const auto& [nelx, nely, subdivision, meshFactor] = run.plate;
    const int refinement = subdivision * meshFactor;
    std::vector<float> picture(static_cast<size_t>(nelx) * nely * refinement * refinement);
    std::vector<int> mask(static_cast<size_t>(nelx) * nely);
    test::Settings settings = settingsOf(run);
    Hash hash;
    library.create(nelx, nely, subdivision, meshFactor, 0.5F, run.twoLoadCases ? 2 : 1, restartId);
    send(library, settings);
    for (int i = 0; i < run.iterations; ++i) {
        if (run.editedMidway && i == run.iterations / 2) {
            edit(run, settings);
            send(library, settings);
        }
        char text[64];
        double change = 0.0;
        hash.add(run.blob ? library.iterateWithBlob(sizeof text, text, picture.data(), &change,
                                                    nullptr, mask.data(), run.penalty)
                          : library.iterate(sizeof text, text, picture.data(), &change, nullptr,
                                            run.penalty));
        hash.add(change);
        hash.add(std::string(text));
        for (const float value : picture) hash.add(value);
        for (const int value : mask) hash.add(value);
    }
    return hash.value();
}

uint64_t gameFingerprint(const Library& library, int nelx, int nely, bool held) {
    test::Settings settings = test::cantilever(nelx, nely);
    settings.loads.add(static_cast<float>(nelx), 0, 0.3F, -0.7F, 1);
    const int supports = held ? settings.supports.count() : 1;
    library.createGame(nelx, nely, 1, 1, settings.loads.count(), settings.loads.data(), supports,
                       settings.supports.data(), 2);
    Hash hash;
    test::Random random;
    std::vector<float> densities(static_cast<size_t>(nelx) * nely);
    std::vector<float> energies(densities.size());
    for (int design = 0; design < 4; ++design) {
        for (float& density : densities) {
            density = design == 0 ? 1.0F : static_cast<float>(random.number(0.0, 1.0));
        }
        hash.add(library.solve(densities.data(), energies.data()));
        for (const float energy : energies) hash.add(energy);
    }
    return hash.value();
}

std::vector<Run> allRuns() {
    std::vector<Run> runs;
    for (const Plate& plate : {Plate{30, 20, 1, 1}, Plate{24, 16, 2, 2}, Plate{17, 12, 3, 1},
                               Plate{13, 9, 1, 3}, Plate{60, 40, 1, 1}}) {
        for (unsigned parts = 0; parts < 16; ++parts) {
            runs.push_back(
                {plate, (parts & 1) != 0, (parts & 2) != 0, (parts & 4) != 0, (parts & 8) != 0});
        }
    }
    runs.push_back({{60, 40, 2, 2}, true, true, true, true, 3.0F, 40});
    runs.push_back({{120, 80, 2, 2}, false, false, true, false});
    runs.push_back({{20, 12, 2, 2}, true, false, false, true, 1.5F, 80});
    return runs;
}

void printAll(const Library& library) {
    int restartId = 1;
    for (const Run& run : allRuns()) {
        std::printf("%dx%d (%d, %d)%s%s%s%s: %016" PRIx64 "\n", run.plate.nelx, run.plate.nely,
                    run.plate.subdivision, run.plate.meshFactor, run.passive ? " passive" : "",
                    run.blob ? " blob" : "", run.twoLoadCases ? " two-cases" : "",
                    run.editedMidway ? " edited" : "", fingerprint(library, run, restartId++));
    }
    for (const auto& [nelx, nely] : {std::pair{3, 2}, {12, 8}, {40, 30}, {70, 20}}) {
        for (const bool held : {true, false}) {
            std::printf("game %dx%d %s: %016" PRIx64 "\n", nelx, nely, held ? "held" : "free",
                        gameFingerprint(library, nelx, nely, held));
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s LIBRARY\n", argv[0]);
        return 2;
    }
    try {
        printAll(Library(argv[1]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
