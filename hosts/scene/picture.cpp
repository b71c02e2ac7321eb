#include "picture.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "area_outline.h"
#include "canvas.h"
#include "energy_scale.h"
#include "file_ending.h"
#include "input_error.h"
#include "load_arrows.h"

namespace {

constexpr int MAX_PICTURE_SIDE = 8192;
constexpr double COMFORTABLE_SIDE = 900;
constexpr double ANIMATION_SIDE = 600;

// Pixels. Around the plate there is a margin for arrows and supports, and rulers beyond it at the
// left and below; above and below that there is text.
constexpr int MARGIN = 50;
constexpr int RULER_WIDTH = 32;
constexpr int RULER_HEIGHT = 22;
constexpr int HEADER = 52;
constexpr int LEGEND = 84;
constexpr int KEY_ROW = 17;
constexpr int MIN_WIDTH = 560;

constexpr int CASES_IN_ROW = 4;

constexpr double TICK = 4;
constexpr double WIDEST_NUMBER = 40;
constexpr double TALLEST_NUMBER = 24;

constexpr Colour VOID_COLOUR = {0.955, 0.955, 0.945};
constexpr Colour SOLID_GREY = {0.2, 0.2, 0.22};
constexpr Colour INK = {0.13, 0.13, 0.15};
constexpr Colour FAINT_INK = {0.42, 0.42, 0.45};
constexpr Colour SUPPORT_COLOUR = {0.25, 0.35, 0.4};
constexpr Colour BLOB_COLOUR = {0.35, 0.65, 0.92};
constexpr double BLOB_SHARE = 0.55;
// A light and a dark one would each be lost on some of the material; these show on all of it.
constexpr std::array<Colour, 3> PASSIVE_COLOURS = {
    {{0.9, 0.5, 0.05}, {0.15, 0.65, 0.25}, {0.8, 0.25, 0.6}}};
constexpr Colour FLOATING_COLOUR = {0.9, 0.1, 0.75};
constexpr double OUTLINE_THICKNESS = 2;

constexpr double SUPPORT_SIZE = 11;
constexpr double SUPPORT_SPACING = 18;

/// Nodes that get a number: round ones that stay `room` pixels apart, and the last.
std::vector<int> rulerNodes(int last, double scale, double room) {
    int step = 1;
    for (int power = 1; step * scale < room; power *= 10)
        for (const int digit : {1, 2, 5})
            if (step * scale < room) step = digit * power;
    std::vector<int> nodes;
    for (int node = 0; node < last && (last - node) * scale >= room; node += step)
        nodes.push_back(node);
    if (nodes.empty() && last * scale >= room / 2) nodes.push_back(0);
    nodes.push_back(last);
    return nodes;
}

class PictureDrawing {
public:
    PictureDrawing(const Scene& drawnScene, const PictureContent& drawn, double pixelsPerElement,
                   Canvas::Kind kind)
        : scene(drawnScene),
          content(drawn),
          scale(pixelsPerElement),
          layout(pictureLayout(scene, scale)),
          width(layout.width),
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
        drawFloating();
        for (const Support& support : scene.supports) drawSupport(support);
        drawLoads();
        drawRulers();
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

    void drawOutline(const Area& area, double size, const Colour& colour) {
        const int columns = static_cast<int>(std::lround(scene.width / size));
        const int rows = static_cast<int>(std::lround(scene.height / size));
        std::vector<std::array<Point, 2>> lines;
        for (const auto& [from, to] : outlineOf(area, columns, rows))
            lines.push_back(
                {position(size * from.x, size * from.y), position(size * to.x, size * to.y)});
        canvas.lines(lines, colour, OUTLINE_THICKNESS);
    }

    void drawPassive(const Area& area, const Colour& colour) { drawOutline(area, 1, colour); }

    void drawFloating() {
        for (const FloatingPart& part : content.floating) {
            Area area{part.cells, {}};
            std::sort(area.cells.begin(), area.cells.end());
            drawOutline(area, 1.0 / part.refinement, FLOATING_COLOUR);
        }
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
        for (const Point node : spacedPlaces(support.x, support.y, plate, scale, SUPPORT_SPACING))
            supportSymbol(node, out, !(support.fixX && support.fixY));
    }

