#pragma once

#include <QDialog>
#include <QListWidget>
#include <QTabWidget>
#include <QThreadPool>
#include <filesystem>

#include "gallery_scenes.h"

/// The scenes that come with the program, by level and with pictures, to choose from. The pictures
/// are drawn on other threads and come when they are ready.
class Gallery : public QDialog {
    Q_OBJECT

public:
    explicit Gallery(QWidget* parent = nullptr);
    ~Gallery() override;

    /// The scene that was chosen when the dialog was accepted.
    std::filesystem::path chosen() const;
    /// Whether it is to be drawn, from an empty plate.
    bool isChosenToDraw() const;

private:
    const QListWidgetItem* chosenItem() const;
    void fill();
    QListWidget* addLevel(GalleryLevel level);
    void addScene(QListWidget& list, const GalleryScene& scene);

    QTabWidget* levels;
    QThreadPool painters;
};
