#include "timeline_strip.h"

#include <QHelpEvent>
#include <QLocale>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

#include "plate_colours.h"
#include "theme.h"

namespace {

// Pixels.
constexpr double MARGIN = 14;
constexpr double LINE_Y = 11;
constexpr double MARK = 5;
constexpr double REACH = 7;  // of the pointer
constexpr double LABEL_GAP = 10;
constexpr int FONT = 10;

QString describe(const Change& change) {
    return QObject::tr("Iteration %1: %2")
        .arg(change.iteration)
        .arg(QString::fromStdString(change.summary()));
}

}  // namespace

TimelineStrip::TimelineStrip(QWidget* parent)
    : QWidget(parent), scene(std::make_shared<const Scene>()) {
    setAccessibleName(tr("Timeline"));
    setWhatsThis(
        tr("The timeline changes the scene while the optimiser runs: it may move a load, "
           "for example. Each mark is the iteration of a change."));
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    hide();
}

void TimelineStrip::setScene(std::shared_ptr<const Scene> next) {
    if (scene == next) return;
    scene = std::move(next);
    appear();
    describe();
    update();
}

void TimelineStrip::setDrawing(bool draws) {
    isDrawing = draws;
    appear();
}

void TimelineStrip::appear() { setVisible(!scene->timeline.empty() && !isDrawing); }

void TimelineStrip::setIteration(int reached) {
    if (std::exchange(iteration, reached) == reached || !isVisible()) return;
    describe();
    update();
}

void TimelineStrip::describe() {
    const auto made =
        std::count_if(scene->timeline.begin(), scene->timeline.end(),
                      [this](const Change& each) { return each.iteration <= iteration; });
    setAccessibleDescription(tr("Iteration %1, %2 of %3 changes made")
                                 .arg(iteration)
                                 .arg(made)
                                 .arg(scene->timeline.size()));
}

double TimelineStrip::xOf(int at) const {
    const int last = std::max({scene->iterations, iteration,
                               scene->timeline.empty() ? 1 : scene->timeline.back().iteration, 2});
    return MARGIN + (width() - 2 * MARGIN) * (at - 1) / (last - 1);
}

QPointF TimelineStrip::markOf(std::size_t change) const {
    return {xOf(scene->timeline.at(change).iteration), LINE_Y};
}

QString TimelineStrip::textAt(QPointF place) const {
    const Change* nearest = nullptr;
    double distance = REACH;
    for (const Change& change : scene->timeline) {
        const double away = std::abs(xOf(change.iteration) - place.x());
        if (away > distance) continue;
        distance = away;
        nearest = &change;
    }
    return nearest == nullptr ? QString() : ::describe(*nearest);
}

bool TimelineStrip::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString text = textAt(help->pos());
    QToolTip::showText(help->globalPos(),
                       text.isEmpty() ? tr("The scene's timeline: each mark is a change") : text,
                       this);
    return true;
}

void TimelineStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PlateColours& colours = isDarkNow() ? PlateColours::dark() : PlateColours::light();
    const QColor ink = palette().color(QPalette::WindowText);
    QColor faint = ink;
    faint.setAlpha(70);
    painter.setPen(QPen(faint, 2));
    painter.drawLine(QPointF(MARGIN, LINE_Y), QPointF(width() - MARGIN, LINE_Y));
    const double here = xOf(std::max(1, iteration));
    painter.setPen(QPen(colours.hand, 3));
    painter.drawLine(QPointF(MARGIN, LINE_Y), QPointF(here, LINE_Y));
    QFont font = painter.font();
    font.setPixelSize(FONT);
    painter.setFont(font);
    double written = 0;
    for (std::size_t i = 0; i < scene->timeline.size(); ++i) {
        const QPointF place = markOf(i);
        const bool isMade = scene->timeline[i].iteration <= iteration;
        painter.setPen(QPen(ink, 1.4));
        painter.setBrush(isMade ? ink : palette().color(QPalette::Window));
        painter.drawPolygon(QPolygonF({place + QPointF(0, -MARK), place + QPointF(MARK, 0),
                                       place + QPointF(0, MARK), place + QPointF(-MARK, 0)}));
        const QString number = QString::number(scene->timeline[i].iteration);
        const double half = 0.5 * painter.fontMetrics().horizontalAdvance(number);
        if (place.x() - half < written) continue;
        written = place.x() + half + LABEL_GAP;
        painter.drawText(QPointF(place.x() - half, LINE_Y + MARK + FONT + 1), number);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours.hand);
    painter.drawEllipse(QPointF(here, LINE_Y), MARK - 1, MARK - 1);
}
