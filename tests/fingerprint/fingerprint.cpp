// Prints a hash of everything that whole runs hand to a host: one line for each run. Two builds of
// the library whose lines agree gave the same bits. With two libraries it compares numbers instead,
// for builds with different BLAS: it prints how far they are apart, and fails if that is too far.
//
//     voxam_fingerprint LIBRARY [OTHER_LIBRARY]
#include <algorithm>
#include <cinttypes>
#include <cmath>
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

// What a host gets, in the order in which it gets it.
class Results {
public:
    void addObjective(double value) {
        hash.add(value);
        objectives.push_back(value);
    }
    void addChange(double value) {
        hash.add(value);
        fields.push_back(value);
    }
    void addField(const std::vector<float>& field) {
        for (const float value : field) hash.add(value);
        fields.insert(fields.end(), field.begin(), field.end());
    }
    void addText(const std::string& text) {
        hash.add(text);
        texts.push_back(text);
    }
    void addMask(const std::vector<int>& mask) {
        for (const int value : mask) hash.add(value);
    }

    Hash hash;
    std::vector<double> objectives;  ///< compliances and scores
    std::vector<double> fields;      ///< what lies between 0 and 1, and energies
    std::vector<std::string> texts;
};

Results resultsOf(const Library& library, const Run& run, int restartId) {
    const auto& [nelx, nely, subdivision, meshFactor] = run.plate;
    const int refinement = subdivision * meshFactor;
    std::vector<float> picture(static_cast<std::size_t>(nelx) * nely * refinement * refinement);
    std::vector<int> mask(static_cast<std::size_t>(nelx) * nely);
    test::Settings settings = settingsOf(run);
    Results results;
    library.create(nelx, nely, subdivision, meshFactor, 0.5F, run.twoLoadCases ? 2 : 1, restartId);
    send(library, settings);
    for (int i = 0; i < run.iterations; ++i) {
        if (run.editedMidway && i == run.iterations / 2) {
            edit(run, settings);
            send(library, settings);
        }
        char text[64];
        double change = 0.0;
        results.addObjective(run.blob ? library.iterateWithBlob(sizeof text, text, picture.data(),
                                                                &change, nullptr, mask.data(),
                                                                run.penalty)
                                      : library.iterate(sizeof text, text, picture.data(), &change,
                                                        nullptr, run.penalty));
        results.addChange(change);
        results.addText(text);
        results.addField(picture);
        results.addMask(mask);
    }
    return results;
}

Results gameResults(const Library& library, int nelx, int nely, bool held) {
    test::Settings settings = test::cantilever(nelx, nely);
    settings.loads.add(static_cast<float>(nelx), 0, 0.3F, -0.7F, 1);
    const int supports = held ? settings.supports.count() : 1;
    library.createGame(nelx, nely, 1, 1, settings.loads.count(), settings.loads.data(), supports,
                       settings.supports.data(), 2);
    Results results;
    test::Random random;
    std::vector<float> densities(static_cast<std::size_t>(nelx) * nely);
    std::vector<float> energies(densities.size());
    for (int design = 0; design < 4; ++design) {
        for (float& density : densities) {
            density = design == 0 ? 1.0F : static_cast<float>(random.number(0.0, 1.0));
        }
        results.addObjective(library.solve(densities.data(), energies.data()));
        results.addField(energies);
    }
    return results;
}

