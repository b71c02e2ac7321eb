#include "checked_library.h"

#include <climits>
#include <cmath>

#include "fault.h"

namespace soak {

using test::LoadedLibrary;

namespace {

bool allOf(const auto& values, const auto& property) {
    return std::ranges::all_of(values, property);
}

bool isFinite(float value) { return std::isfinite(value); }

// The library takes sizes as unsigned.
double asSize(int size) { return static_cast<unsigned>(size); }

bool isCutOf(const std::string& text, const std::string& whole, int length) {
    return text == whole.substr(0, static_cast<std::size_t>(length - 1));
}

}  // namespace

// What one iteration may write to.
struct CheckedLibrary::Buffers {
    Buffers(const Plate& plate, const Request& request)
        : text(static_cast<std::size_t>(std::max(request.messageLength, 0))),
          picture(plate.pictureCells()),
          mask(plate.elements()) {}

    // Empty if the host did not give a buffer.
    std::string textFor(const Request& request) const {
        require(text.isIntact(), "writes nothing beside the text");
        if (!request.text || request.messageLength < 1) {
            require(text.untouched(), "no text goes where none is wanted");
            return "";
        }
        const auto end = std::find(text.begin(), text.end(), '\0');
        require(end != text.end(), "texts are terminated");
        return {text.begin(), end};
    }

    void requireTimes() const {
        const auto t = times.copy();  // in the order of RuntimeStat
        constexpr float rounding = 1e-3F;
        require(allOf(t, [](float time) { return time >= 0; }), "times are not negative");
        require(t[0] * (1 + rounding) + rounding >= t[1] + t[2] + t[6] + t[7],
                "the iteration takes as long as its parts");
        require(t[2] * (1 + rounding) + rounding >= t[3] + t[4] + t[5],
                "the state solve takes as long as its parts");
    }

