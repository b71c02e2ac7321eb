#pragma once

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QElapsedTimer>
#include <QTimer>
#include <QToolButton>
#include <QWidget>
#include <array>
#include <utility>
#include <vector>

#include "field_legend.h"
#include "run/views.h"

using namespace voxam;

/// The line below the plate that selects the view of a design, with the legend. The
/// optimiser's design and drawings each keep their own choice.
class FieldBar : public QWidget {
    Q_OBJECT

public:
    explicit FieldBar(QWidget* parent = nullptr);

    const ViewChoice& choice() const { return choices[isDrawing ? 1 : 0]; }
    void setDrawing(bool draws);
    /// The load cases to choose from.
    void setLoadCases(const Scene& scene);
    FieldLegend& legend() { return *scale; }

    /// For the menu: the views, and the animation.
    QList<QAction*> viewActions() const { return views.actions(); }
    QAction* animateAction() const { return animate; }

signals:
    void choiceChanged();
    /// How much of the deformation to draw, from 0 to 1.
    void animated(double share);

protected:
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void makeViews();
    void choose(const ViewChoice& next);
    void refresh();
    void setAnimated(bool isToBe);
    void advance();

    std::array<ViewChoice, 2> choices{ViewChoice{View::MATERIAL, {}}, ViewChoice{View::ENERGY, {}}};
    bool isDrawing = false;
    std::vector<std::pair<int, QString>> loadCases;  // in use, with their names
    QActionGroup views;
    QAction* animate;
    QToolButton* animateButton;
    QList<QToolButton*> viewButtons;
    QComboBox* cases;
    FieldLegend* scale;
    QTimer clock;  // runs only while the user plays the animation
    QElapsedTimer sinceStart;
};
