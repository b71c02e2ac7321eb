#include "picture.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "canvas.h"
#include "energy_scale.h"
#include "file_ending.h"
#include "input_error.h"

namespace {

constexpr int MAX_PICTURE_SIDE = 8192;
constexpr double COMFORTABLE_SIDE = 900;
constexpr double ANIMATION_SIDE = 600;

// Pixels around the plate, for arrows and supports, and above and below that for text.
constexpr int PICTURE_MARGIN = 50;
constexpr int PICTURE_HEADER = 52;
constexpr int PICTURE_LEGEND = 84;
constexpr int MIN_PICTURE_WIDTH = 560;

constexpr Colour VOID_COLOUR = {0.955, 0.955, 0.945};
constexpr Colour SOLID_GREY = {0.2, 0.2, 0.22};
constexpr Colour INK = {0.13, 0.13, 0.15};
constexpr Colour FAINT_INK = {0.42, 0.42, 0.45};
constexpr Colour SUPPORT_COLOUR = {0.25, 0.35, 0.4};
// Cool colours, to stand out from the energies; further load cases start again.
constexpr std::array<Colour, 4> LOAD_COLOURS = {
    {{0.05, 0.35, 0.75}, {0.0, 0.55, 0.45}, {0.45, 0.2, 0.7}, {0.0, 0.55, 0.75}}};

constexpr Colour BLOB_COLOUR = {0.35, 0.65, 0.92};
constexpr double BLOB_SHARE = 0.55;
// A light and a dark one would each be lost on some of the material; these show on all of it.
constexpr std::array<Colour, 3> PASSIVE_COLOURS = {
    {{0.9, 0.5, 0.05}, {0.15, 0.65, 0.25}, {0.8, 0.25, 0.6}}};
constexpr double OUTLINE_THICKNESS = 2;

constexpr double LONGEST_ARROW = 44;
constexpr double LONGEST_ARROW_OF_ROW = 32;
constexpr double SHORTEST_ARROW = 20;
constexpr double ARROW_SPACING = 20;
constexpr double SUPPORT_SIZE = 11;
constexpr double SUPPORT_SPACING = 18;

const Colour& loadColour(int loadCase) {
    return LOAD_COLOURS[static_cast<std::size_t>(loadCase) % LOAD_COLOURS.size()];
}

class PictureDrawing {
public:
    PictureDrawing(const Scene& drawnScene, const PictureContent& drawn, int pixelsPerElement,
                   Canvas::Kind kind)
        : scene(drawnScene),
          content(drawn),
          scale(pixelsPerElement),
          layout(pictureLayout(scene, scale)),
          width(layout.width),
          height(layout.height),
          plate{double(layout.plateX), double(layout.plateY)},
          canvas(layout.width, layout.height, kind),
          blob(scene.width, scene.height) {
        if (content.energies) energyScale.emplace(*content.energies, content.material);
        for (const Cell& cell : scene.blob.cells) blob.at(cell.x, cell.y) = 1;
    }

    Canvas& draw() {
        drawHeader();
        drawPlate();
        drawPassive(scene.passive.voids, PASSIVE_COLOURS[0]);
        drawPassive(scene.passive.solids, PASSIVE_COLOURS[1]);
        drawPassive(scene.passive.secondSolids, PASSIVE_COLOURS[2]);
        for (const Support& support : scene.supports) drawSupport(support);
        for (const Load& load : scene.loads) drawLoad(load);
        drawLegend();
        return canvas;
    }

private:
    void drawHeader() {
        const double room = width - 2.0 * LEFT;
        canvas.fittedText(content.title, {LEFT, 30}, 19, room, INK);
        canvas.fittedText(content.subtitle, {LEFT, 52}, 14, room, FAINT_INK);
    }

    Colour colourOfCell(int x, int y) const {
        const double density = std::clamp(content.material.at(x, y), 0.0f, 1.0f);
        const Colour colour =
            mix(VOID_COLOUR, energyScale ? energyColour(x, y) : SOLID_GREY, density);
        const bool inBlob = blob.at(x * blob.width / content.material.width,
                                    y * blob.height / content.material.height) > 0;
        return inBlob ? mix(colour, BLOB_COLOUR, BLOB_SHARE) : colour;
    }

    Colour energyColour(int x, int y) const {
        const double energy = content.energies->at(x, y);
        const double average = energyScale->average();
        return EnergyScale::colour(average > 0 ? energyScale->position(energy / average) : 0);
    }

