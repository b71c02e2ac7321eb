#include "scene_places.h"

#include <QCoreApplication>

namespace fs = std::filesystem;

fs::path shippedScenes() {
    const fs::path program = QCoreApplication::applicationDirPath().toStdString();
    std::error_code error;
    for (const fs::path& place :
         {(program / VOXAM_LIVE_INSTALLED_SCENES).lexically_normal(), fs::path(VOXAM_LIVE_SCENES)})
        if (fs::is_directory(place, error)) return place;
    return {};
}

bool isShipped(const fs::path& file) {
    const fs::path scenes = shippedScenes();
    std::error_code error;
    return !scenes.empty() && fs::equivalent(file.parent_path(), scenes, error);
}
