// A host's view of the library. Whatever a host asks for, each answer has to keep the contract of
// voxam.h; what does not is a Fault.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "../support/answers.h"
#include "../support/guarded.h"
#include "../support/hash.h"
#include "../support/plates.h"
#include "caller.h"

namespace soak {

using namespace test;  // its answers and guarded arrays

/// The sizes of an optimiser, in the order of _InitVoxamApp.
struct Plate {
    int width = 0;
    int height = 0;
    int subdivision = 1;
    int meshFactor = 1;

    /// 0 if there are none, or if they are too many for any array.
    std::size_t elements() const;
    std::size_t pictureCells() const;
    /// Whether the library has to refuse these sizes: an int cannot count something of them.
    bool tooLarge() const;
};

struct Request {
    bool withBlob = false;
    float penalty = 3.0F;
    int messageLength = 64;
    // What the host wants to have; it passes null for the rest.
    bool text = true;
    bool picture = true;
    bool change = true;
    bool times = true;
    bool mask = true;
};

struct Answer {
    double compliance = 0.0;
    double change = 0.0;
    std::string text;
    std::vector<float> picture;
    std::vector<int> mask;
};

struct Score {
    double value = 0.0;
    std::vector<float> shares;

    bool operator==(const Score&) const = default;
};

/// Without the displacements, which may be NaN: those are in the digest.
struct Analysed {
    int status = 0;
    std::vector<double> compliances;
    std::vector<double> energies;
    std::vector<double> stresses;
    std::vector<unsigned char> loose;

    bool operator==(const Analysed&) const = default;
};

class CheckedLibrary {
public:
    /// Releases whatever solvers there are.
    explicit CheckedLibrary(Caller& caller);

    void create(const Plate& newPlate, float volumeFraction, int loadCases, int newRestartId);
    void update(const test::Settings& settings);
    /// With the arguments of _UpdateVoxamApp.
    void update(int loadCount, const float* loads, int supportCount, const float* supports,
                float volumeFraction, const short* passive, int caseCount, const char* cases,
                const short* blob);
    Answer iterate(const Request& request);
    void destroy();

    void createGame(int width, int height, const test::Records& loads,
                    const test::Records& supports, int loadCases);
    Score score(const std::vector<float>& densities);
    void destroyGame();

    void createAnalysis(int width, int height, const test::Records& loads,
                        const test::Records& supports, int loadCases);
    /// Empty moduli stand for a null array.
    Analysed analyse(const std::vector<double>& moduli, int messageLength = 160);
    void destroyAnalysis();

    const Plate& getPlate() const { return plate; }
    bool isAlive() const { return alive; }

    /// Of all answers so far.
    uint64_t digest() const { return hash.value(); }

private:
    struct Buffers;

    /// What is in an array after a call, which has to have written there alone; for the digest too.
    template <typename T>
    std::vector<T> answerIn(const Guarded<T>& array, const std::string& name);
    void checkWrites(const Request& request, const std::string& text, const Buffers& buffers) const;
    void checkWithoutOptimiser(const Request& request, const Answer& answer) const;
    void checkAnswer(const Request& request, const Answer& answer);

    Caller& caller;
    test::Hash hash;

    // The optimiser, as the host knows it.
    bool alive = false;
    Plate plate;
    int restartId = 0;
    enum class Shown { NO, YES, UNKNOWN };
    Shown shown = Shown::NO;      // a text, since the last update
    double lastCompliance = 0.0;  // of the iteration before, if that went well
    bool lastWentWell = false;

    bool gameAlive = false;
    std::size_t gameElements = 0;

    bool analysisAlive = false;
    Plate analysisPlate;
    std::size_t analysisCases = 0;
};

}  // namespace soak
