#pragma once

#include <QAction>
#include <QElapsedTimer>
#include <QLabel>
#include <QTimer>

#include "workbench.h"

/// An optional timer for drawings: three minutes from the first stroke on. It starts again with an
/// empty plate. Drawing may go on when the time is up.
class DrawingClock : public QLabel {
    Q_OBJECT

public:
    explicit DrawingClock(Workbench& workbench);

    /// Switches the timer on; off by default, and kept between runs of the program.
    QAction* const action;

    void setDrawing(bool draws);

    static constexpr int SECONDS = 180;

signals:
    void timeIsUp();

private:
    void followScene();
    void reset();
    void tick();
    int secondsLeft() const;

    Workbench& bench;
    bool isDrawing = false;
    bool isUp = false;
    std::optional<Field> before;
    QElapsedTimer sinceFirstStroke;  // invalid before
    QTimer ticking;
};
