#include "drawing_clock.h"

#include <QSettings>
#include <algorithm>

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
    explain(*action,
            tr("Draw against the clock, which starts with the first stroke on an empty plate"));
    connect(action, &QAction::toggled, this, [this](bool isOn) {
        QSettings().setValue(TIMER_KEY, isOn);
        reset();
    });
    connect(&bench.document, &Document::sceneChanged, this, &DrawingClock::followScene);
    connect(&bench, &Workbench::drawn, this, &DrawingClock::followStroke);
    ticking.setInterval(SECOND);
    connect(&ticking, &QTimer::timeout, this, &DrawingClock::tick);
    reset();
}

void DrawingClock::setDrawing(bool draws) {
    isDrawing = draws;
    setVisible(isDrawing && action->isChecked());
}

// The stroke comes before the change of the scene.
void DrawingClock::followStroke(const Scene& next) {
    if (isEmptyDrawing(next)) return;
    if (state == State::READY) {
        inTime.clear();
        late.clear();
        sinceFirstStroke.start();
        ticking.start();
        enter(State::RUNNING);
        emit started();
    }
    if (isRunning()) inTime.insert(fingerprintOf(*next.densities));
    if (isUp()) late.insert(fingerprintOf(*next.densities));
}

void DrawingClock::followScene() {
    if (!action->isChecked()) return;
    if (isEmptyDrawing(bench.document.scene())) return enter(State::READY);
    if (state == State::OFF) return;
    const QByteArray drawing = fingerprintOf(*bench.document.scene().densities);
    if (!inTime.contains(drawing) && !late.contains(drawing)) enter(State::OFF);
}

void DrawingClock::reset() {
    setVisible(isDrawing && action->isChecked());
    const bool isReady = action->isChecked() && isEmptyDrawing(bench.document.scene());
    enter(isReady ? State::READY : State::OFF);
}

void DrawingClock::enter(State next) {
    state = next;
    if (!isRunning()) ticking.stop();
    if (!isRunning() && !isUp()) {
        inTime.clear();
        late.clear();
    }
    bench.setTimeUp(isUp());
    showTime();
}

int DrawingClock::secondsLeft() const {
    if (!isRunning()) return isUp() ? 0 : seconds;
    return std::max(0, seconds - static_cast<int>(sinceFirstStroke.elapsed() / SECOND));
}

void DrawingClock::showTime() {
    const int left = secondsLeft();
    setText(state == State::OFF
                ? tr("Timer: start with an empty plate")
                : tr("Time left %1:%2").arg(left / 60).arg(left % 60, 2, 10, QChar('0')));
}

void DrawingClock::tick() {
    showTime();
    if (!isRunning() || secondsLeft() > 0) return;
    emit ending();
    // The end of the stroke may have emptied the plate.
    if (!isRunning()) return;
    enter(State::UP);
    emit timeIsUp();
}
