#pragma once

#include <QWidget>
#include <vector>

#include "frame.h"

/// Compliance and volume over the iterations, with marks where the user edited.
class PlotPanel : public QWidget {
    Q_OBJECT

public:
    explicit PlotPanel(QWidget* parent = nullptr);

    void add(const std::vector<IterationNumbers>& numbers);
    /// The next iteration is the first one after an edit.
    void mark();
    void clear();

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

    void drawFrame(QPainter& painter, const Axes& axes) const;
    void drawMarks(QPainter& painter, const Axes& axes) const;
    void drawCurve(QPainter& painter, const Axes& axes, double Sample::*value, double from,
                   double to, const QPen& pen) const;
    void describe();
    void thin();

    std::vector<Sample> samples;
    std::size_t perSample = 1;  // iterations
    std::size_t pending = 0;    // iterations towards the next sample
    bool isMarkDue = false;
};
