#pragma once

#include <QWidget>
#include <memory>

#include "format/scene.h"

using namespace voxam;

/// Shows the changes of a timeline as marks along the iterations, and the present iteration. Hidden
/// if the scene has no timeline.
class TimelineStrip : public QWidget {
    Q_OBJECT

public:
    explicit TimelineStrip(QWidget* parent = nullptr);

    /// `next` must contain the whole timeline.
    void setScene(std::shared_ptr<const Scene> next);
    void setIteration(int reached);
    /// Hides the strip while the user draws: a drawing ignores the timeline.
    void setDrawing(bool draws);

    /// Describes the change at a place of the strip; empty without a change.
    QString textAt(QPointF place) const;
    /// The place of the mark of a change.
    QPointF markOf(std::size_t change) const;

    QSize sizeHint() const override { return {300, 30}; }
    QSize minimumSizeHint() const override { return {120, 30}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    double xOf(int at) const;
    void describe();
    void appear();

    std::shared_ptr<const Scene> scene;
    int iteration = 0;
    bool isDrawing = false;
};
