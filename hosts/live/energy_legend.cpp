#include "energy_legend.h"

#include <QLocale>
#include <QPainter>

#include "plate_colours.h"

namespace {

constexpr double LEFT = 14;  // pixels, like all below
constexpr double BAR_TOP = 18;
constexpr double BAR_HEIGHT = 9;
constexpr double MOST_WIDTH = 420;

}  // namespace

EnergyLegend::EnergyLegend(QWidget* parent) : QWidget(parent) {
    setAccessibleName(tr("Colours: energy of an element, from light (little) to dark (much)"));
}

void EnergyLegend::show(const std::optional<EnergyScale>& shown) {
    scale = shown;
    update();
}

void EnergyLegend::paintEvent(QPaintEvent*) {
    if (!scale || scale->average() <= 0) return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    QFont font = painter.font();
    font.setPointSizeF(0.85 * font.pointSizeF());
    painter.setFont(font);
    painter.drawText(QRectF(LEFT, 0, width() - LEFT, BAR_TOP), Qt::AlignVCenter,
                     tr("Energy of an element as a multiple of the average, in both designs"));
    const double length = std::min(MOST_WIDTH, width() - 3 * LEFT);
    for (int x = 0; x < static_cast<int>(length); ++x)
        painter.fillRect(QRectF(LEFT + x, BAR_TOP, 1, BAR_HEIGHT),
                         toQt(EnergyScale::colour(x / (length - 1))));
    for (const double multiple : scale->ticks()) {
        const double x = LEFT + scale->position(multiple) * length;
        const double foot = BAR_TOP + BAR_HEIGHT;
        painter.drawLine(QPointF(x, foot), QPointF(x, foot + 3));
        painter.drawText(QRectF(x - 30, foot + 3, 60, height() - foot - 3), Qt::AlignCenter,
                         QLocale().toString(multiple, 'g', 6));
    }
}
