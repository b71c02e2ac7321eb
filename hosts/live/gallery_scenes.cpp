#include "gallery_scenes.h"

#include <QCoreApplication>
#include <algorithm>

namespace fs = std::filesystem;

namespace {

struct Known {
    const char* stem;
    GalleryLevel level;
    const char* title;
    const char* purpose;
};

constexpr Known KNOWN[] = {
    {"optimise-cantilever", GalleryLevel::PLAY, QT_TRANSLATE_NOOP("Gallery", "Cantilever"),
     QT_TRANSLATE_NOOP("Gallery", "Drag the weight along the free end, and the bracket follows.")},
    {"moving-load", GalleryLevel::PLAY, QT_TRANSLATE_NOOP("Gallery", "Moving load"),
     QT_TRANSLATE_NOOP("Gallery",
                       "A load crosses a beam in five steps. See how much of the design changes.")},
    {"pipe", GalleryLevel::PLAY, QT_TRANSLATE_NOOP("Gallery", "Pipe through a bracket"),
     QT_TRANSLATE_NOOP("Gallery",
                       "A pipe is in the way of a bar. Tick Blob moves, and it finds its place.")},
    {"half-beam", GalleryLevel::UNDERSTAND, QT_TRANSLATE_NOOP("Gallery", "Beam on two supports"),
     QT_TRANSLATE_NOOP("Gallery",
                       "Half of a symmetric beam is computed. The rollers stand for the other "
                       "half.")},
    {"hole", GalleryLevel::UNDERSTAND, QT_TRANSLATE_NOOP("Gallery", "Plate with a hole"),
     QT_TRANSLATE_NOOP("Gallery",
                       "A plate is pulled to the right. The colours show where the rim of the hole "
                       "works hardest.")},
    {"unsupported", GalleryLevel::UNDERSTAND, QT_TRANSLATE_NOOP("Gallery", "Beam on rollers"),
     QT_TRANSLATE_NOOP("Gallery",
                       "Nothing stops this beam from sliding. Add the support that is missing.")},
    {"l-bracket", GalleryLevel::DESIGN, QT_TRANSLATE_NOOP("Gallery", "L-bracket"),
     QT_TRANSLATE_NOOP("Gallery",
                       "A bracket below a ceiling leaves a corner free for something else.")},
    {"bridge-two-cases", GalleryLevel::DESIGN,
     QT_TRANSLATE_NOOP("Gallery", "Bridge with two load cases"),
     QT_TRANSLATE_NOOP("Gallery",
                       "A deck that stays solid carries traffic on one half at a time.")},
    {"wheel", GalleryLevel::DESIGN, QT_TRANSLATE_NOOP("Gallery", "Wheel"),
     QT_TRANSLATE_NOOP(
         "Gallery", "Spokes form between a hub and a rim that the ground pushes in six places.")},
    {"optimise-cantilever", GalleryLevel::DRAW, QT_TRANSLATE_NOOP("Gallery", "Cantilever"),
     QT_TRANSLATE_NOOP("Gallery", "Hold a weight at the free end with two fifths of the plate.")},
    {"half-beam", GalleryLevel::DRAW, QT_TRANSLATE_NOOP("Gallery", "Beam on two supports"),
     QT_TRANSLATE_NOOP("Gallery", "Draw one half of a symmetric beam. The other half mirrors it.")},
    {"l-bracket", GalleryLevel::DRAW, QT_TRANSLATE_NOOP("Gallery", "L-bracket"),
     QT_TRANSLATE_NOOP("Gallery", "Lead the force around the corner that stays free.")},
    {"bridge-two-cases", GalleryLevel::DRAW,
     QT_TRANSLATE_NOOP("Gallery", "Bridge with two load cases"),
     QT_TRANSLATE_NOOP("Gallery", "Draw what carries the deck when either half is loaded.")},
    {"wheel", GalleryLevel::DRAW, QT_TRANSLATE_NOOP("Gallery", "Wheel"),
     QT_TRANSLATE_NOOP("Gallery", "Join hub and rim. The ground pushes in six places in turn.")},
};

/// Drawn scenes for the command-line program. Their grids are so coarse that the optimiser's design
/// is poor as drawn, so they make no contest.
constexpr const char* LEFT_OUT[] = {"minimal", "cantilever", "bridge", "arch"};

bool isLeftOut(const fs::path& file) {
    return file.stem() == "scene.schema" ||
           std::any_of(std::begin(LEFT_OUT), std::end(LEFT_OUT),
                       [&](const char* stem) { return file.stem() == stem; });
}

}  // namespace

QString nameOf(GalleryLevel level) {
    switch (level) {
        case GalleryLevel::PLAY:
            return QCoreApplication::translate("Gallery", "Play");
        case GalleryLevel::UNDERSTAND:
            return QCoreApplication::translate("Gallery", "Understand");
        case GalleryLevel::DESIGN:
            return QCoreApplication::translate("Gallery", "Design");
        case GalleryLevel::DRAW:
            return QCoreApplication::translate("Gallery", "Draw");
        case GalleryLevel::MORE:
            break;
    }
    return QCoreApplication::translate("Gallery", "More");
}

QString purposeOf(GalleryLevel level) {
    switch (level) {
        case GalleryLevel::PLAY:
            return QCoreApplication::translate("Gallery",
                                               "Pull at something, and watch the structure form.");
        case GalleryLevel::UNDERSTAND:
            return QCoreApplication::translate(
                "Gallery", "See where structures work hard, and what holds them.");
        case GalleryLevel::DESIGN:
            return QCoreApplication::translate(
                "Gallery", "Parts with kept areas and load cases, as in practice.");
        case GalleryLevel::DRAW:
            return QCoreApplication::translate(
                "Gallery", "Draw with the same amount of material as the optimiser gets.");
        case GalleryLevel::MORE:
            break;
    }
    return QCoreApplication::translate("Gallery", "Further scenes in the program's directory.");
}

std::vector<GalleryScene> galleryScenes(const fs::path& directory) {
    std::vector<GalleryScene> scenes;
    std::error_code error;
    for (const Known& known : KNOWN) {
        const fs::path file = directory / (std::string(known.stem) + ".json");
        if (fs::is_regular_file(file, error))
            scenes.push_back({file, known.level,
                              QCoreApplication::translate("Gallery", known.title),
                              QCoreApplication::translate("Gallery", known.purpose)});
    }
    const std::size_t knownCount = scenes.size();
    for (const auto& entry : fs::directory_iterator(directory, error)) {
        const fs::path& file = entry.path();
        const bool isKnown =
            std::any_of(std::begin(KNOWN), std::end(KNOWN),
                        [&](const Known& each) { return file.stem() == each.stem; });
        if (file.extension() == ".json" && !isLeftOut(file) && !isKnown)
            scenes.push_back(
                {file, GalleryLevel::MORE, QString::fromStdString(file.stem().string()), {}});
    }
    std::sort(scenes.begin() + static_cast<std::ptrdiff_t>(knownCount), scenes.end(),
              [](const auto& one, const auto& other) { return one.file < other.file; });
    return scenes;
}

fs::path galleryDesignOf(const fs::path& sceneFile) {
    return sceneFile.parent_path() / "gallery" / sceneFile.stem().concat(".png");
}