    void arrow(Point tail, Point direction, double length, const Colour& colour) {
        const Point across = {-direction.y, direction.x};
        const Point tip = tail + length * direction;
        const Point neck = tip + -11 * direction;
        canvas.polygon({tail + 1.5 * across, neck + 1.5 * across, neck + 5.5 * across, tip,
                        neck + -5.5 * across, neck + -1.5 * across, tail + -1.5 * across},
                       colour);
    }

    void drawLoads() {
        const bool numbered = scene.loadCases > LOAD_CASE_COLOURS;
        for (const LoadArrow& load : loadArrows(scene, plate, scale)) {
            const Colour& colour = loadCaseColour(load.loadCase);
            arrow(load.tail, load.direction, load.length, colour);
            if (!numbered) continue;
            const Point badge = load.tail + 4 * load.direction;
            canvas.disc(badge, 6.5, VOID_COLOUR);
            canvas.text(std::to_string(load.loadCase), badge + Point{0, 3.5}, 10, INK, 0.5);
        }
    }

    /// Node numbers along two sides of the plate, beyond its arrows and supports.
    void drawRulers() {
        const Point corner = position(0, scene.height) + Point{-MARGIN, MARGIN};
        canvas.line({plate.x, corner.y}, {position(scene.width, 0).x, corner.y}, FAINT_INK, 1);
        for (const int node : rulerNodes(scene.width, scale, WIDEST_NUMBER)) {
            const Point foot = {position(node, 0).x, corner.y};
            canvas.line(foot, foot + Point{0, TICK}, FAINT_INK, 1);
            canvas.text(std::to_string(node), foot + Point{0, 15}, 10, FAINT_INK, 0.5);
        }
        canvas.line({corner.x, plate.y}, {corner.x, position(0, scene.height).y}, FAINT_INK, 1);
        for (const int node : rulerNodes(scene.height, scale, TALLEST_NUMBER)) {
            const Point foot = {corner.x, position(0, node).y};
            canvas.line(foot, foot + Point{-TICK, 0}, FAINT_INK, 1);
            canvas.text(std::to_string(node), foot + Point{-7, 4}, 10, FAINT_INK, 1);
        }
        canvas.text("x", {position(scene.width, 0).x + 18, corner.y + 4}, 11, FAINT_INK, 0.5);
        canvas.text("y", {corner.x, position(0, scene.height).y + 16}, 11, FAINT_INK, 0.5);
    }

    void drawLegend() {
        const Point corner = {LEFT, layout.legendY + 18.0};
        energyScale ? drawEnergyBar(corner) : drawDensityBar(corner);
        drawSymbolKey({width - 238.0, corner.y});
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
        const double x = corner.x;
        const bool hasAreas =
            !scene.passive.empty() || !scene.blob.empty() || !content.floating.empty();
        const double y = corner.y + (hasAreas ? 3 : 15);
        supportSymbol({x + 7, y - 8}, {0, 1}, false);
        canvas.text("held", {x + 20, y + 4}, 12, INK);
        supportSymbol({x + 65, y - 8}, {0, 1}, true);
        canvas.text("held in one direction", {x + 78, y + 4}, 12, INK);
        drawLoadKey({corner.x, y + 27});
        drawAreaKey({corner.x, y + 43 + (layout.height - layout.legendY - LEGEND)});
    }

    /// Two rows when one is too short.
    void drawLoadKey(Point corner) {
        const int cases = std::min(scene.loadCases, LOAD_CASE_COLOURS);
        const std::string caption = scene.loadCases > 1 ? "load case" : "load";
        Point at = corner;
        for (int loadCase = 0; loadCase < cases; ++loadCase) {
            if (loadCase == CASES_IN_ROW) at = corner + Point{0, KEY_ROW};
            arrow(at, {1, 0}, 22, loadCaseColour(loadCase));
            const std::string number = scene.loadCases > 1 ? std::to_string(loadCase) : "";
            const std::string label = loadCase == 0 ? caption + " " + number : number;
            canvas.text(label, at + Point{27, 4}, 12, INK);
            at.x += 27 + canvas.textWidth(label, 12) + 5;
        }
        if (scene.loadCases > cases) canvas.text("... numbered", at + Point{0, 4}, 12, INK);
    }

