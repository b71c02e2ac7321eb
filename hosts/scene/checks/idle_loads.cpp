#include <algorithm>
#include <cmath>

#include "checks/held_nodes.h"
#include "checks/plate_checks.h"
#include "format/text.h"

namespace voxam::inline checks {

namespace {

// The square of a force and the energies of elements stay far within single precision.
constexpr double LEAST_FORCE = 1e-9;

constexpr float ROUNDING = 1e-6f;  // of a sum of forces, relative to the largest of them

double sizeOf(const Load& load) { return std::max(std::abs(load.fx), std::abs(load.fy)); }

/// The forces of a load case at each node, in one direction.
class ForceSums {
public:
    explicit ForceSums(const Scene& scene)
        : sums(scene.width + 1, scene.height + 1), largest(sums) {}

    void add(int x, int y, double force) {
        sums.at(x, y) += static_cast<float>(force);
        largest.at(x, y) = std::max(largest.at(x, y), static_cast<float>(std::abs(force)));
    }

    /// 0 where they cancel.
    float at(int x, int y) const {
        const float sum = sums.at(x, y);
        return std::abs(sum) > ROUNDING * largest.at(x, y) ? sum : 0;
    }

private:
    Field sums;
    Field largest;
};

enum class Effect { NO_FORCE, CANCELLED, HELD, WORKS };

/// The strongest at any node.
Effect effectOf(int loadCase, const Scene& scene, const HeldNodes& held) {
    ForceSums inX(scene);
    ForceSums inY(scene);
    Effect effect = Effect::NO_FORCE;
    for (const Load& load : scene.loads) {
        if (load.loadCase != loadCase || sizeOf(load) == 0) continue;
        effect = Effect::CANCELLED;
        const double nodes = 1.0 * load.x.count() * load.y.count();
        for (int x = load.x.from; x <= load.x.to; ++x)
            for (int y = load.y.from; y <= load.y.to; ++y) {
                inX.add(x, y, load.fx / nodes);
                inY.add(x, y, load.fy / nodes);
            }
    }
    if (effect == Effect::NO_FORCE) return effect;
    Load sum;
    for (int x = 0; x <= scene.width; ++x)
        for (int y = 0; y <= scene.height; ++y) {
            sum.fx = inX.at(x, y);
            sum.fy = inY.at(x, y);
            if (held.leaveWork(sum, x, y)) return Effect::WORKS;
            if (sizeOf(sum) > 0) effect = Effect::HELD;
        }
    return effect;
}

std::string whyIdle(Effect effect) {
    return effect == Effect::HELD
               ? "acts where a support holds the node in its direction, and does "
                 "no work; move the loads or the supports"
               : "is cancelled by others at its nodes; nothing is left to carry";
}

Finding idle(Finding::Severity severity, const std::string& key, const std::string& text) {
    return {severity, key, text, std::nullopt};
}

}  // namespace

Findings findIdleLoads(const Scene& scene) {
    double largest = 0;
    for (const Load& load : scene.loads) largest = std::max(largest, sizeOf(load));
    if (largest == 0) return {idle(Finding::ERROR, "loads", "there is no force at all")};
    if (largest < LEAST_FORCE)
        return {idle(Finding::ERROR, "loads",
                     "the largest force is " + plainNumber(largest) + ", expected at least " +
                         plainNumber(LEAST_FORCE) + "; take a smaller unit of force")};
    const HeldNodes held(scene);
    Findings findings;
    Effect strongest = Effect::NO_FORCE;
    for (const int loadCase : scene.loadCasesInUse) {
        const Effect effect = effectOf(loadCase, scene, held);
        strongest = std::max(strongest, effect);
        if (effect == Effect::CANCELLED || effect == Effect::HELD)
            findings.push_back(idle(Finding::WARNING, "loads",
                                    "every force of load case " +
                                        numberedLoadCase(scene, loadCase) + " " + whyIdle(effect)));
    }
    if (strongest == Effect::WORKS) return findings;
    if (strongest == Effect::NO_FORCE)
        return {idle(Finding::ERROR, "loadCasesInUse", "none of them has a force")};
    Finding error = idle(Finding::ERROR, "loads", "every force " + whyIdle(strongest));
    const auto pulls = [](const Load& load) { return sizeOf(load) > 0; };
    const auto first = std::find_if(scene.loads.begin(), scene.loads.end(), pulls);
    error.place = Place{true, first->x, first->y};
    return {error};
}

}  // namespace voxam::inline checks
