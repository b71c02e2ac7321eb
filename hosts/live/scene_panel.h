#pragma once

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include "workbench.h"

/// The texts of the scene, the size of an element and the symmetry.
class ScenePanel : public QWidget {
    Q_OBJECT

public:
    explicit ScenePanel(Workbench& workbench);

private:
    void makeTexts();
    void makeSizes();
    void showScene();
    void setSymmetry(Symmetry next);

    Workbench& bench;
    QLineEdit* title;
    QLineEdit* description;
    QDoubleSpinBox* elementSize;
    QLabel* plateSize;
    QComboBox* symmetry;
    bool isShowing = false;  // widgets are being set: do not edit the scene
};
