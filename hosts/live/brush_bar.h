#pragma once

#include <QToolBar>

#include "workbench.h"

/// Size and shape of the brush.
class BrushBar : public QToolBar {
    Q_OBJECT

public:
    explicit BrushBar(Workbench& workbench);

    /// For a menu.
    QList<QAction*> menuActions() const { return {smaller, larger, round, square}; }

private:
    QAction* smaller;
    QAction* larger;
    QAction* round;
    QAction* square;
};
