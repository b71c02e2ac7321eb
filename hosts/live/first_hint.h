#pragma once

#include <QLabel>

#include "plate_view.h"
#include "workbench.h"

/// "Drag the arrow", next to an arrow of the plate. It goes for good when the user has dragged one,
/// and it is not shown in more than a few runs of the program.
class FirstHint : public QLabel {
    Q_OBJECT

public:
    FirstHint(Workbench& workbench, PlateView& plateView);

    /// Loads cannot be dragged while a design is drawn.
    void setDrawing(bool draws);

private:
    void followScene();
    void follow();

    Workbench& bench;
    PlateView& view;
    std::vector<Load> before;
    bool isDrawing = false;
    bool isOver = false;
};
