#include "plate_colours.h"

#include "drawing/picture_colours.h"

using namespace voxam;

namespace {

// Towards white: the darker colours would drown in a dark window.
constexpr double DARK_LIFT = 0.35;
constexpr double PASSIVE_LIFT = 0.2;

std::array<QColor, LOAD_CASE_COLOURS> loadColours(double lift) {
    std::array<QColor, LOAD_CASE_COLOURS> colours;
    for (int loadCase = 0; loadCase < LOAD_CASE_COLOURS; ++loadCase)
        colours[static_cast<std::size_t>(loadCase)] =
            toQt(mix(loadCaseColour(loadCase), {1, 1, 1}, lift));
    return colours;
}

std::array<QColor, 3> passiveColours(double lift) {
    std::array<QColor, 3> colours;
    for (std::size_t kind = 0; kind < colours.size(); ++kind)
        colours[kind] = toQt(mix(picture_colours::PASSIVE[kind], {1, 1, 1}, lift));
    return colours;
}

}  // namespace

QColor toQt(const Colour& colour) {
    return QColor::fromRgbF(static_cast<float>(colour[0]), static_cast<float>(colour[1]),
                            static_cast<float>(colour[2]));
}

const PlateColours& PlateColours::light() {
    static const PlateColours colours = {.surroundings = Qt::white,
                                         .voids = toQt(picture_colours::VOID_PLATE),
                                         .solid = toQt(picture_colours::SOLID_GREY),
                                         .edge = toQt(picture_colours::FAINT_INK),
                                         .rim = Qt::white,
                                         .support = toQt(picture_colours::SUPPORT),
                                         .blob = toQt(picture_colours::BLOB),
                                         .hand = QColor(0, 105, 217),
                                         .fault = QColor(213, 50, 30),
                                         .floating = toQt(picture_colours::FLOATING),
                                         .passive = passiveColours(0),
                                         .loads = loadColours(0)};
    return colours;
}

const PlateColours& PlateColours::dark() {
    static const PlateColours colours = [] {
        PlateColours lifted = light();
        lifted.surroundings = QColor(30, 31, 34);
        lifted.voids = QColor(43, 45, 49);
        lifted.solid = QColor(222, 224, 228);
        lifted.edge = QColor(120, 124, 132);
        lifted.rim = QColor(24, 25, 28);
        lifted.support = QColor(150, 178, 192);
        lifted.hand = QColor(90, 175, 255);
        lifted.fault = QColor(255, 110, 85);
        lifted.passive = passiveColours(PASSIVE_LIFT);
        lifted.loads = loadColours(DARK_LIFT);
        return lifted;
    }();
    return colours;
}

QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto part = [share](int a, int b) { return static_cast<int>(a + share * (b - a) + 0.5); };
    return {part(from.red(), to.red()), part(from.green(), to.green()),
            part(from.blue(), to.blue())};
}
