#pragma once

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QWidget>

#include "workbench.h"

/// The load cases, and the loads as numbers: every edit of an arrow, exactly and from the
/// keyboard.
class LoadPanel : public QWidget {
    Q_OBJECT

public:
    explicit LoadPanel(Workbench& workbench);

private:
    QWidget* makeLoads();
    QWidget* makeFields();
    void explainRows(const QFormLayout& form);
    void connectFields();
    QDoubleSpinBox* makeForce(const QString& name);
    double radians() const;
    void showScene();
    void showLoads(const Scene& scene);
    void showSelection();
    void changeSelected(const QString& what, const std::function<void(Scene&, Load&)>& change);

    Workbench& bench;
    QListWidget* loads;
    QLabel* several = nullptr;  // how many pieces are selected
    QWidget* fields;
    QSpinBox* x;
    QSpinBox* y;
    QDoubleSpinBox* fx;
    QDoubleSpinBox* fy;
    QDoubleSpinBox* magnitude;
    QDoubleSpinBox* angle;
    QComboBox* loadCase;
    bool isShowing = false;  // widgets are being set: do not edit the scene
};
