#pragma once

#include <QObject>
#include <QWidget>

/// What the number fields of a panel do otherwise than usual, for the sake of the window around
/// them: the wheel scrolls the panel, unless the field was chosen; undo and redo, and the letters
/// that are keys of tools, reach the window.
class FieldManners : public QObject {
    Q_OBJECT

public:
    /// All fields within a panel.
    void teach(QWidget& panel);

protected:
    bool eventFilter(QObject* field, QEvent* event) override;
};