    struct KeyEntry {
        bool present;
        const char* label;
        Colour colour;
        bool filled = false;
    };

    /// Further to the left than `corner` when it is long.
    void drawAreaKey(Point corner) {
        const std::vector<KeyEntry> entries = {
            {!scene.passive.voids.empty(), "kept void", PASSIVE_COLOURS[0]},
            {!scene.passive.solids.empty(), "solid", PASSIVE_COLOURS[1]},
            {!scene.passive.secondSolids.empty(), "solid 2", PASSIVE_COLOURS[2]},
            {!content.floating.empty(), "hangs on nothing", FLOATING_COLOUR},
            {!scene.blob.empty(), "blob", BLOB_COLOUR, true}};
        const auto widthOf = [&](const KeyEntry& entry) {
            return entry.present ? 17 + canvas.textWidth(entry.label, 12) + 10 : 0;
        };
        double total = 0;
        for (const KeyEntry& entry : entries) total += widthOf(entry);
        corner.x = std::min(corner.x, width - 10 - total);
        for (const KeyEntry& entry : entries) {
            if (entry.present) drawKeyEntry(entry, corner);
            corner.x += widthOf(entry);
        }
    }

    void drawKeyEntry(const KeyEntry& entry, Point corner) {
        const Colour inner =
            entry.filled ? mix(VOID_COLOUR, entry.colour, BLOB_SHARE) : VOID_COLOUR;
        canvas.cells(corner, 11, 11, 1, 1, [&](int, int) { return inner; });
        canvas.frame(corner, 11, 11, entry.filled ? FAINT_INK : entry.colour);
        canvas.text(entry.label, corner + Point{17, 10}, 12, INK);
    }

    static constexpr double LEFT = 20;
    static constexpr double BAR_WIDTH = 290;
    static constexpr double BAR_HEIGHT = 13;

    const Scene& scene;
    const PictureContent& content;
    double scale;
    PictureLayout layout;
    int width;
    Point plate;
    Canvas canvas;
    Field blob;  // 1 in the blob
    std::optional<EnergyScale> energyScale;
};

int legendHeight(const Scene& scene) {
    return LEGEND + (scene.loadCases > CASES_IN_ROW ? KEY_ROW : 0);
}

double fittingScale(const Scene& scene, double sideways, double upright) {
    const double across = (sideways - 2 * MARGIN - RULER_WIDTH) / scene.width;
    const double down =
        (upright - 2 * MARGIN - RULER_HEIGHT - HEADER - legendHeight(scene)) / scene.height;
    return std::min({across, down, double(MAX_PICTURE_SCALE)});
}

int largestScale(const Scene& scene, double sideways, double upright) {
    return std::max(MIN_PICTURE_SCALE, int(fittingScale(scene, sideways, upright)));
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

double animationScale(const Scene& scene) {
    const double scale = fittingScale(scene, ANIMATION_SIDE, 1.2 * ANIMATION_SIDE);
    return scale < 1 ? scale : std::floor(scale);
}

PictureLayout pictureLayout(const Scene& scene, double scale) {
    PictureLayout layout;
    const int plateWidth = int(std::ceil(scale * scene.width));
    layout.width = std::max(RULER_WIDTH + plateWidth + 2 * MARGIN, MIN_WIDTH);
    layout.plateX = (layout.width + RULER_WIDTH - plateWidth) / 2;
    layout.plateY = HEADER + MARGIN;
    layout.legendY = layout.plateY + int(std::ceil(scale * scene.height)) + MARGIN + RULER_HEIGHT;
    layout.height = layout.legendY + legendHeight(scene);
    return layout;
}

RgbImage drawPicture(const Scene& scene, const PictureContent& content, double scale) {
    return PictureDrawing(scene, content, scale, Canvas::Kind::PIXELS).draw().image();
}

std::vector<std::uint8_t> encodePicture(const std::filesystem::path& file, const Scene& scene,
                                        const PictureContent& content, int scale) {
    if (fileEnding(file) == ".svg")
        return PictureDrawing(scene, content, scale, Canvas::Kind::SVG).draw().svg();
    return encodePng(drawPicture(scene, content, scale));
}
