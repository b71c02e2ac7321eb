#pragma once

#include <QRectF>
#include <optional>

#include "piece.h"
#include "tool.h"

/// The rectangle around a support or an area, in plate coordinates. Empty for a load, whose arrow
/// shows the selection.
std::optional<QRectF> frameOf(const Scene& scene, const PieceId& id);
void paintFrame(QPainter& painter, const PlateTransform& transform, const QRectF& frame,
                const QColor& colour);

/// Describes the kind and the place of a support or an area.
QString describePiece(const Scene& scene, const PieceId& id);

/// Moves supports and kept areas, or copies of them, with the pointer.
class PieceHand {
public:
    explicit PieceHand(const ToolSite& toolSite) : site(toolSite) {}

    std::optional<PieceId> find(const Hand& hand) const;
    void take(const PieceId& id, const Hand& hand);
    bool isHolding() const { return held.has_value(); }
    void drag(const Hand& hand, int gesture);
    void release() { held.reset(); }

private:
    struct Hold {
        PieceId id;
        Piece piece;           // as it was
        PassiveAreas passive;  // as they were
        QPointF start;         // of the hand
        bool copies;
    };

    bool isOnSupport(const Support& support, const Hand& hand) const;

    ToolSite site;
    std::optional<Hold> held;
};
