#pragma once

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QWidget>

#include "live_run.h"
#include "workbench.h"

/// Volume and penalty, which act at once, the grid, which starts afresh, and the scene's texts.
class SettingsPanel : public QWidget {
    Q_OBJECT

public:
    SettingsPanel(Workbench& workbench, LiveRun& liveRun);

private:
    QWidget* makeVolume();
    QWidget* makePenalty();
    QWidget* makeGrid();
    QWidget* makeTexts();
    QWidget* makeBlob();
    void showScene();
    void setVolume(double percent);
    void applyGrid();
    void judgeGrid();

    Workbench& bench;
    LiveRun& run;
    QSlider* volumeSlider;
    QDoubleSpinBox* volume;
    QDoubleSpinBox* penalty;
    QSpinBox* width;
    QSpinBox* height;
    QSpinBox* subdivision;
    QSpinBox* meshFactor;
    QLabel* gridAdvice;
    QPushButton* gridButton;
    QCheckBox* movesBlob;
    QLineEdit* title;
    QLineEdit* description;
    Scene shown;             // whose plate the grid's fields are of
    bool isShowing = false;  // widgets are being set, which is no edit
    int sliderGesture = Document::NO_GESTURE;
};
