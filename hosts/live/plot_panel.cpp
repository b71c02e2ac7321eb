#include "plot_panel.h"

#include <QLocale>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "field_help.h"
#include "number_text.h"
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
constexpr double LEAST_SPAN = 0.05;  // of the compliance
constexpr int STEPS = 4;             // at most about so many between the lines
constexpr double PEAK_WIDTH = 8;

/// A round number of at least `least`.
double roundStep(double least) {
    if (!(least > 0) || !std::isfinite(least)) return 0.2;
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const int digit : {1, 2, 5})
        if (digit * power >= least) return digit * power;
    return 10 * power;
}

QColor complianceColour(bool isDark) {
    return isDark ? QColor(110, 175, 255) : QColor(13, 89, 191);
}
QColor volumeColour(bool isDark) { return isDark ? QColor(245, 165, 60) : QColor(190, 95, 0); }

/// A multiple of `step` with as many decimals as `step` has. Large numbers get an exponent.
QString tickText(double value, double step) {
    const bool isPlain = value == 0 || (value >= 1e-3 && value < 1e6);
    const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
    return isPlain ? QLocale().toString(value, 'f', decimals) : QLocale().toString(value, 'g', 5);
}

}  // namespace

struct PlotPanel::Axes {
    QRectF area;
    double fromCompliance = 0;
    double toCompliance = 1;
    double step = 0.2;  ///< of the compliance, between lines
    bool isDark = false;

    double x(std::size_t sample, std::size_t count) const {
        return area.left() + area.width() * static_cast<double>(sample) /
                                 static_cast<double>(std::max<std::size_t>(count - 1, 1));
    }
    double y(double compliance) const {
        return area.bottom() -
               (compliance - fromCompliance) / (toCompliance - fromCompliance) * area.height();
    }
};

PlotPanel::PlotPanel(QWidget* parent) : QWidget(parent) {
    setAccessibleName(tr("Plot of compliance and volume over the iterations"));
    explainField(
        *this,
        tr("Compliance (left scale) and volume (right scale) over the iterations; dotted "
           "lines are edits and changes of the timeline, triangles are peaks above the scale"));
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

void PlotPanel::setHalf(bool isHalf) {
    isOfHalf = isHalf;
    update();
}

std::vector<std::size_t> PlotPanel::marks() const {
    std::vector<std::size_t> iterations;
    for (std::size_t i = 0; i < samples.size(); ++i)
        if (samples[i].isMarked) iterations.push_back(gone + i + 1);
    return iterations;
}

void PlotPanel::describe() {
    if (samples.empty()) return;
    setAccessibleDescription(
        tr("Compliance %1, volume %2; %3 edits in view")
            .arg(numberText(samples.back().compliance), percentText(samples.back().volume))
            .arg(marks().size()));
}

PlotPanel::Axes PlotPanel::axes() const {
    Axes axes;
    axes.area = QRectF(rect()).adjusted(LEFT, TOP, -RIGHT, -BOTTOM);
    axes.isDark = palette().color(QPalette::Window).lightness() < 128;
    if (samples.empty()) return axes;
    std::vector<double> sorted;
    for (const Sample& sample : samples) sorted.push_back(sample.compliance);
    std::sort(sorted.begin(), sorted.end());
    const auto most =
        static_cast<std::size_t>(SHARE_IN_VIEW * static_cast<double>(sorted.size() - 1));
    double from = sorted.front();
    double to = std::max(sorted[most], samples.back().compliance);
    // What has settled is to look still.
    const double lack = LEAST_SPAN * std::abs(to) - (to - from);
    if (lack > 0) {
        from -= 0.5 * lack;
        to += 0.5 * lack;
    }
    // Round numbers; a compliance is never negative.
    axes.step = roundStep((to - from) / STEPS);
    axes.fromCompliance = std::max(0.0, std::floor(from / axes.step) * axes.step);
    axes.toCompliance =
        std::max(axes.fromCompliance + axes.step, std::ceil(to / axes.step) * axes.step);
    return axes;
}

void PlotPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Axes shown = axes();
    drawFrame(painter, shown);
    if (samples.size() < 2) return;
    drawPeaks(painter, shown);
    painter.setClipRect(shown.area);
    drawMarks(painter, shown);
    // The volume is dashed: colour is not the only difference.
    drawCurve(painter, shown, &Sample::volume, 0, 1,
              QPen(volumeColour(shown.isDark), 1.6, Qt::DashLine));
    drawCurve(painter, shown, &Sample::compliance, shown.fromCompliance, shown.toCompliance,
              QPen(complianceColour(shown.isDark), 1.8));
}

void PlotPanel::drawFrame(QPainter& painter, const Axes& axes) const {
    const QColor text = palette().color(QPalette::WindowText);
    QColor faint = text;
    faint.setAlpha(50);
    QFont font = painter.font();
    font.setPointSizeF(0.85 * font.pointSizeF());
    painter.setFont(font);
    const QRectF& area = axes.area;
    for (const int percent : {0, 25, 50, 75, 100}) {
        const double y = area.bottom() - percent / 100.0 * area.height();
        painter.setPen(volumeColour(axes.isDark));
        painter.drawText(QRectF(area.right() + 5, y - 8, RIGHT - 6, 16),
                         Qt::AlignLeft | Qt::AlignVCenter, tr("%1 %").arg(percent));
    }
    const int lines =
        static_cast<int>(std::lround((axes.toCompliance - axes.fromCompliance) / axes.step));
    for (int i = 0; i <= lines; ++i) {
        const double value = axes.fromCompliance + i * axes.step;
        const double y = axes.y(value);
        painter.setPen(QPen(faint, 1));
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        if (samples.empty()) continue;
        painter.setPen(complianceColour(axes.isDark));
        painter.drawText(QRectF(0, y - 8, LEFT - 5, 16), Qt::AlignRight | Qt::AlignVCenter,
                         tickText(value, axes.step));
    }
    painter.setPen(complianceColour(axes.isDark));
    painter.drawText(QRectF(4, 2, 0.5 * width(), 16), Qt::AlignLeft,
                     isOfHalf ? tr("Compliance of the half") : tr("Compliance"));
    painter.setPen(volumeColour(axes.isDark));
    painter.drawText(QRectF(0.5 * width(), 2, 0.5 * width() - 4, 16), Qt::AlignRight,
                     tr("Volume (dashed)"));
    painter.setPen(text);
    const QRectF below(area.left(), area.bottom() + 4, area.width(), 16);
    painter.drawText(below, Qt::AlignLeft, QString::number(samples.empty() ? 0 : gone + 1));
    painter.drawText(below, Qt::AlignHCenter, tr("Iterations"));
    painter.drawText(below, Qt::AlignRight, QString::number(gone + samples.size()));
}

void PlotPanel::drawPeaks(QPainter& painter, const Axes& axes) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(complianceColour(axes.isDark));
    const double top = axes.area.top();
    double last = -PEAK_WIDTH;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double x = axes.x(i, samples.size());
        if (samples[i].compliance <= axes.toCompliance || x < last + PEAK_WIDTH) continue;
        last = x;
        painter.drawPolygon(QPolygonF({{x, top - 5}, {x - 3, top - 1}, {x + 3, top - 1}}));
    }
}

void PlotPanel::drawMarks(QPainter& painter, const Axes& axes) const {
    QColor colour = palette().color(QPalette::WindowText);
    // A drag is a band of them.
    colour.setAlpha(70);
    painter.setPen(QPen(colour, 1, Qt::DashLine));
    for (const std::size_t iteration : marks()) {
        const double x = axes.x(iteration - 1 - gone, samples.size());
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
