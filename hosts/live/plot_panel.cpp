#include "plot_panel.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "plate_colours.h"

namespace {

// What is older says little about the edits of now, and would squeeze their course.
constexpr std::size_t MAX_SAMPLES = 500;
constexpr double LEFT = 52;  // pixels, like all below
constexpr double RIGHT = 46;
constexpr double TOP = 24;
constexpr double BOTTOM = 22;
// The first iterations start from grey, whose compliance would flatten all that follows.
constexpr double SHARE_IN_VIEW = 0.97;
constexpr double HEADROOM = 0.08;

QColor complianceColour(bool isDark) {
    return isDark ? QColor(110, 175, 255) : QColor(13, 89, 191);
}
QColor volumeColour(bool isDark) { return isDark ? QColor(245, 165, 60) : QColor(190, 95, 0); }

}  // namespace

struct PlotPanel::Axes {
    QRectF area;
    double fromCompliance = 0;
    double toCompliance = 1;
    bool isDark = false;

    double x(std::size_t sample, std::size_t count) const {
        return area.left() + area.width() * static_cast<double>(sample) /
                                 static_cast<double>(std::max<std::size_t>(count - 1, 1));
    }
};

PlotPanel::PlotPanel(QWidget* parent) : QWidget(parent) {
    setAccessibleName(tr("Plot of compliance and volume over the iterations"));
    setToolTip(
        tr("Compliance (left scale) and volume (right scale) over the iterations; dotted "
           "lines are edits"));
}

void PlotPanel::add(const std::vector<IterationNumbers>& numbers) {
    for (const auto& each : numbers)
        samples.push_back({each.compliance, each.volume, std::exchange(isMarkDue, false)});
    for (; samples.size() > MAX_SAMPLES; ++gone) samples.pop_front();
    describe();
    update();
}

void PlotPanel::mark() { isMarkDue = true; }

void PlotPanel::clear() {
    samples.clear();
    gone = 0;
    isMarkDue = false;
    update();
}

void PlotPanel::describe() {
    if (samples.empty()) return;
    setAccessibleDescription(tr("Compliance %1, volume %2 percent")
                                 .arg(samples.back().compliance, 0, 'g', 4)
                                 .arg(100 * samples.back().volume, 0, 'f', 1));
}

void PlotPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    Axes axes;
    axes.area = QRectF(rect()).adjusted(LEFT, TOP, -RIGHT, -BOTTOM);
    axes.isDark = palette().color(QPalette::Window).lightness() < 128;
    std::vector<double> sorted;
    for (const Sample& sample : samples) sorted.push_back(sample.compliance);
    std::sort(sorted.begin(), sorted.end());
    if (!sorted.empty()) {
        axes.fromCompliance = sorted.front();
        axes.toCompliance = std::max(sorted[static_cast<std::size_t>(
                                         SHARE_IN_VIEW * static_cast<double>(sorted.size() - 1))],
                                     samples.back().compliance);
        const double room = HEADROOM * std::max(axes.toCompliance - axes.fromCompliance,
                                                0.01 * std::abs(axes.toCompliance));
        axes.fromCompliance -= room;
        axes.toCompliance += room;
    }
    drawFrame(painter, axes);
    if (samples.size() < 2) return;
    painter.setClipRect(axes.area);
    drawMarks(painter, axes);
    // The volume is dashed: colour is not the only difference.
    drawCurve(painter, axes, &Sample::volume, 0, 1,
              QPen(volumeColour(axes.isDark), 1.6, Qt::DashLine));
    drawCurve(painter, axes, &Sample::compliance, axes.fromCompliance, axes.toCompliance,
              QPen(complianceColour(axes.isDark), 1.8));
}

void PlotPanel::drawFrame(QPainter& painter, const Axes& axes) const {
    const QColor text = palette().color(QPalette::WindowText);
    QColor faint = text;
    faint.setAlpha(50);
    QFont font = painter.font();
    font.setPointSizeF(0.85 * font.pointSizeF());
    painter.setFont(font);
    const QRectF& area = axes.area;
    constexpr int steps = 4;
    for (int i = 0; i <= steps; ++i) {
        const double share = static_cast<double>(i) / steps;
        const double y = area.bottom() - share * area.height();
        painter.setPen(QPen(faint, 1));
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        painter.setPen(volumeColour(axes.isDark));
        painter.drawText(QRectF(area.right() + 5, y - 8, RIGHT - 6, 16),
                         Qt::AlignLeft | Qt::AlignVCenter, QString("%1 %").arg(100 * share));
        if (samples.empty()) continue;
        painter.setPen(complianceColour(axes.isDark));
        const double value =
            axes.fromCompliance + share * (axes.toCompliance - axes.fromCompliance);
        painter.drawText(QRectF(0, y - 8, LEFT - 5, 16), Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(value, 'g', 4));
    }
    painter.setPen(complianceColour(axes.isDark));
    painter.drawText(QRectF(4, 2, 0.5 * width(), 16), Qt::AlignLeft, tr("Compliance"));
    painter.setPen(volumeColour(axes.isDark));
    painter.drawText(QRectF(0.5 * width(), 2, 0.5 * width() - 4, 16), Qt::AlignRight,
                     tr("Volume (dashed)"));
    painter.setPen(text);
    const QRectF below(area.left(), area.bottom() + 4, area.width(), 16);
    painter.drawText(below, Qt::AlignLeft, QString::number(gone));
    painter.drawText(below, Qt::AlignHCenter, tr("Iterations"));
    painter.drawText(below, Qt::AlignRight, QString::number(gone + samples.size()));
}

void PlotPanel::drawMarks(QPainter& painter, const Axes& axes) const {
    QColor colour = palette().color(QPalette::WindowText);
    // A drag is a band of them.
    colour.setAlpha(70);
    painter.setPen(QPen(colour, 1, Qt::DashLine));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (!samples[i].isMarked) continue;
        const double x = axes.x(i, samples.size());
        painter.drawLine(QPointF(x, axes.area.top()), QPointF(x, axes.area.bottom()));
    }
}

void PlotPanel::drawCurve(QPainter& painter, const Axes& axes, double Sample::*value, double from,
                          double to, const QPen& pen) const {
    QPolygonF line;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double share = (samples[i].*value - from) / (to - from);
        // Far outside it would only trouble the rasteriser.
        line.append({axes.x(i, samples.size()),
                     axes.area.bottom() - std::clamp(share, -1.0, 2.0) * axes.area.height()});
    }
    painter.setPen(pen);
    painter.drawPolyline(line);
}
