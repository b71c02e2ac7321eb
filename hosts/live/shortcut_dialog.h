#pragma once

#include <QDialog>
#include <QMenuBar>

/// All keys: those of the menus, and those that work on the plate.
/// Property of an action whose text changes: its name in the list.
constexpr const char* PLAIN_NAME = "plainName";

class ShortcutDialog : public QDialog {
    Q_OBJECT

public:
    ShortcutDialog(const QMenuBar& menus, QWidget* parent);
};
