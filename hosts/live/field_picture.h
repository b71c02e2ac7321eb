#pragma once

#include <initializer_list>
#include <optional>

#include "drawing/energy_scale.h"
#include "field_legend.h"
#include "frame.h"
#include "plate_view.h"

using namespace voxam;

// A view of scored designs: its colours, its legend, and the values under the hand.

/// The common scales of designs side by side, so that they can be compared.
struct CommonView {
    const ViewedField* field = nullptr;  ///< of one of them; null if they show their densities only
    std::optional<EnergyScale> scale;    ///< of all values, if there are any
    double magnification = 0;            ///< of deformed plates, if there are any
};

/// Of scores with the view to be shown; those that are null or have no field are left out.
CommonView commonView(std::initializer_list<const ScoreResult*> scores);

/// Puts a design on a plate as the others with the same scale show theirs. `score` is null if the
/// design shows its densities only; its design may be that before the last stroke.
void showDesign(PlateView& plate, const Scene& scene, const Field& design, const ScoreResult* score,
                const CommonView& common);

Legend legendOf(const CommonView& common, const Scene& scene);

/// The density of a design at a place of the plate, in elements; empty outside the plate.
QString densityReading(const Field& design, const Scene& scene, QPointF plate);

/// The value at a place that a score with a field shows there.
QString fieldReading(const ScoreResult& score, const Scene& scene, QPointF plate);
