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
    return QObject::tr("Support at nodes x %1, y %2, held in %3")
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

void PieceHand::take(const std::vector<PieceId>& ids, const Hand& hand) {
    const Scene& scene = site.scene();
    held = Hold{ids,
                {},
                scene.passive,
                scene.loads.size(),
                scene.supports.size(),
                hand.plate,
                hand.modifiers.testFlag(Qt::AltModifier)};
    for (const PieceId& id : ids) held->pieces.push_back(pieceOf(scene, id));
}

QString PieceHand::nameOfStep() const {
    if (held->ids.size() > 1)
        return held->copies ? QObject::tr("Copy selection") : QObject::tr("Move selection");
    const bool isArea = held->ids.front().type == PieceId::Type::AREA;
    if (held->copies) return isArea ? QObject::tr("Copy area") : QObject::tr("Copy support");
    return isArea ? QObject::tr("Move area") : QObject::tr("Move support");
}

void PieceHand::drag(const Hand& hand, int gesture) {
    // A change of the timeline may have removed them.
    const auto isThere = [&](const PieceId& id) {
        return id.type == PieceId::Type::AREA || exists(site.scene(), id);
    };
    if (!held || !std::all_of(held->ids.begin(), held->ids.end(), isThere)) return;
    const QPointF way = hand.plate - held->start;
    const auto pieces = moved(held->pieces, static_cast<int>(std::lround(way.x())),
                              static_cast<int>(std::lround(way.y())), site.scene());
    std::vector<PieceId> ids;
    site.bench.editSelecting(
        nameOfStep(), [&](Scene& scene) { ids = place(scene, pieces); }, ids, gesture);
}

std::vector<PieceId> PieceHand::place(Scene& scene, const std::vector<Piece>& pieces) const {
    const auto isArea = [](const PieceId& id) { return id.type == PieceId::Type::AREA; };
    // What the pieces cross comes back.
    if (std::any_of(held->ids.begin(), held->ids.end(), isArea)) scene.passive = held->passive;
    if (!held->copies) return replace(scene, held->ids, pieces);
    if (scene.loads.size() > held->loads) scene.loads.resize(held->loads);
    if (scene.supports.size() > held->supports) scene.supports.resize(held->supports);
    return pieces == held->pieces ? held->ids : putIn(scene, pieces);
}
