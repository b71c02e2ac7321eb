#pragma once

#include <QPointF>
#include <QString>
#include <exception>
#include <vector>

#include "checks/finding.h"
#include "checks/floating_parts.h"
#include "format/input_error.h"
#include "format/scene.h"
#include "frame.h"

using namespace voxam;

/// The problems of a design for the banner, and the places on the plate to mark.
struct Problems {
    QString text;  ///< empty if there is no problem
    QString advice;
    std::vector<QPointF> places;  ///< in plate coordinates
};

/// The text of a finding as a complete sentence, in the words of the window instead of the keys of
/// a scene file.
QString sentenceOf(const Finding& finding);
/// The same for parts of a design that no support holds.
QString sentenceOf(const std::vector<FloatingPart>& parts);
/// The reason why an edit is refused, in the same words.
QString sentenceOf(const InputError& refusal);

/// Why a file cannot be opened, without the options of the command-line program.
QString faultOf(const std::exception& error);

/// Whether the library refuses to go on because the design has torn.
bool isTorn(const LibraryText& refusal);

/// `refusal` is the library's last text about the scene, `result` the score of the design if it
/// has settled. While drawing (`isDrawn`), a design of the optimiser is not judged.
Problems problemsOf(const Scene& scene, const LibraryText& refusal,
                    const std::optional<ScoreResult>& result = std::nullopt, bool isDrawn = false);
