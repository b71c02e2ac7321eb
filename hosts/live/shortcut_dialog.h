#pragma once

#include <QDialog>
#include <QMenuBar>

/// The list of all keys, of the menus and of the plate.
/// Property of an action whose text changes: its name in the list.
constexpr const char* PLAIN_NAME = "plainName";

class ShortcutDialog : public QDialog {
    Q_OBJECT

public:
    ShortcutDialog(const QMenuBar& menus, QWidget* parent);
};
