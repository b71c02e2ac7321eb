#pragma once

#include <QDialog>
#include <QListWidget>
#include <filesystem>

/// The scenes that come with the program, with pictures, to choose from.
class Gallery : public QDialog {
    Q_OBJECT

public:
    explicit Gallery(QWidget* parent = nullptr);

    /// The scene that was chosen when the dialog was accepted.
    std::filesystem::path chosen() const;

private:
    void fill();

    QListWidget* list;
};
