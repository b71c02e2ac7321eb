#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QWidget>
#include <array>
#include <deque>
#include <vector>

#include "frame.h"

/// What the last iterations gave, and where their time went.
class NumbersPanel : public QWidget {
    Q_OBJECT

public:
    explicit NumbersPanel(QWidget* parent = nullptr);

    void add(const std::vector<IterationNumbers>& numbers);
    void clear();
    /// Whether the compliance is that of one half of a symmetric plate.
    void setHalf(bool isHalf);
    /// A picture has reached the screen.
    void countFrame();

private:
    struct Part {
        const char* name;
        float RuntimeStat::*time;
    };
    static const std::array<Part, 5>& parts();

    void refresh();
    void refreshTimes();
    double framesPerSecond();

    QLabel* iteration;
    QLabel* compliance;
    QLabel* complianceName;
    QLabel* volume;
    QLabel* change;
    QLabel* milliseconds;
    QLabel* frames;
    std::vector<QProgressBar*> bars;
    std::deque<IterationNumbers> recent;
    std::deque<qint64> frameTimes;  // milliseconds of the clock
    QElapsedTimer clock;
    QTimer timer;
};
