#include "plate_colours.h"

namespace {

// Towards white: the darker colours would drown in a dark window.
constexpr double DARK_LIFT = 0.35;

std::array<QColor, LOAD_CASE_COLOURS> loadColours(double lift) {
    std::array<QColor, LOAD_CASE_COLOURS> colours;
    for (int loadCase = 0; loadCase < LOAD_CASE_COLOURS; ++loadCase) {
        const Colour colour = mix(loadCaseColour(loadCase), {1, 1, 1}, lift);
        colours[static_cast<std::size_t>(loadCase)] =
            QColor::fromRgbF(static_cast<float>(colour[0]), static_cast<float>(colour[1]),
                             static_cast<float>(colour[2]));
    }
    return colours;
}

}  // namespace

const PlateColours& PlateColours::light() {
    // Those of the pictures that the command-line program draws.
    static const PlateColours colours = {
        QColor(255, 255, 255),
        QColor(244, 244, 241),
        QColor(51, 51, 56),
        QColor(107, 107, 115),
        QColor(33, 33, 38),
        QColor(255, 255, 255),
        QColor(64, 89, 102),
        QColor(89, 166, 235),
        QColor(0, 105, 217),
        QColor(213, 50, 30),
        {QColor(230, 128, 13), QColor(38, 166, 64), QColor(204, 64, 153)},
        loadColours(0)};
    return colours;
}

const PlateColours& PlateColours::dark() {
    static const PlateColours colours = {
        QColor(30, 31, 34),
        QColor(43, 45, 49),
        QColor(222, 224, 228),
        QColor(120, 124, 132),
        QColor(225, 227, 230),
        QColor(24, 25, 28),
        QColor(150, 178, 192),
        QColor(70, 145, 220),
        QColor(90, 175, 255),
        QColor(255, 110, 85),
        {QColor(240, 150, 40), QColor(70, 195, 95), QColor(230, 110, 185)},
        loadColours(DARK_LIFT)};
    return colours;
}

QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto part = [share](int a, int b) { return static_cast<int>(a + share * (b - a) + 0.5); };
    return {part(from.red(), to.red()), part(from.green(), to.green()),
            part(from.blue(), to.blue())};
}
