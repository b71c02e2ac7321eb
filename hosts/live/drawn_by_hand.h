#pragma once

#include <QByteArray>
#include <set>

#include "format/scene.h"

using namespace voxam;

/// The same for equal drawings, in every run of the program.
QByteArray fingerprintOf(const Field& drawing);

/// Whether nothing is drawn, apart from the elements that the scene keeps solid.
bool isEmptyDrawing(const Scene& scene);

/// The drawings that were made by hand from an empty plate: only these win medals. Copies of the
/// optimiser's design, imported designs and drawings of other people's files do not. A drawing is
/// known by its fingerprint, so undo, redo and variants need no record of where it came from.
class DrawnByHand {
public:
    /// Whether the drawing of the scene was made by hand. An empty one was.
    bool contains(const Scene& scene) const { return isEmptyDrawing(scene) || isKnown(scene); }
    /// Whether strokes led to the drawing, also where kept areas hide all of it now.
    bool isKnown(const Scene& scene) const;
    void add(const Scene& scene);

    /// Stores the drawing for later runs of the program, if it was made by hand. The settings keep
    /// the last 200.
    void remember(const Field& drawing) const;

private:
    bool isKnown(const QByteArray& fingerprint) const;

    std::set<QByteArray> fingerprints;
};
