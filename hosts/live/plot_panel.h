#pragma once

#include <QWidget>
#include <deque>
#include <vector>

#include "frame.h"

/// Compliance and volume over the last iterations, with marks where the user edited.
class PlotPanel : public QWidget {
    Q_OBJECT

public:
    explicit PlotPanel(QWidget* parent = nullptr);

    void add(const std::vector<IterationNumbers>& numbers);
    /// The next iteration is the first one after an edit.
    void mark();
    void clear();
    /// Names the compliance that of one half of the plate.
    void setHalf(bool isHalf);

    /// Iterations in view, counted from the start, that are the first ones after an edit.
    std::vector<std::size_t> marks() const;

    QSize sizeHint() const override { return {300, 190}; }
    QSize minimumSizeHint() const override { return {200, 130}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Sample {
        double compliance;
        double volume;
        bool isMarked;
    };
    struct Axes;

    Axes axes() const;
    void drawPeaks(QPainter& painter, const Axes& axes) const;
    void drawFrame(QPainter& painter, const Axes& axes) const;
    void drawMarks(QPainter& painter, const Axes& axes) const;
    void drawCurve(QPainter& painter, const Axes& axes, double Sample::*value, double from,
                   double to, const QPen& pen) const;
    void describe();

    std::deque<Sample> samples;
    std::size_t gone = 0;  // iterations before the first sample
    bool isMarkDue = false;
    bool isOfHalf = false;
};
