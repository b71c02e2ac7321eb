#pragma once

#include <QPointF>
#include <QString>
#include <vector>

#include "checks/finding.h"
#include "format/input_error.h"
#include "format/scene.h"
#include "frame.h"

using namespace voxam;

/// What stands in the way of a design: for the banner, and where on the plate to mark it.
struct Problems {
    QString text;  ///< empty when all is well
    QString advice;
    std::vector<QPointF> places;  ///< in plate coordinates
};

/// What a finding says, as a sentence of its own, in the words of the window instead of the keys of
/// a scene file.
QString sentenceOf(const Finding& finding);
/// The same for the reason why an edit is refused.
QString sentenceOf(const InputError& refusal);

/// `refusal` is the library's last text about the scene, `result` the score of the settled design
/// worth, if it has settled.
Problems problemsOf(const Scene& scene, const LibraryText& refusal,
                    const std::optional<ScoreResult>& result = std::nullopt);
