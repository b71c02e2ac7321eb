#include "piece_hand.h"

#include <QPolygonF>
#include <algorithm>
#include <array>
#include <cmath>

#include "drawing/plate_signs.h"
#include "number_text.h"
#include "plate_arrow.h"
#include "reflection.h"

namespace {

// Pixels.
constexpr double SUPPORT_GRIP = 8;  // from a held node
constexpr double FRAME_GAP = 6;     // from the nodes or elements within
constexpr double FRAME_THICKNESS = 2;

QString rangeText(const Range& range) {
    return range.count() == 1 ? QString::number(range.from)
                              : QString("%1–%2").arg(range.from).arg(range.to);
}

QString describeSupport(const Support& support) {
    const QString held = support.fixX && support.fixY ? QObject::tr("x and y")
                         : support.fixX               ? QObject::tr("x")
                                                      : QObject::tr("y");
    return QObject::tr("Support at nodes %1, %2, held in %3")
        .arg(rangeText(support.x), rangeText(support.y), held);
}

QString describeArea(const KeptArea& kept, const Scene& scene) {
    const std::array<QString, 3> kinds = {QObject::tr("Void"), QObject::tr("Solid"),
                                          QObject::tr("Second solid")};
    const QString& kind = kinds[static_cast<std::size_t>(kept.kind)];
    if (const auto ring = ringOf(kept.area, scene)) {
        const QString place =
            QObject::tr("%1: disc at %2, %3, radius %4")
                .arg(kind, placeText(ring->x), placeText(ring->y), placeText(ring->outer));
        return ring->inner == 0
                   ? place
                   : place + QObject::tr(", with a hole of radius %1").arg(placeText(ring->inner));
    }
    const Extent extent = extentOf(kept);
    const QString place = isRectangle(kept.area) ? QObject::tr("%1: elements %2, %3")
                                                 : QObject::tr("%1: free form within %2, %3");
    return place.arg(kind, rangeText(extent.x), rangeText(extent.y));
}

}  // namespace

std::optional<QRectF> frameOf(const Scene& scene, const PieceId& id) {
    if (id.type == PieceId::Type::LOAD) return std::nullopt;
    const Extent extent = extentOf(pieceOf(scene, id));
    const int elements = id.type == PieceId::Type::AREA ? 1 : 0;
    return QRectF(QPointF(extent.x.from, extent.y.from),
                  QPointF(extent.x.to + elements, extent.y.to + elements));
}

void paintFrame(QPainter& painter, const PlateTransform& transform, const QRectF& frame,
                const QColor& colour) {
    const QRectF box(transform.toWidget(frame.topLeft()), transform.toWidget(frame.bottomRight()));
    painter.setPen(QPen(colour, FRAME_THICKNESS, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box.adjusted(-FRAME_GAP, -FRAME_GAP, FRAME_GAP, FRAME_GAP), FRAME_GAP,
                            FRAME_GAP);
}

QString describePiece(const Scene& scene, const PieceId& id) {
    const Piece piece = pieceOf(scene, id);
    if (const auto* support = std::get_if<Support>(&piece)) return describeSupport(*support);
    if (const auto* kept = std::get_if<KeptArea>(&piece)) return describeArea(*kept, scene);
    return {};
}

bool PieceHand::isOnSupport(const Support& support, const Hand& hand) const {
    const QRectF nodes(site.transform.toWidget(support.x.from, support.y.from),
                       site.transform.toWidget(support.x.to, support.y.to));
    if (nodes.adjusted(-SUPPORT_GRIP, -SUPPORT_GRIP, SUPPORT_GRIP, SUPPORT_GRIP)
            .contains(hand.widget))
        return true;
    const auto signs =
        supportSigns(support, site.scene(), ofQt(site.transform.origin), site.transform.scale);
    return std::any_of(signs.begin(), signs.end(), [&](const SupportSign& sign) {
        QPolygonF shape;
        for (const Point corner : sign.triangle) shape.append(toQt(corner));
        return shape.boundingRect().contains(hand.widget);
    });
}

std::optional<PieceId> PieceHand::find(const Hand& hand) const {
    const auto& supports = site.scene().supports;
    for (std::size_t i = supports.size(); i-- > 0;)
        if (!standsForPlane(supports[i], site.scene()) && isOnSupport(supports[i], hand))
            return PieceId::support(i);
    return areaAt(site.scene(), cellAt(hand.plate));
}

void PieceHand::take(const PieceId& id, const Hand& hand) {
    const bool copies = hand.modifiers.testFlag(Qt::AltModifier);
    held = Hold{id, pieceOf(site.scene(), id), site.scene().passive, hand.plate, copies};
}

void PieceHand::drag(const Hand& hand, int gesture) {
    const auto selected = site.bench.selection();
    if (!held || !selected) return;
    const QPointF way = hand.plate - held->start;
    const int right = static_cast<int>(std::lround(way.x()));
    const int down = static_cast<int>(std::lround(way.y()));
    const Piece piece = moved(held->piece, right, down, site.scene());
    const bool isArea = selected->type == PieceId::Type::AREA;
    if (held->copies && !isArea) {
        if (piece == held->piece) return;
        held->copies = false;
        site.bench.putIn(QObject::tr("Copy support"), piece, gesture);
        return;
    }
    PieceId id = *selected;
    site.bench.editSelecting(
        isArea ? QObject::tr("Move area") : QObject::tr("Move support"),
        [&](Scene& scene) {
            if (isArea) {
                // What it crosses comes back.
                scene.passive = held->passive;
                id = held->id;
            }
            if (held->copies && piece == held->piece) return;
            id = held->copies ? putIn(scene, piece) : replace(scene, {id}, {piece}).front();
        },
        id, gesture);
}
