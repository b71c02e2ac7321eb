#include "view.h"

#include <algorithm>
#include <cmath>

#include "format/input_error.h"
#include "format/refinement.h"
#include "format/symmetry.h"
#include "format/text.h"

using namespace voxam;

namespace {

/// Numbers of the load cases that a view shows.
std::vector<int> shownCases(const ViewOptions& options, const Scene& scene) {
    if (options.loadCase) return {*options.loadCase};
    if (options.view == "deformed") return {scene.loadCasesInUse.front()};
    return scene.loadCasesInUse;
}

/// The value of each element, from its states in the load cases.
template <typename Value>
Field fieldOf(const Field& design, const Assessment& found, const std::vector<int>& cases,
              Value value) {
    Field field(design.width, design.height);
    for (int x = 0; x < field.width; ++x)
        for (int y = 0; y < field.height; ++y) {
            double result = 0;
            for (const int each : cases)
                result = value(result, found.states[static_cast<std::size_t>(each)], x, y);
            field.at(x, y) = static_cast<float>(result);
        }
    return field;
}

/// The number with its first two digits, the others 0. Divides by whole powers of ten only: a
/// product with 0.0001 has digits of rounding.
double roundedDown(double number) {
    const double places = 1 - std::floor(std::log10(number));
    const double power = std::pow(10.0, std::abs(places));
    return places > 0 ? std::floor(number * power) / power : std::floor(number / power) * power;
}

/// Of nodes without material 0.
Deformation deformationOf(const PlateState& state, const Scene& scene) {
    // Whatever moves stays in sight: within the margin around the plate, or a tenth of its size.
    constexpr double share = 0.05;
    const double room = share * std::max(scene.width, scene.height);
    Deformation result{Field(state.width + 1, state.height + 1),
                       Field(state.width + 1, state.height + 1)};
    double largest = 0;
    for (int x = 0; x <= state.width; ++x)
        for (int y = 0; y <= state.height; ++y) {
            const double right = state.displacementX(x, y);
            const double down = state.displacementY(x, y);
            if (std::isnan(right) || std::isnan(down)) continue;
            result.right.at(x, y) = static_cast<float>(right);
            result.down.at(x, y) = static_cast<float>(down);
            largest = std::max({largest, std::abs(right), std::abs(down)});
        }
    result.magnification = largest > 0 ? roundedDown(room / largest) : 1;
    return result;
}

std::string caseText(const std::vector<int>& cases, const Assessment& found, const Scene& scene,
                     const char* ofAll) {
    if (scene.loadCases == 1) return "";
    if (cases.size() == 1)
        return formatted(",  load case %d: compliance %.6g", cases.front(),
                         found.states[static_cast<std::size_t>(cases.front())].compliance);
    return std::string(",  ") + ofAll + " of " + counted(cases.size(), "load case");
}

}  // namespace

PictureContent mirrored(const PictureContent& content, const Scene& scene) {
    const Symmetry symmetry = scene.symmetry;
    if (symmetry == Symmetry::NONE) return content;
    PictureContent whole = content;
    whole.material = wholeOf(content.material, symmetry);
    if (content.energies) whole.energies = wholeOf(*content.energies, symmetry);
    if (content.deformation) {
        const float right = isUpright(symmetry) ? -1.0f : 1.0f;
        whole.deformation->right = wholeOfNodes(content.deformation->right, symmetry, right);
        whole.deformation->down = wholeOfNodes(content.deformation->down, symmetry, -right);
    }
    whole.floating.clear();
    for (const FloatingPart& part : content.floating) {
        Field marked(content.material.width, content.material.height);
        for (const Cell& cell : part.cells) marked.at(cell.x, cell.y) = 1;
        const auto parts = floatingParts(wholeOf(marked, symmetry), part.refinement);
        whole.floating.insert(whole.floating.end(), parts.begin(), parts.end());
    }
    return whole;
}

bool needsStates(const ViewOptions& options) {
    return options.view == "stress" || options.view == "deformed" || options.loadCase;
}

void checkView(const ViewOptions& options, const Scene& scene) {
    if (!options.loadCase) return;
    const auto& cases = scene.loadCasesInUse;
    if (std::find(cases.begin(), cases.end(), *options.loadCase) != cases.end()) return;
    std::vector<std::string> numbers;
    for (const int each : cases) numbers.push_back(std::to_string(each));
    throw InputError("--load-case: " + std::to_string(*options.loadCase) +
                     " is not in use; in use: " + listed(numbers));
}

std::string showView(const ViewOptions& options, const Assessment& found, const Scene& scene,
                     PictureContent& content) {
    if (!found.problems.empty() || options.view == "material") return "";
    if (options.view == "energy" && found.states.empty()) {
        content.energies = found.score.energies;
        return "";
    }
    const auto cases = shownCases(options, scene);
    content.loadCases = cases;
    if (options.view == "energy") {
        content.energies = fieldOf(content.material, found, cases,
                                   [](double sum, const PlateState& state, int x, int y) {
                                       return sum + state.energy(x, y);
                                   });
        return caseText(cases, found, scene, "sum");
    }
    if (options.view == "stress") {
        // The analysis has elements with an edge of 1.
        const double edge = scene.elementSize / refinementOf(content.material, scene);
        content.energies = fieldOf(content.material, found, cases,
                                   [edge](double most, const PlateState& state, int x, int y) {
                                       return std::max(most, state.stress(x, y).vonMises() / edge);
                                   });
        content.measure = "Von Mises stress: force / mm\u00b2 at a thickness of 1 mm";
        content.isAbsolute = true;
        return caseText(cases, found, scene, "largest");
    }
    const auto& state = found.states[static_cast<std::size_t>(cases.front())];
    content.deformation = deformationOf(state, scene);
    return ",  deformation times " + plainNumber(content.deformation->magnification) +
           caseText(cases, found, scene, "");
}
