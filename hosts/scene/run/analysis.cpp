#include "run/analysis.h"

#include <voxam.h>

#include <cmath>
#include <stdexcept>

#include "run/records.h"

namespace voxam::inline run {

namespace {

/// The library's one analysis, for as long as this object lives.
class LibraryAnalysis {
public:
    explicit LibraryAnalysis(const Scene& plate) {
        const auto loads = loadRecords(plate);
        const auto supports = supportRecords(plate);
        _InitVoxamAnalysis(plate.width, plate.height, static_cast<int>(loads.size() / 5),
                           loads.data(), static_cast<int>(supports.size() / 5), supports.data(),
                           plate.loadCaseCount());
    }
    LibraryAnalysis(const LibraryAnalysis&) = delete;
    LibraryAnalysis& operator=(const LibraryAnalysis&) = delete;
    ~LibraryAnalysis() { _DestroyVoxamAnalysis(); }
};

Analysis::Outcome outcomeOf(int status, const char* text) {
    switch (status) {
        case VOXAM_ANALYSIS_SOLVED:
        case VOXAM_ANALYSIS_LOOSE_PART:
            return Analysis::SOLVED;
        case VOXAM_ANALYSIS_LOAD_WITHOUT_MATERIAL:
        case VOXAM_ANALYSIS_MECHANISM:
            return Analysis::NOT_SUPPORTED;
        case VOXAM_ANALYSIS_NOT_CONVERGED:
            return Analysis::NOT_ACCURATE;
        case VOXAM_ANALYSIS_INVALID:
            throw std::runtime_error(text);
        default:
            throw std::runtime_error("not enough memory to analyse the design");
    }
}

/// Gives each state its part of the values, which has the states one after the other, and frees
/// them: the values of many load cases take most of the memory.
void distribute(std::vector<double>& all, std::vector<double> PlateState::*values,
                std::vector<PlateState>& states) {
    const auto size = static_cast<std::ptrdiff_t>(all.size() / states.size());
    auto begin = all.cbegin();
    for (PlateState& state : states) {
        (state.*values).assign(begin, begin + size);
        begin += size;
    }
    std::vector<double>().swap(all);
}

/// Every sum over load cases.
template <typename Value>
double weightedSum(const std::vector<PlateState>& states, const Scene& scene,
                   const std::vector<int>& loadCases, Value value) {
    double sum = 0;
    for (const int each : loadCases)
        sum += scene.weight(each) * value(states[static_cast<std::size_t>(each)]);
    return sum;
}

}  // namespace

double Stress::vonMises() const {
    return std::sqrt(std::max(0.0, x * x - x * y + y * y + 3 * shear * shear));
}

Stress PlateState::stress(int x, int y) const {
    const double* const first = &stresses[3 * element(x, y)];
    return {first[0], first[1], first[2]};
}

double weightedCompliance(const std::vector<PlateState>& states, const Scene& scene,
                          const std::vector<int>& loadCases) {
    return weightedSum(states, scene, loadCases,
                       [](const PlateState& state) { return state.compliance; });
}

double weightedEnergy(const std::vector<PlateState>& states, const Scene& scene,
                      const std::vector<int>& loadCases, int x, int y) {
    return weightedSum(states, scene, loadCases,
                       [=](const PlateState& state) { return state.energy(x, y); });
}

Analysis analyse(const Field& densities, const Scene& plate, bool withFields) {
    const auto cases = static_cast<std::size_t>(plate.loadCaseCount());
    const std::size_t elements = densities.values.size();
    const std::size_t nodes =
        static_cast<std::size_t>(plate.width + 1) * static_cast<std::size_t>(plate.height + 1);
    const auto inOrder = toElementOrder(densities);
    const std::vector<double> moduli(inOrder.begin(), inOrder.end());
    std::vector<double> compliances(cases);
    std::vector<double> energies(cases * elements);
    std::vector<double> displacements(withFields ? cases * 2 * nodes : 0);
    std::vector<double> stresses(withFields ? cases * 3 * elements : 0);
    std::vector<unsigned char> loose(elements);
    char text[256] = "";
    const LibraryAnalysis library(plate);
    const int status =
        _SolveVoxamAnalysis(moduli.data(), sizeof text, text, compliances.data(),
                            withFields ? displacements.data() : nullptr, energies.data(),
                            withFields ? stresses.data() : nullptr, loose.data());

    Analysis result;
    result.outcome = outcomeOf(status, text);
    result.loose = fromElementOrder({loose.begin(), loose.end()}, plate.width, plate.height);
    if (result.outcome != Analysis::SOLVED) return result;
    for (const double compliance : compliances)
        result.states.push_back({compliance, {}, {}, {}, plate.width, plate.height});
    distribute(energies, &PlateState::energies, result.states);
    distribute(displacements, &PlateState::displacements, result.states);
    distribute(stresses, &PlateState::stresses, result.states);
    return result;
}

}  // namespace voxam::inline run
