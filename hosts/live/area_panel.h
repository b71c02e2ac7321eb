#pragma once

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QSpinBox>
#include <QWidget>
#include <vector>

#include "workbench.h"

/// Lists supports and kept areas, and shows the selected one as numbers.
class AreaPanel : public QWidget {
    Q_OBJECT

public:
    explicit AreaPanel(Workbench& workbench);

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// The set of fields that a piece needs.
    enum class Form { NONE, SUPPORT, RECTANGLE, DISC, FREE };

    void makeFields();
    QSpinBox* addCount(const QString& label, const QString& name);
    QDoubleSpinBox* addLength(const QString& label, const QString& name);
    void addArea(const QString& what, bool isDisc);
    void showScene();
    void showList();
    void showSelection();
    void showPiece(const Piece& piece);
    void showFields(Form next);
    void apply();

    Workbench& bench;
    QListWidget* list;
    QLabel* several = nullptr;  // how many pieces are selected
    std::vector<PieceId> ids;   // of the list's rows
    QFormLayout* form = nullptr;
    QComboBox* kind = nullptr;
    QComboBox* hold = nullptr;
    QSpinBox* x = nullptr;
    QSpinBox* y = nullptr;
    QSpinBox* width = nullptr;
    QSpinBox* height = nullptr;
    QDoubleSpinBox* centreX = nullptr;
    QDoubleSpinBox* centreY = nullptr;
    QDoubleSpinBox* radius = nullptr;
    QDoubleSpinBox* hole = nullptr;
    QWidget* fields = nullptr;
    Form shown = Form::NONE;
    bool isShowing = false;  // widgets are being set: do not edit the scene
};
