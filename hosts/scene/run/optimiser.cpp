#include "run/optimiser.h"

#include <array>
#include <stdexcept>
#include <utility>

#include "run/records.h"

namespace voxam::inline run {

namespace {

constexpr const char* BENDS_TOO_FAR = "Change load/support";

// The library takes displacements beyond some 1e7 for those of a plate that nothing holds; a
// slender one reaches them under a force of 1. Two steps suffice for a bar of one row of 1000
// elements, and what is really free goes far beyond.
constexpr double SOFTER = 1e3;
constexpr int SOFTER_STEPS = 2;

}  // namespace

Optimiser::Optimiser(const Scene& scene)
    : width(scene.width), height(scene.height), unitOfForce(forceUnit(scene)) {
    start(scene);
}

void Optimiser::start(const Scene& scene) {
    refinement = scene.refinement();
    const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    picture.assign(cells * static_cast<std::size_t>(refinement * refinement), 1);
    blobMask.assign(cells, 0);
    _InitVoxamApp(width, height, scene.subdivision, scene.meshFactor,
                  static_cast<float>(scene.volumeFraction), scene.loadCaseCount(), restartId);
    update(scene);
}

bool Optimiser::rescale(const Scene& scene) {
    const double before = std::exchange(unitOfForce, softness * forceUnit(scene));
    return unitOfForce != before;
}

void Optimiser::update(const Scene& scene) {
    if (!hasDesign) lastUpdate = scene;
    const auto loads = weightedLoadRecords(scene, unitOfForce);
    const auto supports = supportRecords(scene);
    const auto passive = passiveRecords(scene.passive);
    const auto blobCells = cellRecords(scene.blob);
    const std::vector<char> cases(scene.loadCasesInUse.begin(), scene.loadCasesInUse.end());
    _UpdateVoxamApp(static_cast<int>(loads.size() / 5), loads.data(),
                    static_cast<int>(supports.size() / 5), supports.data(),
                    static_cast<float>(scene.volumeFraction), passive.data(),
                    static_cast<int>(cases.size()), cases.data(), blobCells.data());
}

void Optimiser::restart(const Scene& scene, bool keepsDesign) {
    if (!keepsDesign) ++restartId;
    start(scene);
}

Optimiser::Outcome Optimiser::iterate(double penalty, bool movesBlob) {
    Outcome outcome = iterateOnce(penalty, movesBlob);
    for (int step = 0; step < SOFTER_STEPS && !hasDesign && outcome.message == BENDS_TOO_FAR;
         ++step) {
        softness *= SOFTER;
        unitOfForce *= SOFTER;
        restart(Scene(lastUpdate), false);
        outcome = iterateOnce(penalty, movesBlob);
    }
    hasDesign = hasDesign || outcome.message.empty();
    return outcome;
}

Optimiser::Outcome Optimiser::iterateOnce(double penalty, bool movesBlob) {
    std::array<char, 256> message = {};
    constexpr int length = static_cast<int>(message.size());
    const auto exponent = static_cast<float>(penalty);
    Outcome outcome;
    outcome.compliance = movesBlob ? _IterateVoxamAppWithBlob(
                                         length, message.data(), picture.data(), &outcome.change,
                                         &outcome.times, blobMask.data(), exponent)
                                   : _IterateVoxamApp(length, message.data(), picture.data(),
                                                      &outcome.change, &outcome.times, exponent);
    outcome.compliance *= unitOfForce * unitOfForce;
    outcome.message = message.data();
    // The problem of the scene is not at fault, and no change of it would help.
    if (outcome.message.starts_with("No optimiser") || outcome.message == "std::bad_alloc")
        throw std::runtime_error("not enough memory to optimise");
    return outcome;
}

Field Optimiser::material() const {
    Field field(width * refinement, height * refinement);
    for (std::size_t i = 0; i < picture.size(); ++i) field.values[i] = 1 - picture[i];
    return field;
}

Area Optimiser::blob() const {
    Area area;
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y)
            if (blobMask[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(x)] != 0)
                area.cells.push_back({x, y});
    return area;
}

}  // namespace voxam::inline run
