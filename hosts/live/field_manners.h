#pragma once

#include <QAbstractSpinBox>
#include <QObject>
#include <QWidget>

/// Changes the number fields of a panel so that they do not disturb the window: the wheel scrolls
/// the panel unless the field has the focus. Undo, redo and the keys of tools reach the window. A
/// point and a comma are both read as the decimal sign. Esc discards unfinished input.
class FieldManners : public QObject {
    Q_OBJECT

public:
    /// Applies to all fields in a panel.
    void teach(QWidget& panel);

    /// Reads a point and a comma as the decimal sign in every locale, never as a separator of
    /// thousands. Fields for whole numbers refuse them.
    static void readBothSigns(QAbstractSpinBox& box);

protected:
    bool eventFilter(QObject* field, QEvent* event) override;
};
