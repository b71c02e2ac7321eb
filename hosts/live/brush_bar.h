#pragma once

#include <QToolBar>

#include "workbench.h"

/// Size and shape of the brush, or the shape that is drawn in one go.
class BrushBar : public QToolBar {
    Q_OBJECT

public:
    explicit BrushBar(Workbench& workbench);

    /// For a menu.
    QList<QAction*> menuActions() const {
        return {smaller, larger, round, square, rectangle, disc};
    }

private:
    QAction* smaller;
    QAction* larger;
    QAction* round;
    QAction* square;
    QAction* rectangle;
    QAction* disc;
};
