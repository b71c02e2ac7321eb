#include "drawing_clock.h"

#include <QSettings>
#include <algorithm>
#include <utility>

#include "action_text.h"

using namespace voxam;

namespace {

constexpr const char* TIMER_KEY = "drawing/timer";
constexpr int SECOND = 1000;  // ms

}  // namespace

DrawingClock::DrawingClock(Workbench& workbench)
    : action(new QAction(tr("&Timer of three minutes"), this)), bench(workbench) {
    action->setCheckable(true);
    action->setChecked(QSettings().value(TIMER_KEY, false).toBool());
    explain(*action, tr("Draw against the clock, which starts with the first stroke"));
    connect(action, &QAction::toggled, this, [this](bool isOn) {
        QSettings().setValue(TIMER_KEY, isOn);
        reset();
    });
    connect(&bench.document, &Document::sceneChanged, this, &DrawingClock::followScene);
    ticking.setInterval(SECOND);
    connect(&ticking, &QTimer::timeout, this, &DrawingClock::tick);
    reset();
}

void DrawingClock::setDrawing(bool draws) {
    if (isDrawing == draws) return;
    isDrawing = draws;
    reset();
}

void DrawingClock::followScene() {
    const auto last = std::exchange(before, bench.document.scene().densities);
    if (!isDrawing || !action->isChecked() || before == last) return;
    const bool isEmpty = !before || mean(*before) == 0;
    if (isEmpty) return reset();
    if (sinceFirstStroke.isValid()) return;
    sinceFirstStroke.start();
    ticking.start();
}

void DrawingClock::reset() {
    sinceFirstStroke.invalidate();
    ticking.stop();
    isUp = false;
    before = bench.document.scene().densities;
    setVisible(isDrawing && action->isChecked());
    tick();
}

int DrawingClock::secondsLeft() const {
    if (!sinceFirstStroke.isValid()) return SECONDS;
    return std::max(0, SECONDS - static_cast<int>(sinceFirstStroke.elapsed() / SECOND));
}

void DrawingClock::tick() {
    const int left = secondsLeft();
    setText(tr("Time left %1:%2").arg(left / 60).arg(left % 60, 2, 10, QChar('0')));
    if (left > 0 || std::exchange(isUp, true)) return;
    ticking.stop();
    emit timeIsUp();
}
