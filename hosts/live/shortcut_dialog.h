#pragma once

#include <QDialog>
#include <QMenuBar>

/// All keys: those of the menus, and those that work on the plate.
class ShortcutDialog : public QDialog {
    Q_OBJECT

public:
    ShortcutDialog(const QMenuBar& menus, QWidget* parent);
};
