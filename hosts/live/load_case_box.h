#pragma once

#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "workbench.h"

/// The load cases: which of them count, and the name and the weight of the selected one.
class LoadCaseBox : public QGroupBox {
    Q_OBJECT

public:
    explicit LoadCaseBox(Workbench& workbench);

private:
    void makeList();
    QLayout* makeFields();
    QLayout* makeButtons();
    void showScene();
    void showFields();

    Workbench& bench;
    QListWidget* list;
    QLineEdit* name;
    QDoubleSpinBox* weight;
    QPushButton* remove;
    bool isShowing = false;  // widgets are being set: do not edit the scene
};
