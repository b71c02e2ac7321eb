#pragma once

#include <QLabel>

/// The title and the description of the scene, always in sight above the plate.
class SceneCaption : public QLabel {
    Q_OBJECT

public:
    explicit SceneCaption(QWidget* parent = nullptr);

    void show(const QString& title, const QString& description);
};
