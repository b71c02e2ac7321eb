#pragma once

#include <QString>
#include <filesystem>
#include <vector>

/// The purposes of the scenes that come with the program.
enum class GalleryLevel { PLAY, UNDERSTAND, DESIGN, DRAW, MORE };

QString nameOf(GalleryLevel level);
QString purposeOf(GalleryLevel level);

/// A scene of the gallery.
struct GalleryScene {
    std::filesystem::path file;
    GalleryLevel level;
    QString title;
    QString purpose;  ///< one sentence; empty for a scene that the gallery does not know

    /// Whether it opens with an empty plate to draw on.
    bool isToDraw() const { return level == GalleryLevel::DRAW; }
};

/// The scenes in a directory, by level and in the order in which to try them; some have two levels.
/// Scenes that the gallery does not know have the level MORE.
std::vector<GalleryScene> galleryScenes(const std::filesystem::path& directory);

/// The design that is kept for the picture of a scene.
std::filesystem::path galleryDesignOf(const std::filesystem::path& sceneFile);
