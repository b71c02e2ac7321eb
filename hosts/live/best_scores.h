#pragma once

#include <QString>

#include "format/scene.h"

using namespace voxam;

/// How stiff the best drawing for a scene was, in percent of the optimiser's design. They are kept
/// between runs of the program, for each problem: plate, loads, supports, kept areas and volume.
class BestScores {
public:
    enum class Medal { NONE, BRONZE, SILVER, GOLD };

    /// Takes a verdict, and returns whether it is better than all before.
    static bool offer(const Scene& scene, double percent);
    /// 0 before the first verdict.
    static double best(const Scene& scene);
    /// From 85, 95 and 100 percent on.
    static Medal medalFor(double percent);
    static QString nameOf(Medal medal);
};
