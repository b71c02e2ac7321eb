#pragma once

#include <QSpinBox>
#include <QToolBar>

#include "workbench.h"

/// Size and shape of the brush, or the shape that is drawn in one go.
class BrushBar : public QToolBar {
    Q_OBJECT

public:
    explicit BrushBar(Workbench& workbench);

    /// Enables rectangle and disc for tools that paint shapes. For other tools the bar shows the
    /// brush; the choice of shape returns with the next tool that paints shapes.
    void setPaintsShapes(bool isToBe);

    /// For a menu.
    QList<QAction*> menuActions() const {
        return {smaller, larger, round, square, rectangle, disc};
    }

private:
    void showBrush();

    Workbench& bench;
    QSpinBox* size;
    QAction* smaller;
    QAction* larger;
    QAction* round;
    QAction* square;
    QAction* rectangle;
    QAction* disc;
    bool paintsShapes = false;
};