    void drawPlate() {
        const double plateWidth = scale * scene.width;
        const double plateHeight = scale * scene.height;
        canvas.cells(plate, plateWidth, plateHeight, content.material.width,
                     content.material.height, [this](int x, int y) { return colourOfCell(x, y); });
        canvas.frame(plate, plateWidth, plateHeight, FAINT_INK);
    }

    Point position(double x, double y) const { return plate + scale * Point{x, y}; }

    bool onPlate(Point p) const {
        const Point far = position(scene.width, scene.height);
        return p.x >= plate.x && p.x <= far.x && p.y >= plate.y && p.y <= far.y;
    }

    /// Lines where an element of the list borders on one that is not in it, or on nothing.
    void drawPassive(const Area& area, const Colour& colour) {
        if (area.empty()) return;
        Field inside(scene.width + 2, scene.height + 2);
        for (const Cell& cell : area.cells) inside.at(cell.x + 1, cell.y + 1) = 1;
        std::vector<std::array<Point, 2>> border;
        for (const auto& [x, y] : area.cells) {
            if (inside.at(x, y + 1) == 0) border.push_back({position(x, y), position(x, y + 1)});
            if (inside.at(x + 2, y + 1) == 0)
                border.push_back({position(x + 1, y), position(x + 1, y + 1)});
            if (inside.at(x + 1, y) == 0) border.push_back({position(x, y), position(x + 1, y)});
            if (inside.at(x + 1, y + 2) == 0)
                border.push_back({position(x, y + 1), position(x + 1, y + 1)});
        }
        canvas.lines(border, colour, OUTLINE_THICKNESS);
    }

    /// Places on the nodes of a rectangle for a symbol each: its corners and, evenly between them,
    /// as many as stay `spacing` pixels apart.
    template <typename Visit>
    void forSpacedPlaces(const Range& columns, const Range& rows, double spacing,
                         Visit visit) const {
        const auto intervals = [&](const Range& range) {
            const int all = range.to - range.from;
            return std::min(all, std::max(1, int(all * scale / spacing)));
        };
        const auto place = [](const Range& range, int step, int of) {
            return range.from + double(range.to - range.from) * step / std::max(1, of);
        };
        const int across = intervals(columns);
        const int down = intervals(rows);
        for (int i = 0; i <= across; ++i)
            for (int j = 0; j <= down; ++j)
                visit(position(place(columns, i, across), place(rows, j, down)));
    }

    /// Unit vector from the plate to the side on which the symbol of a support stands.
    Point outward(const Support& support) const {
        const double x = 0.5 * (support.x.from + support.x.to);
        const double y = 0.5 * (support.y.from + support.y.to);
        const Point sideways = {x <= 0.5 * scene.width ? -1.0 : 1.0, 0};
        const Point upright = {0, y < 0.5 * scene.height ? -1.0 : 1.0};
        if (!support.fixY) return sideways;
        if (!support.fixX) return upright;
        if (support.x.count() != support.y.count())
            return support.x.count() < support.y.count() ? sideways : upright;
        const double toSide = std::min(x, scene.width - x);
        const double toTopOrBottom = std::min(y, scene.height - y);
        return toSide < toTopOrBottom ? sideways : upright;
    }

    /// A triangle for a pin, a triangle on a roller where one direction stays free.
    void supportSymbol(Point tip, Point out, bool roller) {
        const Point across = {-out.y, out.x};
        const double size = roller ? 0.75 * SUPPORT_SIZE : SUPPORT_SIZE;
        const Point base = tip + size * out;
        canvas.polygon({tip, base + 0.6 * size * across, base + -0.6 * size * across},
                       SUPPORT_COLOUR);
        if (roller)
            canvas.disc(base + 0.22 * SUPPORT_SIZE * out, 0.22 * SUPPORT_SIZE, SUPPORT_COLOUR);
        const Point ground = tip + (1.25 * SUPPORT_SIZE) * out;
        canvas.line(ground + 0.8 * SUPPORT_SIZE * across, ground + -0.8 * SUPPORT_SIZE * across,
                    SUPPORT_COLOUR, 1.5);
    }

    void drawSupport(const Support& support) {
        const Point out = outward(support);
        forSpacedPlaces(support.x, support.y, SUPPORT_SPACING, [&](Point node) {
            supportSymbol(node, out, !(support.fixX && support.fixY));
        });
    }

