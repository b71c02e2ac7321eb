#pragma once

#include <QAction>
#include <QElapsedTimer>
#include <QLabel>
#include <QTimer>
#include <set>

#include "workbench.h"

/// An optional timer for drawings: three minutes from the first stroke on an empty plate. It runs
/// on while the drawing mode is left, and stops without a result if another drawing comes to the
/// plate, such as a copy or the drawing before the empty plate. An empty plate sets it anew.
class DrawingClock : public QLabel {
    Q_OBJECT

public:
    explicit DrawingClock(Workbench& workbench);

    /// Switches the timer on; off by default, and kept between runs of the program.
    QAction* const action;

    void setDrawing(bool draws);

    bool isRunning() const { return state == State::RUNNING; }
    /// Strokes win nothing any more, until the next start from an empty plate.
    bool isUp() const { return state == State::UP; }
    /// Whether a stroke within the time led to this drawing.
    bool isInTime(const Field& drawing) const { return inTime.contains(fingerprintOf(drawing)); }

    static constexpr int SECONDS = 180;
    /// For tests.
    void setSeconds(int limit) { seconds = limit; }

signals:
    void started();
    /// The time is nearly up: a stroke under way has to end now to be in time.
    void ending();
    void timeIsUp();

private:
    enum class State { READY, RUNNING, UP, OFF };

    void followScene();
    void followStroke(const Scene& next);
    void reset();
    void enter(State next);
    void tick();
    void showTime();
    int secondsLeft() const;

    Workbench& bench;
    bool isDrawing = false;
    State state = State::OFF;
    int seconds = SECONDS;
    std::set<QByteArray> inTime;  // fingerprints of drawings
    std::set<QByteArray> late;
    QElapsedTimer sinceFirstStroke;
    QTimer ticking;
};
