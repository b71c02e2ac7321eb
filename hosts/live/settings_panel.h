#pragma once

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QWidget>

#include "live_run.h"
#include "workbench.h"

/// Volume and penalty, which take effect at once, and the grid, which starts afresh.
class SettingsPanel : public QWidget {
    Q_OBJECT

public:
    SettingsPanel(Workbench& workbench, LiveRun& liveRun);

signals:
    /// The numbers of the grid were applied.
    void gridApplied();

protected:
    /// Handles Enter and Esc in the fields of the grid, and leaving them.
    bool eventFilter(QObject* field, QEvent* event) override;

private:
    QWidget* makeVolume();
    QWidget* makePenalty();
    QWidget* makeGrid();
    QWidget* makeBlob();
    void showScene();
    void setVolume(double percent);
    void applyGrid();
    void judgeGrid();
    /// Shows what the plate and its elements will measure.
    void showPlateSize(const Scene& plate);
    QString speedOf(const Scene& plate) const;
    void showGrid();
    bool leavesGrid(const QEvent& event) const;

    Workbench& bench;
    LiveRun& run;
    QSlider* volumeSlider;
    QDoubleSpinBox* volume;
    QDoubleSpinBox* penalty;
    QWidget* gridFields;
    QSpinBox* width;
    QSpinBox* height;
    QSpinBox* subdivision;
    QSpinBox* meshFactor;
    QLabel* plateSize;
    QLabel* gridAdvice;
    QPushButton* gridButton;
    QCheckBox* movesBlob;
    Scene shown;             // the scene whose plate the grid's fields show
    bool isShowing = false;  // widgets are being set: do not edit the scene
    int sliderGesture = Document::NO_GESTURE;
};