    Guarded<char> text;
    Guarded<float> picture;
    Guarded<double> change{1};
    Guarded<float> times{sizeof(RuntimeStat) / sizeof(float)};
    Guarded<int> mask;
};

template <typename T>
std::vector<T> CheckedLibrary::answerIn(const Guarded<T>& array, const std::string& name) {
    require(array.isIntact(), "writes nothing beside " + name);
    for (const T value : array) hash.add(value);
    return array.copy();
}

std::size_t Plate::elements() const {
    return tooLarge() ? 0 : static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

std::size_t Plate::pictureCells() const {
    const auto refinement =
        static_cast<std::size_t>(subdivision) * static_cast<std::size_t>(meshFactor);
    return tooLarge() ? 0 : elements() * refinement * refinement;
}

bool Plate::tooLarge() const {
    const double refinement = asSize(subdivision) * asSize(meshFactor);
    return 2 * (asSize(width) + 1) * (asSize(height) + 1) > INT_MAX ||
           asSize(width) * asSize(height) * refinement * refinement > INT_MAX;
}

CheckedLibrary::CheckedLibrary(Caller& caller) : caller(caller) {
    destroy();
    destroyGame();
    destroyAnalysis();
}

void CheckedLibrary::create(const Plate& newPlate, float volumeFraction, int loadCases,
                            int newRestartId) {
    caller.call([&](const LoadedLibrary& library) {
        library.create(newPlate.width, newPlate.height, newPlate.subdivision, newPlate.meshFactor,
                       volumeFraction, loadCases, newRestartId);
    });
    const bool kept = alive && newPlate.width == plate.width && newPlate.height == plate.height &&
                      newRestartId == restartId;
    restartId = newRestartId;
    if (kept) return;
    plate = newPlate;
    alive = !newPlate.tooLarge() && std::isfinite(volumeFraction);
    shown = Shown::NO;
    lastWentWell = false;
}

void CheckedLibrary::update(const test::Settings& s) {
    update(s.loads.count(), s.loads.data(), s.supports.count(), s.supports.data(), s.volumeFraction,
           s.passive.data(), static_cast<int>(s.loadCases.size()), s.loadCases.data(),
           s.blob.data());
}

void CheckedLibrary::update(int loadCount, const float* loads, int supportCount,
                            const float* supports, float volumeFraction, const short* passive,
                            int caseCount, const char* cases, const short* blob) {
    caller.call([&](const LoadedLibrary& library) {
        library.update(loadCount, loads, supportCount, supports, volumeFraction, passive, caseCount,
                       cases, blob);
    });
    shown = Shown::NO;
}

Answer CheckedLibrary::iterate(const Request& request) {
    Buffers buffers(plate, request);
    char* text = request.text ? buffers.text.data() : nullptr;
    float* picture = request.picture ? buffers.picture.data() : nullptr;
    double* change = request.change ? buffers.change.data() : nullptr;
    auto* times = request.times ? reinterpret_cast<RuntimeStat*>(buffers.times.data()) : nullptr;
    int* mask = request.mask ? buffers.mask.data() : nullptr;

    Answer answer;
    caller.call([&](const LoadedLibrary& library) {
        answer.compliance = request.withBlob
                                ? library.iterateWithBlob(request.messageLength, text, picture,
                                                          change, times, mask, request.penalty)
                                : library.iterate(request.messageLength, text, picture, change,
                                                  times, request.penalty);
    });
    require(buffers.times.isIntact(), "writes nothing beside the times");
    answer.text = buffers.textFor(request);
    answer.change = answerIn(buffers.change, "the change").front();
    answer.picture = answerIn(buffers.picture, "the picture");
    answer.mask = answerIn(buffers.mask, "the mask");
    hash.add(answer.compliance);
    hash.add(answer.text);
    checkWrites(request, answer.text, buffers);
    checkAnswer(request, answer);
    return answer;
}

void CheckedLibrary::checkWrites(const Request& request, const std::string& text,
                                 const Buffers& buffers) const {
    if (request.messageLength > 1 && request.text) {
        const bool wentWell = alive && text.empty();
        require(wentWell || (buffers.picture.untouched() && buffers.times.untouched()),
                "with a text there is no picture, and there are no times");
        // A text may be that of an earlier iteration, and this one have gone well.
        require(wentWell || shown != Shown::NO || buffers.change.untouched(),
                "when something is wrong there is no change");
        if (wentWell && request.times) buffers.requireTimes();
    }
    const bool writesMask = alive && request.mask && request.withBlob;
    require(writesMask || buffers.mask.untouched(), "the mask comes with the blob only");
    require(!writesMask || allOf(buffers.mask, [](int v) { return v == 0 || v == 1; }),
            "the mask is of 0 and 1");
}

void CheckedLibrary::checkAnswer(const Request& request, const Answer& answer) {
    if (!alive) return checkWithoutOptimiser(request, answer);
    const std::string& text = answer.text;
    const bool known = text.empty() || isCutOf(text, UNSOLVABLE, request.messageLength) ||
                       isCutOf(text, NOT_HELD, request.messageLength) ||
                       isCutOf(text, NO_WORK, request.messageLength);
    require(known, "a plate has one of the documented texts, not \"" + text + "\"");
    if (!request.text || request.messageLength < 2) {
        if (shown == Shown::NO) shown = Shown::UNKNOWN;
        lastWentWell = false;
        return;
    }
    const Shown before = shown;
    require(before != Shown::YES || !text.empty(), "a text stays until the next update");
    shown = text.empty() ? Shown::NO : Shown::YES;
    if (text.empty()) {
        require(allOf(answer.picture, isFinite), "a picture is of finite numbers");
        require(!(answer.change < 0), "a change is not negative");
    } else if (text == UNSOLVABLE && lastWentWell) {
        require(answer.compliance == lastCompliance ||
                    (std::isnan(answer.compliance) && std::isnan(lastCompliance)),
                "what cannot be solved returns the last compliance");
    } else if ((text == NOT_HELD || text == NO_WORK) && before == Shown::NO) {
        require(answer.compliance == -1.0, "with the text " + text + " comes -1");
    }
    lastWentWell = text.empty();
    lastCompliance = answer.compliance;
}

void CheckedLibrary::checkWithoutOptimiser(const Request& request, const Answer& answer) const {
    require(answer.compliance == -1.0, "without an optimiser iterations return -1");
    if (request.text && request.messageLength > 0) {
        require(isCutOf(answer.text, NO_OPTIMISER, request.messageLength),
                "without an optimiser the text says so");
    }
}

void CheckedLibrary::destroy() {
    caller.call([](const LoadedLibrary& library) { library.destroy(); });
    alive = false;
    shown = Shown::NO;
}

void CheckedLibrary::createGame(int width, int height, const test::Records& loads,
                                const test::Records& supports, int loadCases) {
    caller.call([&](const LoadedLibrary& library) {
        library.createGame(width, height, 1, 1, loads.count(), loads.data(), supports.count(),
                           supports.data(), loadCases);
    });
    const Plate newPlate = {std::max(width, 0), std::max(height, 0)};
    gameAlive = !newPlate.tooLarge();
    gameElements = newPlate.elements();
}

Score CheckedLibrary::score(const std::vector<float>& densities) {
    Guarded<float> shares(gameElements);
    Score score;
    caller.call([&](const LoadedLibrary& library) {
        score.value = library.solve(densities.data(), shares.data());
    });
    score.shares = answerIn(shares, "the shares of the elements");
    hash.add(score.value);
    if (!gameAlive) {
        require(score.value == FAILED_SCORE && shares.untouched(),
                "without a solver every score fails, and nothing is written");
        return score;
    }
    require(score.value != FAILED_SCORE || allOf(shares, [](float v) { return v == 0; }),
            "what cannot be solved has shares of 0");
    require(score.value >= 0 || !allOf(densities, [](float v) { return v >= 0 && v <= 1; }),
            "a score is a number, and not negative");
    return score;
}

void CheckedLibrary::destroyGame() {
    caller.call([](const LoadedLibrary& library) { library.destroyGame(); });
    gameAlive = false;
    gameElements = 0;
}

void CheckedLibrary::createAnalysis(int width, int height, const test::Records& loads,
                                    const test::Records& supports, int loadCases) {
    caller.call([&](const LoadedLibrary& library) {
        library.createAnalysis(width, height, loads.count(), loads.data(), supports.count(),
                               supports.data(), loadCases);
    });
    analysisPlate = {std::max(width, 0), std::max(height, 0)};
    analysisAlive = !analysisPlate.tooLarge();
    analysisCases = analysisAlive ? static_cast<std::size_t>(std::max(loadCases, 0)) : 0;
}

Analysed CheckedLibrary::analyse(const std::vector<double>& moduli, int messageLength) {
    const std::size_t elements = analysisPlate.elements();
    // None where the plate is refused for its size, which may be the largest int.
    const auto nodes = analysisAlive ? static_cast<std::size_t>(analysisPlate.width + 1) *
                                           static_cast<std::size_t>(analysisPlate.height + 1)
                                     : 0;
    Guarded<char> text(static_cast<std::size_t>(std::max(messageLength, 0)));
    Guarded<double> compliances(analysisCases);
    Guarded<double> displacements(2 * nodes * analysisCases);
    Guarded<double> energies(elements * analysisCases);
    Guarded<double> stresses(3 * elements * analysisCases);
    Guarded<unsigned char> loose(elements);
    Analysed result;
    caller.call([&](const LoadedLibrary& library) {
        result.status = library.analyse(moduli.empty() ? nullptr : moduli.data(), messageLength,
                                        text.data(), compliances.data(), displacements.data(),
                                        energies.data(), stresses.data(), loose.data());
    });
    require(text.isIntact() && loose.isIntact(), "writes nothing beside the text and the mask");
    result.compliances = answerIn(compliances, "the compliances");
    answerIn(displacements, "the displacements");
    result.energies = answerIn(energies, "the energies");
    result.stresses = answerIn(stresses, "the stresses");
    result.loose = loose.copy();
    hash.add(result.status);
    for (const unsigned char flag : result.loose) hash.add(static_cast<int>(flag));

    const int status = result.status;
    require(analysisAlive ? status >= VOXAM_ANALYSIS_SOLVED && status < VOXAM_ANALYSIS_NONE
                          : status == VOXAM_ANALYSIS_NONE || status == VOXAM_ANALYSIS_OUT_OF_MEMORY,
            "an analysis has one of its statuses");
    if (messageLength > 1) {
        const auto end = std::find(text.begin(), text.end(), '\0');
        require(end != text.end(), "texts are terminated");
        require((end == text.begin()) == (status == VOXAM_ANALYSIS_SOLVED),
                "what is not solved has a text");
    }
    if (status > VOXAM_ANALYSIS_LOOSE_PART) {
        require(compliances.untouched() && displacements.untouched() && energies.untouched() &&
                    stresses.untouched(),
                "what is not solved has no results");
        require(status <= VOXAM_ANALYSIS_MECHANISM || status == VOXAM_ANALYSIS_NOT_CONVERGED ||
                    loose.untouched(),
                "without moduli there is no mask");
        return result;
    }
    require(allOf(compliances, [](double v) { return v >= 0; }) &&
                allOf(energies, [](double v) { return v >= 0; }),
            "compliances and energies are not negative");
    require(allOf(loose, [](unsigned char v) { return v <= 1; }), "the mask is of 0 and 1");
    return result;
}

void CheckedLibrary::destroyAnalysis() {
    caller.call([](const LoadedLibrary& library) { library.destroyAnalysis(); });
    analysisAlive = false;
    analysisPlate = {};
    analysisCases = 0;
}

}  // namespace soak
