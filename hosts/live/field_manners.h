#pragma once

#include <QObject>
#include <QWidget>

/// Changes the number fields of a panel so that they do not disturb the window: the wheel scrolls
/// the panel unless the field has the focus. Undo, redo and the keys of tools reach the window. A
/// typed point is the decimal point in every locale. Esc discards unfinished input.
class FieldManners : public QObject {
    Q_OBJECT

public:
    /// Applies to all fields in a panel.
    void teach(QWidget& panel);

protected:
    bool eventFilter(QObject* field, QEvent* event) override;
};
