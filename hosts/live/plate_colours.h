#pragma once

#include <QColor>
#include <array>

#include "drawing/load_arrows.h"

using namespace voxam;

/// The colours of the plate and its signs. A light window has the colours of the program's
/// pictures. Load cases and kinds of passive elements also differ by number, outline or hatching:
/// colour is never the only difference.
struct PlateColours {
    QColor surroundings;
    QColor voids;  ///< the plate without material
    QColor solid;
    QColor edge;  ///< of the plate, and faint lines
    QColor rim;   ///< separates a sign from the background
    QColor support;
    QColor blob;
    QColor hand;      ///< the place under the pointer, and the selection
    QColor fault;     ///< places that a check found
    QColor floating;  ///< around floating parts
    std::array<QColor, 3> passive;
    std::array<QColor, LOAD_CASE_COLOURS> loads;

    const QColor& load(int loadCase) const {
        return loads[static_cast<std::size_t>(loadCase) % loads.size()];
    }

    static const PlateColours& light();
    static const PlateColours& dark();
};

QColor toQt(const Colour& colour);
QColor mixed(const QColor& from, const QColor& to, double share);