// A solid plate, a grey one, and one with holes.
Results analysisResults(const Library& library, int nelx, int nely) {
    test::Settings settings = test::cantilever(nelx, nely);
    settings.loads.add(static_cast<float>(nelx), 0, 0.3F, -0.7F, 1);
    library.createAnalysis(nelx, nely, settings.loads.count(), settings.loads.data(),
                           settings.supports.count(), settings.supports.data(), 2);
    Results results;
    test::Random random;
    const auto elements = static_cast<std::size_t>(nelx) * nely;
    const std::size_t ndof = 2 * static_cast<std::size_t>(nelx + 1) * (nely + 1);
    std::vector<double> moduli(elements);
    std::vector<double> compliances(2);
    std::vector<double> displacements(2 * ndof);
    std::vector<double> energies(2 * elements);
    std::vector<double> stresses(6 * elements);
    std::vector<unsigned char> loose(elements);
    for (int design = 0; design < 3; ++design) {
        for (double& modulus : moduli) {
            const double any = random.number(0.0, 1.0);
            modulus = design == 0 ? 1.0 : design == 1 ? any : std::ceil(any - 0.1);
        }
        const int status =
            library.analyse(moduli.data(), 0, nullptr, compliances.data(), displacements.data(),
                            energies.data(), stresses.data(), loose.data());
        results.addText(std::to_string(status));
        for (const auto* values : {&compliances, &displacements, &energies, &stresses}) {
            for (const double value : *values) results.addObjective(value);
        }
        results.addMask({loose.begin(), loose.end()});
    }
    return results;
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

std::string nameOf(const Run& run) {
    const auto& [nelx, nely, subdivision, meshFactor] = run.plate;
    return std::to_string(nelx) + "x" + std::to_string(nely) + " (" + std::to_string(subdivision) +
           ", " + std::to_string(meshFactor) + ")" + (run.passive ? " passive" : "") +
           (run.blob ? " blob" : "") + (run.twoLoadCases ? " two-cases" : "") +
           (run.editedMidway ? " edited" : "");
}

// Calls `use` with the name of each run and a function that makes the results of a library.
template <typename Use>
void forAll(const Use& use) {
    int restartId = 1;
    for (const Run& run : allRuns()) {
        use(nameOf(run),
            [&](const Library& library) { return resultsOf(library, run, restartId); });
        ++restartId;
    }
    for (const auto& [nelx, nely] : {std::pair{3, 2}, {12, 8}, {40, 30}, {70, 20}}) {
        for (const bool held : {true, false}) {
            use("game " + std::to_string(nelx) + "x" + std::to_string(nely) +
                    (held ? " held" : " free"),
                [&, nelx = nelx, nely = nely](const Library& library) {
                    return gameResults(library, nelx, nely, held);
                });
        }
    }
    for (const auto& [nelx, nely] : {std::pair{3, 2}, {40, 30}, {300, 5}}) {
        use("analysis " + std::to_string(nelx) + "x" + std::to_string(nely),
            [nelx = nelx, nely = nely](const Library& library) {
                return analysisResults(library, nelx, nely);
            });
    }
}

void printHashes(const Library& library) {
    forAll([&](const std::string& name, const auto& results) {
        std::printf("%s: %016" PRIx64 "\n", name.c_str(), results(library).hash.value());
    });
}

// The largest difference of two numbers, relative to those that are larger than 1. NaN counts as
// infinitely far from everything but NaN.
double distance(const std::vector<double>& a, const std::vector<double>& b) {
    if (a.size() != b.size()) return INFINITY;
    double largest = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] == b[i] || (std::isnan(a[i]) && std::isnan(b[i]))) continue;
        const double difference =
            std::fabs(a[i] - b[i]) / std::max({1.0, std::fabs(a[i]), std::fabs(b[i])});
        largest = difference <= largest ? largest : std::isnan(difference) ? INFINITY : difference;
    }
    return largest;
}

// Two BLAS differ in the last bits of a displacement. Over the iterations of a run the optimiser
// makes more of it, and so do the steep projection and the rounding to float of a picture.
struct Tolerance {
    double objectives;
    double fields;
};
constexpr Tolerance TOLERANCE{1e-8, 1e-5};
// A score is a sum of energies in single precision, each of a difference of large displacements.
constexpr Tolerance SCORE_TOLERANCE{1e-4, 1e-2};

bool compare(const Library& library, const Library& other) {
    bool alike = true;
    Tolerance largest{0.0, 0.0};
    forAll([&](const std::string& name, const auto& results) {
        const Results a = results(library);
        const Results b = results(other);
        const bool isScore = a.texts.empty();
        const auto& [objectives, fields] = isScore ? SCORE_TOLERANCE : TOLERANCE;
        const double objective = distance(a.objectives, b.objectives);
        const double field = distance(a.fields, b.fields);
        if (!isScore) {
            largest.objectives = std::max(largest.objectives, objective);
            largest.fields = std::max(largest.fields, field);
        }
        if (objective <= objectives && field <= fields && a.texts == b.texts) return;
        std::printf("%s: compliances differ by %.2g, fields by %.2g, texts %s\n", name.c_str(),
                    objective, field, a.texts == b.texts ? "agree" : "differ");
        alike = false;
    });
    std::printf("largest differences of runs: compliances %.2g, pictures %.2g\n",
                largest.objectives, largest.fields);
    return alike;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "Usage: %s LIBRARY [OTHER_LIBRARY]\n", argv[0]);
        return 2;
    }
    try {
        const Library library(argv[1]);
        if (argc == 3) return compare(library, Library(argv[2])) ? 0 : 1;
        printHashes(library);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