    void arrow(Point tail, Point direction, double length, const Colour& colour) {
        const Point across = {-direction.y, direction.x};
        const Point tip = tail + length * direction;
        const Point neck = tip + -11 * direction;
        canvas.polygon({tail + 1.5 * across, neck + 1.5 * across, neck + 5.5 * across, tip,
                        neck + -5.5 * across, neck + -1.5 * across, tail + -1.5 * across},
                       colour);
    }

    double largestForce() const {
        double largest = 0;
        for (const Load& load : scene.loads)
            largest = std::max(largest, std::hypot(load.fx, load.fy));
        return largest;
    }

    /// An arrow ends at its node, or begins there where it points off the plate.
    void drawLoad(const Load& load) {
        const double force = std::hypot(load.fx, load.fy);
        if (force == 0) return;
        const Point direction = (1 / force) * Point{load.fx, load.fy};
        const bool single = load.x.count() == 1 && load.y.count() == 1;
        const double room = (single ? LONGEST_ARROW : LONGEST_ARROW_OF_ROW) - SHORTEST_ARROW;
        const double length = SHORTEST_ARROW + room * force / largestForce();
        forSpacedPlaces(load.x, load.y, ARROW_SPACING, [&](Point node) {
            const bool pointsOff = !onPlate(node + direction);
            arrow(pointsOff ? node : node + -length * direction, direction, length,
                  loadColour(load.loadCase));
        });
    }

    void drawLegend() {
        const Point corner = {LEFT, height - PICTURE_LEGEND + 18.0};
        energyScale ? drawEnergyBar(corner) : drawDensityBar(corner);
        drawSymbolKey({width - 220.0, corner.y});
    }

    void drawBar(Point corner, const std::string& caption, Colour (*colourAt)(double)) {
        canvas.text(caption, corner, 12, INK);
        const Point bar = corner + Point{0, 9};
        canvas.cells(bar, BAR_WIDTH, BAR_HEIGHT, int(BAR_WIDTH), 1,
                     [&](int x, int) { return colourAt(x / (BAR_WIDTH - 1)); });
        canvas.frame(bar, BAR_WIDTH, BAR_HEIGHT, FAINT_INK);
    }

    void tick(Point corner, double position, const std::string& label) {
        const Point foot = corner + Point{position * BAR_WIDTH, 9 + BAR_HEIGHT};
        canvas.line(foot, foot + Point{0, 4}, FAINT_INK, 1);
        canvas.text(label, foot + Point{0, 16}, 11, INK, 0.5);
    }

    static std::string shortNumber(double value) {
        char text[32];
        std::snprintf(text, sizeof text, "%g", value);
        return text;
    }

    void drawEnergyBar(Point corner) {
        drawBar(corner, "Energy of an element as a multiple of the average", EnergyScale::colour);
        const double span = std::log10(energyScale->upper() / energyScale->lower());
        for (int decade = -12; decade <= 12; ++decade)
            for (const int digit : {1, 2, 5}) {
                // Between the decades only where there is room for the numbers.
                if (digit != 1 && span > 2.6) continue;
                const double multiple = digit * std::pow(10.0, decade);
                if (multiple >= energyScale->lower() && multiple <= energyScale->upper())
                    tick(corner, energyScale->position(multiple), shortNumber(multiple));
            }
    }

    void drawDensityBar(Point corner) {
        drawBar(corner, "Density",
                [](double density) { return mix(VOID_COLOUR, SOLID_GREY, density); });
        for (const double density : {0.0, 0.5, 1.0}) tick(corner, density, shortNumber(density));
    }

    void drawSymbolKey(Point corner) {
        double x = corner.x;
        const bool hasAreas = !scene.passive.empty() || !scene.blob.empty();
        const double y = corner.y + (hasAreas ? 3 : 15);
        supportSymbol({x + 7, y - 8}, {0, 1}, false);
        canvas.text("held", {x + 20, y + 4}, 12, INK);
        supportSymbol({x + 65, y - 8}, {0, 1}, true);
        canvas.text("held in one direction", {x + 78, y + 4}, 12, INK);
        const int cases = std::min<int>(scene.loadCases, LOAD_COLOURS.size());
        const std::string caption = scene.loadCases > 1 ? "load case" : "load";
        for (int loadCase = 0; loadCase < cases; ++loadCase) {
            arrow({x, y + 27}, {1, 0}, 22, loadColour(loadCase));
            const std::string number = scene.loadCases > 1 ? std::to_string(loadCase) : "";
            const std::string label = loadCase == 0 ? caption + " " + number : number;
            canvas.text(label, {x + 27, y + 31}, 12, INK);
            x += 27 + canvas.textWidth(label, 12) + 5;
        }
        drawAreaKey({corner.x, y + 43});
    }

