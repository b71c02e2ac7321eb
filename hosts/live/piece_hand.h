#pragma once

#include <QRectF>
#include <optional>
#include <vector>

#include "piece.h"
#include "tool.h"

void paintFrame(QPainter& painter, const PlateTransform& transform, const QRectF& frame,
                const QColor& colour);

/// Describes the kind and the place of a support or an area.
QString describePiece(const Scene& scene, const PieceId& id);

/// Moves pieces, or copies of them, with the pointer.
class PieceHand {
public:
    explicit PieceHand(const ToolSite& toolSite) : site(toolSite) {}

    /// The support or area under the hand.
    std::optional<PieceId> find(const Hand& hand) const;
    void take(const std::vector<PieceId>& ids, const Hand& hand);
    bool isHolding() const { return held.has_value(); }
    void drag(const Hand& hand, int gesture);
    void release() { held.reset(); }

private:
    struct Hold {
        std::vector<PieceId> ids;
        std::vector<Piece> pieces;  // as they were
        PassiveAreas passive;       // as they were
        std::size_t loads;          // before copies were added
        std::size_t supports;
        QPointF start;  // of the hand
        bool copies;
    };

    bool isOnSupport(const Support& support, const Hand& hand) const;
    QString nameOfStep() const;
    std::vector<PieceId> place(Scene& scene, const std::vector<Piece>& pieces) const;

    ToolSite site;
    std::optional<Hold> held;
};
