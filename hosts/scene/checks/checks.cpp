#include "checks/checks.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "checks/available_memory.h"
#include "checks/held_nodes.h"
#include "checks/material.h"
#include "checks/memory_need.h"
#include "checks/passive_void.h"
#include "checks/plate_checks.h"
#include "format/detail.h"
#include "format/refinement.h"
#include "format/text.h"
#include "format/timeline.h"

namespace voxam::inline checks {

namespace {

constexpr double WORSE_AS_DRAWN = 1.15;  // times the reported compliance
constexpr double VOLUME_TOLERANCE = 0.03;
constexpr double DOTS = 0.01;  // of the material: less of it may float without a warning
// Beyond, a design shows detail that it is not computed with.
constexpr int FINEST_SUBDIVISION = 4;
constexpr int FINEST_SUBDIVISION_OF_LITTLE = 3;
constexpr double LITTLE_VOLUME = 0.25;
// A load over more of a free edge has no material at some of its nodes, unless there is much of it.
constexpr double MUCH_OF_EDGE = 1.0 / 3;
constexpr double FEW_ELEMENTS = 3;
constexpr double MUCH_VOLUME = 0.4;
constexpr double LOW_PENALTY = 2;  // below, greys are nearly worth their material
constexpr int FINER = 2;           // the subdivision to advise instead of 1

Finding error(const std::string& key, const std::string& text,
              const std::optional<Place>& place = std::nullopt) {
    return {Finding::ERROR, key, text, place};
}

Finding warning(const std::string& key, const std::string& text) {
    return {Finding::WARNING, key, text, std::nullopt};
}

void append(Findings& findings, const Findings& more) {
    findings.insert(findings.end(), more.begin(), more.end());
}

std::string item(const char* list, std::size_t number) {
    return std::string(list) + "[" + std::to_string(number) + "]";
}

bool hasForce(const Load& load) { return load.fx != 0 || load.fy != 0; }

Findings findInsideVoid(const Scene& scene) {
    if (scene.passive.voids.empty()) return {};
    const PassiveVoid passiveVoid(scene);
    Findings findings;
    const auto check = [&](const std::string& key, const auto& where) {
        const auto node = passiveVoid.firstInside(where.x, where.y);
        if (node)
            findings.push_back(error(key,
                                     "node " + placeText(node->x, node->y) +
                                         " lies inside the elements that passive.void keeps void",
                                     Place{true, {node->x, node->x}, {node->y, node->y}}));
    };
    for (std::size_t i = 0; i < scene.loads.size(); ++i)
        if (hasForce(scene.loads[i])) check(item("loads", i), scene.loads[i]);
    for (std::size_t i = 0; i < scene.supports.size(); ++i)
        check(item("supports", i), scene.supports[i]);
    return findings;
}

/// The elements at nodes that a support holds.
Cells heldCells(const Scene& scene) {
    Cells cells;
    for (const Support& support : scene.supports)
        for (int x = std::max(0, support.x.from - 1); x <= std::min(support.x.to, scene.width - 1);
             ++x)
            for (int y = std::max(0, support.y.from - 1);
                 y <= std::min(support.y.to, scene.height - 1); ++y)
                cells.push_back({x, y});
    return cells;
}

/// The plate but for the elements that stay void.
Field designable(const Scene& scene) {
    Field plate(scene.width, scene.height, 1);
    for (const Cell& cell : scene.passive.voids.cells) plate.at(cell.x, cell.y) = 0;
    return plate;
}

/// A load case in use without any load, now or later, is likely to be a loadCase that was
/// forgotten.
Findings findUnloadedCases(const Scene& scene) {
    std::set<int> unloaded(scene.loadCasesInUse.begin(), scene.loadCasesInUse.end());
    const auto take = [&](const Settings& settings) {
        for (const Load& load : settings.loads) unloaded.erase(load.loadCase);
    };
    take(scene);
    for (const Change& change : scene.timeline) take(change.settings);
    if (unloaded.empty()) return {};
    std::vector<std::string> cases;
    for (const int loadCase : unloaded) cases.push_back(numberedLoadCase(scene, loadCase));
    const std::string which =
        (cases.size() == 1 ? "load case " : "the load cases ") + listed(cases);
    return {warning("loads", "none acts in " + which + "; give a load \"loadCase\": " +
                                 std::to_string(*unloaded.begin()) + ", or lower loadCases")};
}

/// Of a scene without other faults. What hangs together by a corner counts as joined: whether it
/// holds depends on the design.
Findings findCutOff(const Scene& scene) {
    if (scene.passive.voids.empty()) return {};
    const Field plate = designable(scene);
    Findings findings;
    Field cutOff = plate;
    takeConnected(cutOff, heldCells(scene));
    for (const Finding& loose : findLooseLoads(plate, floatingParts(cutOff, 1), scene))
        findings.push_back(
            error(loose.key, "passive.void separates it from every support", loose.place));
    return findings;
}

bool isWarning(const Finding& finding) { return finding.severity == Finding::WARNING; }

Findings findImpossibleVolume(const Scene& scene) {
    const double elements = 1.0 * scene.width * scene.height;
    const auto& [voids, solids, secondSolids] = scene.passive;
    const double solid = double(solids.cells.size() + secondSolids.cells.size()) / elements;
    const double room = 1 - double(voids.cells.size()) / elements;
    Findings findings;
    if (solid > scene.volumeFraction)
        findings.push_back(
            error("passive", formatted("the solid elements are %.1f %% of the plate, "
                                       "more than the volumeFraction %g",
                                       100 * solid, scene.volumeFraction)));
    if (room < scene.volumeFraction)
        findings.push_back(error("passive", formatted("the void elements leave %.1f %% of the "
                                                      "plate, less than the volumeFraction %g",
                                                      100 * room, scene.volumeFraction)));
    return findings;
}

Findings findTooLarge(const MemoryNeed& need) {
    const double available = availableMemory();
    if (need.bytes <= available) return {};
    // Rounded apart, or both might read the same.
    constexpr double tenthOfGigabyte = 1e8;
    return {error(need.key,
                  formatted("needs about %.1f GB of memory, and %.1f GB are free; %s",
                            std::ceil(need.bytes / tenthOfGigabyte) / 10,
                            std::floor(available / tenthOfGigabyte) / 10, need.advice.c_str()))};
}

/// Findings about the settings of the scene itself, without its timeline.
Findings checkNow(const Scene& scene, bool keepsStates) {
    Findings findings = checkSettings(scene);
    for (const Finding& idle : findIdleLoads(scene))
        if (isWarning(idle)) findings.push_back(idle);
    append(findings, findTooFine(scene));
    if (findings.empty()) append(findings, findThinVolume(scene));
    append(findings, findTooLarge(memoryNeed(scene, keepsStates)));
    return findings;
}

bool contains(const Findings& findings, const Finding& finding) {
    return std::any_of(findings.begin(), findings.end(),
                       [&](const Finding& each) { return lineOf(each) == lineOf(finding); });
}

void checkTimeline(const Scene& scene, bool keepsStates, Findings& findings) {
    Scene later = scene;
    Findings before = findings;
    for (std::size_t i = 0; i < scene.timeline.size(); ++i) {
        apply(scene.timeline[i], later);
        const Findings after = checkNow(later, keepsStates);
        for (const Finding& each : after) {
            if (contains(before, each)) continue;
            Finding finding = warning(item("timeline", i), lineOf(each));
            finding.place = each.place;
            findings.push_back(finding);
        }
        before = after;
    }
}

/// Whether to advise a finer design: without a subdivision, a member that is one element thick
/// loses much of its stiffness as drawn.
bool canBeFiner(const Scene& scene) {
    return scene.subdivision == 1 &&
           !findDetailFault(scene, {scene.width, scene.height, FINER, FINER});
}

/// The detail with which the scene may have passive elements, if it has another one.
std::string detailForPassive(const Scene& scene) {
    if (scene.subdivision == scene.meshFactor) return "";
    if (canBeFiner(scene)) return formatted(", and set subdivision and meshFactor to %d", FINER);
    return formatted(", and set meshFactor to %d", scene.subdivision);
}

/// The passive elements that carry a load at these nodes.
std::string adviceToKeepSolid(const Range& x, const Range& y, const Scene& scene) {
    const auto elements = [](const Range& nodes, int size) {
        const int from = std::min(nodes.from, size - 1);
        const int to = std::clamp(nodes.to - 1, from, size - 1);
        return from == to ? std::to_string(from) : formatted("[%d, %d]", from, to);
    };
    const std::string area =
        R"({"x": )" + elements(x, scene.width) + R"(, "y": )" + elements(y, scene.height) + "}";
    return "; keep the elements at this load solid: " +
           (scene.passive.empty() ? R"("passive": {"solid": [)" + area + "]}"
                                  : "add " + area + " to passive.solid") +
           detailForPassive(scene);
}

/// What helps against a load that its design does not carry. Where a load is spread over nodes, the
/// optimiser finds no path to some of them, however long it runs.
std::string adviceFor(const Finding& problem, const Scene& scene) {
    if (!problem.place) return "";
    const auto& [ofNodes, x, y] = *problem.place;
    if (x.count() * y.count() == 1) return "; take a finer grid, more volume or more iterations";
    return adviceToKeepSolid(x, y, scene);
}

/// Whether a load works along much of an edge of the plate without elements that stay solid there.
bool isOverFreeEdge(const Load& load, const Field& solid, const HeldNodes& held) {
    const auto isSide = [](const Range& nodes, int size) {
        return nodes.count() == 1 && (nodes.from == 0 || nodes.from == size);
    };
    const bool isLevel = isSide(load.y, solid.height);
    if (!isLevel && !isSide(load.x, solid.width)) return false;
    int free = 0;
    for (int x = load.x.from; x <= load.x.to; ++x)
        for (int y = load.y.from; y <= load.y.to; ++y)
            if (held.leaveWork(load, x, y) && !hasMaterialAround(solid, x, y)) ++free;
    return free - 1 > std::max(FEW_ELEMENTS, MUCH_OF_EDGE * (isLevel ? solid.width : solid.height));
}

/// Loads that the design is unlikely to carry at all their nodes.
Findings findLoadsOverFreeEdges(const Scene& scene) {
    if (scene.volumeFraction > MUCH_VOLUME) return {};
    Field solid(scene.width, scene.height);
    for (const Area* area : {&scene.passive.solids, &scene.passive.secondSolids})
        for (const Cell& cell : area->cells) solid.at(cell.x, cell.y) = 1;
    const HeldNodes held(scene);
    const Scene inUse = withLoadsInUse(scene);
    Findings findings;
    for (std::size_t i = 0; i < inUse.loads.size(); ++i) {
        const Load& load = inUse.loads[i];
        if (!isOverFreeEdge(load, solid, held)) continue;
        Finding finding = warning(item("loads", i), "some of its nodes may get no material" +
                                                        adviceToKeepSolid(load.x, load.y, scene));
        finding.place = Place{true, load.x, load.y};
        findings.push_back(finding);
    }
    return findings;
}

/// What helps a design that is less stiff as drawn than while optimising.
std::string adviceAgainstGrey(const Scene& scene) {
    if (scene.penalty < LOW_PENALTY) return "raise the penalty to 3: a low one leaves greys";
    if (!canBeFiner(scene)) return "take a finer grid or more iterations";
    return formatted(
        "set subdivision and meshFactor to %d, or take a finer grid or more iterations", FINER);
}

bool hasMoreThanDots(const std::vector<FloatingPart>& floating, const Field& design) {
    double cells = 0;
    for (const FloatingPart& part : floating) cells += static_cast<double>(part.cells.size());
    return cells > DOTS * mean(design) * static_cast<double>(design.values.size());
}

/// Whether all of these parts contain elements that the scene keeps solid.
bool areKeptSolid(const std::vector<FloatingPart>& floating, const Scene& scene) {
    std::set<Cell> kept;
    for (const Area* area : {&scene.passive.solids, &scene.passive.secondSolids})
        kept.insert(area->cells.begin(), area->cells.end());
    return std::all_of(floating.begin(), floating.end(), [&](const FloatingPart& part) {
        return std::any_of(part.cells.begin(), part.cells.end(), [&](const Cell& cell) {
            return kept.count({cell.x / part.refinement, cell.y / part.refinement}) > 0;
        });
    });
}

/// How much worse the design is as drawn than while optimising; 0 where it is not worse. A finer
/// grid bends more around a single force, by as much in a solid plate as in any design: that is no
/// fault of the design.
double worseAsDrawn(const RunResult& result, const Scene& scene) {
    const double drawn = result.assessment.score.compliance;
    if (!result.assessment.problems.empty() || drawn <= WORSE_AS_DRAWN * result.compliance)
        return 0;
    const Field coarse = designable(scene);
    const int refinement = refinementOf(result.drawn, scene);
    Field fine(result.drawn.width, result.drawn.height);
    for (int y = 0; y < fine.height; ++y)
        for (int x = 0; x < fine.width; ++x)
            fine.at(x, y) = coarse.at(x / refinement, y / refinement);
    const double local =
        assess(fine, scene).score.compliance - assess(coarse, scene).score.compliance;
    return (drawn - std::max(0.0, local)) / result.compliance;
}

}  // namespace

Findings checkBeforeOptimisation(const Scene& scene, bool keepsStates) {
    Findings findings = checkNow(scene, keepsStates);
    if (findings.empty()) append(findings, findUnloadedCases(scene));
    append(findings, findLoadsOverFreeEdges(scene));
    checkTimeline(scene, keepsStates, findings);
    return findings;
}

Findings checkBeforeScore(const Scene& scene, bool keepsStates) {
    Findings findings = findIdleLoads(scene);
    if (findings.empty()) append(findings, findUnloadedCases(scene));
    if (!scene.densities) return findings;
    append(findings, findTooLarge(memoryNeedOfScore(*scene.densities, scene, keepsStates)));
    append(findings, findOpenPlane(scene, *scene.densities));
    return findings;
}

Findings checkScene(const Scene& scene) {
    Findings findings;
    const auto add = [&findings](const Findings& more) {
        for (const Finding& each : more)
            if (!contains(findings, each)) findings.push_back(each);
    };
    if (scene.volumeFraction > 0) add(checkBeforeOptimisation(scene));
    if (scene.volumeFraction <= 0 || scene.densities) add(checkBeforeScore(scene));
    if (!scene.densities) return findings;
    add(findFreePlate(scene));
    add(findLooseLoads(*scene.densities, {}, withLoadsInUse(scene)));
    return findings;
}

Findings checkSettings(const Scene& scene) {
    Findings findings = findIdleLoads(scene);
    std::erase_if(findings, isWarning);
    append(findings, findInsideVoid(scene));
    if (findings.empty()) append(findings, findFreePlate(scene));
    if (findings.empty()) append(findings, findOpenPlane(scene, designable(scene)));
    if (findings.empty()) append(findings, findCutOff(scene));
    append(findings, findImpossibleVolume(scene));
    return findings;
}

Findings findTooFine(const Scene& scene) {
    const bool little = scene.volumeFraction < LITTLE_VOLUME;
    const int finest = little ? FINEST_SUBDIVISION_OF_LITTLE : FINEST_SUBDIVISION;
    if (scene.subdivision <= finest) return {};
    return {warning(
        "subdivision",
        formatted(
            "%d is above %d%s: the design may fall into dots that carry nothing; take a finer grid",
            scene.subdivision, finest,
            little ? formatted(" (below a volumeFraction of %g)", LITTLE_VOLUME).c_str() : ""))};
}

Findings findTooLarge(const Scene& scene) { return findTooLarge(memoryNeed(scene)); }

Findings checkResult(const RunResult& result, const Scene& scene) {
    Findings findings;
    const Assessment& drawn = result.assessment;
    for (const Finding& problem : drawn.problems)
        findings.push_back(
            warning(problem.key, "as drawn, " + problem.text + adviceFor(problem, scene)));
    if (hasMoreThanDots(drawn.floating, result.drawn))
        findings.push_back(warning(
            "design", "as drawn, " + describe(drawn.floating) +
                          (areKeptSolid(drawn.floating, scene)
                               ? "; elements that are kept solid do not touch the structure: "
                                 "move them to it, or do not keep them solid"
                               : "; take a finer grid or more volume")));
    if (const double ratio = worseAsDrawn(result, scene); ratio > WORSE_AS_DRAWN)
        findings.push_back(warning(
            "compliance", formatted("as drawn it is %.6g, %.3g times the %.6g while optimising; ",
                                    drawn.score.compliance, ratio, result.compliance) +
                              adviceAgainstGrey(scene)));
    const double drawnVolume = mean(result.drawn);
    for (const auto& [volume, what] : {std::pair(result.volume, ""), {drawnVolume, " as drawn"}}) {
        if (std::abs(volume - scene.volumeFraction) <= VOLUME_TOLERANCE) continue;
        findings.push_back(warning(
            "volumeFraction",
            formatted("the design has %.1f %%%s instead of %.1f %%; take a finer grid or more "
                      "iterations",
                      100 * volume, what, 100 * scene.volumeFraction)));
        break;
    }
    return findings;
}

}  // namespace voxam::inline checks
