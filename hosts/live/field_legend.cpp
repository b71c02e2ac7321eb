#include "field_legend.h"

#include <QLocale>
#include <QPainter>

#include "number_text.h"

namespace {

constexpr double MARGIN = 14;  // pixels, like all below
constexpr double BAR_TOP = 18;
constexpr double BAR_HEIGHT = 9;
constexpr double MOST_WIDTH = 420;
constexpr double TICK = 3;
constexpr double LABEL_GAP = 6;

}  // namespace

FieldLegend::FieldLegend(QWidget* parent) : QWidget(parent), colours(&PlateColours::light()) {}

void FieldLegend::show(const Legend& shown) {
    const bool isSame = shown.kind == current.kind && shown.caption == current.caption;
    if (isSame && !shown.scale && !current.scale) return;
    current = shown;
    setAccessibleName(current.caption);
    setToolTip(current.caption);
    setWhatsThis(explanation());
    update();
}

void FieldLegend::setColours(const PlateColours& colourSet) {
    colours = &colourSet;
    update();
}

QString FieldLegend::explanation() const {
    switch (current.kind) {
        case Legend::Kind::DENSITY:
            return tr("The density of a cell: 0 is void, 1 is solid. Greys lie in between.");
        case Legend::Kind::MULTIPLES:
            return tr(
                "The energy of a cell is its share of the compliance. The colours show it as "
                "a multiple of the average over the whole plate, including its void cells.");
        case Legend::Kind::VALUES:
            return tr(
                "The von Mises stress combines tension, compression and shear into one "
                "number. For another thickness, divide it by the thickness in mm.");
        default:
            return current.caption.toHtmlEscaped();
    }
}

QColor FieldLegend::colourAt(double position) const {
    return current.kind == Legend::Kind::DENSITY ? mixed(colours->voids, colours->solid, position)
                                                 : toQt(EnergyScale::colour(position));
}

/// Places on the bar from 0 to 1, with their labels.
std::vector<std::pair<double, QString>> FieldLegend::ticks() const {
    std::vector<std::pair<double, QString>> all;
    if (current.kind == Legend::Kind::DENSITY)
        for (const double density : {0.0, 0.5, 1.0})
            all.emplace_back(density, QLocale().toString(density));
    if (!current.scale || current.scale->average() <= 0) return all;
    const double unit = current.kind == Legend::Kind::VALUES ? 1 / current.scale->average() : 1;
    for (const double value : current.scale->ticks(unit))
        all.emplace_back(current.scale->position(value * unit), numberText(value, 1));
    return all;
}

void FieldLegend::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    QFont font = painter.font();
    font.setPointSizeF(0.85 * font.pointSizeF());
    painter.setFont(font);
    const double room = width() - 2 * MARGIN;
    const QString caption = painter.fontMetrics().elidedText(current.caption, Qt::ElideRight,
                                                             static_cast<int>(room + MARGIN));
    const auto marks = ticks();
    const double captionHeight = marks.empty() ? height() : BAR_TOP;
    painter.drawText(QRectF(MARGIN, 0, room + MARGIN, captionHeight), Qt::AlignVCenter, caption);
    if (marks.empty()) return;
    const double length = std::min(MOST_WIDTH, room);
    for (int x = 0; x < static_cast<int>(length); ++x)
        painter.fillRect(QRectF(MARGIN + x, BAR_TOP, 1, BAR_HEIGHT), colourAt(x / (length - 1)));
    double free = 0;  // to the right of the last label
    for (const auto& [position, label] : marks) {
        const double x = MARGIN + position * length;
        const double foot = BAR_TOP + BAR_HEIGHT;
        painter.drawLine(QPointF(x, foot), QPointF(x, foot + TICK));
        const double half = 0.5 * painter.fontMetrics().horizontalAdvance(label);
        if (x - half < free) continue;
        free = x + half + LABEL_GAP;
        painter.drawText(QRectF(x - half - 1, foot + TICK, 2 * half + 2, height() - foot - TICK),
                         Qt::AlignCenter, label);
    }
}