    void drawAreaKey(Point corner) {
        const auto entry = [&](bool present, const char* label, const Colour& colour, bool filled) {
            if (!present) return;
            const Colour inner = filled ? mix(VOID_COLOUR, colour, BLOB_SHARE) : VOID_COLOUR;
            canvas.cells(corner, 11, 11, 1, 1, [&](int, int) { return inner; });
            canvas.frame(corner, 11, 11, filled ? FAINT_INK : colour);
            canvas.text(label, corner + Point{17, 10}, 12, INK);
            corner.x += 17 + canvas.textWidth(label, 12) + 10;
        };
        entry(!scene.passive.voids.empty(), "kept void", PASSIVE_COLOURS[0], false);
        entry(!scene.passive.solids.empty(), "solid", PASSIVE_COLOURS[1], false);
        entry(!scene.passive.secondSolids.empty(), "solid 2", PASSIVE_COLOURS[2], false);
        entry(!scene.blob.empty(), "blob", BLOB_COLOUR, true);
    }

    static constexpr double LEFT = 20;
    static constexpr double BAR_WIDTH = 290;
    static constexpr double BAR_HEIGHT = 13;

    const Scene& scene;
    const PictureContent& content;
    int scale;
    PictureLayout layout;
    int width;
    int height;
    Point plate;
    Canvas canvas;
    Field blob;  // 1 in the blob
    std::optional<EnergyScale> energyScale;
};

int largestScale(const Scene& scene, double sideways, double upright) {
    const double across = (sideways - 2 * PICTURE_MARGIN) / scene.width;
    const double down =
        (upright - 2 * PICTURE_MARGIN - PICTURE_HEADER - PICTURE_LEGEND) / scene.height;
    return std::clamp(int(std::min(across, down)), MIN_PICTURE_SCALE, MAX_PICTURE_SCALE);
}

}  // namespace

int defaultPictureScale(const Scene& scene) {
    return largestScale(scene, COMFORTABLE_SIDE, 1.2 * COMFORTABLE_SIDE);
}

int refinedPictureScale(const Scene& scene, int refinement) {
    const int plain = defaultPictureScale(scene);
    const int refined = std::max(1, (plain + refinement / 2) / refinement) * refinement;
    return refined <= largestScale(scene, MAX_PICTURE_SIDE, MAX_PICTURE_SIDE) ? refined : plain;
}

void checkPictureScale(const Scene& scene, int scale) {
    const int largest = largestScale(scene, MAX_PICTURE_SIDE, MAX_PICTURE_SIDE);
    if (scale > largest)
        throw InputError("--scale: " + std::to_string(scale) + " is outside 1.." +
                         std::to_string(largest) + " for a grid of " + std::to_string(scene.width) +
                         " x " + std::to_string(scene.height) + " elements");
}

int animationScale(const Scene& scene) {
    return largestScale(scene, ANIMATION_SIDE, 1.2 * ANIMATION_SIDE);
}

PictureLayout pictureLayout(const Scene& scene, int scale) {
    PictureLayout layout;
    layout.width = std::max(scale * scene.width + 2 * PICTURE_MARGIN, MIN_PICTURE_WIDTH);
    layout.height = PICTURE_HEADER + scale * scene.height + 2 * PICTURE_MARGIN + PICTURE_LEGEND;
    layout.plateX = (layout.width - scale * scene.width) / 2;
    layout.plateY = PICTURE_HEADER + PICTURE_MARGIN;
    return layout;
}

RgbImage drawPicture(const Scene& scene, const PictureContent& content, int scale) {
    return PictureDrawing(scene, content, scale, Canvas::Kind::PIXELS).draw().image();
}

std::vector<std::uint8_t> encodePicture(const std::filesystem::path& file, const Scene& scene,
                                        const PictureContent& content, int scale) {
    if (fileEnding(file) == ".svg")
        return PictureDrawing(scene, content, scale, Canvas::Kind::SVG).draw().svg();
    return encodePng(drawPicture(scene, content, scale));
}
