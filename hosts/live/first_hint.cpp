#include "first_hint.h"

#include <QSettings>

#include "plate_arrow.h"

namespace {

constexpr const char* DONE_KEY = "hints/arrowWasDragged";
constexpr const char* RUNS_KEY = "hints/runs";
constexpr int MAX_RUNS = 3;  // with the hint
constexpr int GAP = 14;      // pixels between the arrow and the hint

}  // namespace

FirstHint::FirstHint(Workbench& workbench, PlateView& plateView)
    : QLabel(tr("Drag the arrow"), &plateView), bench(workbench), view(plateView) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    // Dark on amber, on a light plate as on a dark one.
    setStyleSheet(
        "background: #f6c85f; color: #2b2100; font-weight: bold; padding: 4px 9px; "
        "border-radius: 6px;");
    hide();
    QSettings settings;
    const int runs = settings.value(RUNS_KEY, 0).toInt();
    isOver = settings.value(DONE_KEY, false).toBool() || runs >= MAX_RUNS;
    if (isOver) return;
    settings.setValue(RUNS_KEY, runs + 1);
    connect(&bench.document, &Document::sceneChanged, this, &FirstHint::followScene);
    connect(&view, &PlateView::painted, this, &FirstHint::follow);
}

void FirstHint::setDrawing(bool draws) {
    isDrawing = draws;
    follow();
}

void FirstHint::followScene() {
    const auto& loads = bench.document.scene().loads;
    const bool isSameTask = before.size() == loads.size();
    if (!isOver && isSameTask && view.isInGesture() && before != loads) {
        isOver = true;
        QSettings().setValue(DONE_KEY, true);
        hide();
    }
    before = loads;
}

void FirstHint::follow() {
    const Scene& scene = bench.document.scene();
    const bool isShown = !isOver && !isDrawing && !scene.loads.empty();
    if (isShown) {
        const auto arrows =
            byLoad(arrowsOf(scene, bench.forces(), view.transform()), scene, view.transform());
        const LoadArrow& arrow = handleOf(arrows.begin()->second);
        const QPointF tip = toQt(arrow.tip());
        const QPointF tail = toQt(arrow.tail);
        adjustSize();
        // Beyond the middle of the arrow, on the side where there is more room.
        const QPointF middle = 0.5 * (tip + tail);
        const bool isRight = middle.x() < 0.5 * view.width();
        QRectF place(QPointF(), size());
        const double side = std::max(tip.x(), tail.x()) + GAP;
        const double otherSide = std::min(tip.x(), tail.x()) - GAP - place.width();
        place.moveTopLeft({isRight ? side : otherSide, middle.y() - 0.5 * place.height()});
        const QPoint corner(
            std::clamp(static_cast<int>(place.x()), 0, std::max(0, view.width() - width())),
            std::clamp(static_cast<int>(place.y()), 0, std::max(0, view.height() - height())));
        if (pos() != corner) move(corner);
    }
    if (isVisibleTo(&view) != isShown) setVisible(isShown);
}
