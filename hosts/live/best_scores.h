#pragma once

#include <QString>

#include "format/scene.h"

using namespace voxam;

/// How stiff the best drawing for a scene was, in percent of the optimiser's best design, and the
/// compliance of that design. They are stored for later runs of the program, for each problem:
/// plate, detail, loads, supports, kept areas, volume and penalty, and the cells of the drawing.
class BestScores {
public:
    enum class Medal { NONE, BRONZE, SILVER, GOLD };

    /// Stores a score, and returns whether it is better than all before.
    static bool offer(const Scene& scene, double percent);
    /// 0 without a score.
    static double best(const Scene& scene);
    /// Stores the compliance of a settled design of the optimiser, if it is the lowest.
    static void offerRival(const Scene& scene, double compliance);
    /// 0 if no design of the optimiser has settled yet.
    static double bestRival(const Scene& scene);
    /// From 85, 95 and 100 percent on.
    static Medal medalFor(double percent);
    static QString nameOf(Medal medal);
};
