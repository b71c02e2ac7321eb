#include "drawing/picture.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "drawing/area_outline.h"
#include "drawing/canvas.h"
#include "drawing/deformed_cells.h"
#include "drawing/energy_scale.h"
#include "drawing/load_arrows.h"
#include "drawing/picture_colours.h"
#include "drawing/plate_signs.h"
#include "format/input_error.h"
#include "format/refinement.h"

namespace voxam::inline drawing {

namespace {

namespace colours = picture_colours;

constexpr int MAX_PICTURE_SIDE = 8192;
constexpr double COMFORTABLE_SIDE = 900;
constexpr double ANIMATION_SIDE = 600;

// Pixels. Above the plate with its signs and rulers, and below it, there is text.
constexpr int HEADER = 52;
constexpr int LEGEND = 84;
constexpr int KEY_ROW = 17;
constexpr int MIN_WIDTH = 560;

constexpr int CASES_IN_ROW = 4;

bool hasNamedCases(const Scene& scene) {
    return std::any_of(scene.loadCases.begin(), scene.loadCases.end(),
                       [](const LoadCase& each) { return !each.name.empty(); });
}

/// Load cases in the key.
int casesInKey(const Scene& scene) { return std::min(scene.loadCaseCount(), LOAD_CASE_COLOURS); }

/// Names have a row each. Numbers have two rows if one is too short.
int rowsOfLoadKey(const Scene& scene) {
    const int count = scene.loadCaseCount();
    if (hasNamedCases(scene)) return casesInKey(scene) + (count > LOAD_CASE_COLOURS ? 1 : 0);
    return count > CASES_IN_ROW ? 2 : 1;
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
        mark(blob, scene.blob.cells);
    }

    Canvas& draw() {
        drawHeader();
        drawPlate();
        drawPassive(scene.passive.voids, colours::PASSIVE[0]);
        drawPassive(scene.passive.solids, colours::PASSIVE[1]);
        drawPassive(scene.passive.secondSolids, colours::PASSIVE[2]);
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
        canvas.fittedText(content.title, {LEFT, 30}, 19, room, colours::INK);
        canvas.fittedText(content.subtitle, {LEFT, 52}, 14, room, colours::FAINT_INK);
    }

    Colour colourOfCell(int x, int y) const {
        const double density = std::clamp(content.material.at(x, y), 0.0f, 1.0f);
        const Colour colour = mix(colours::VOID_PLATE,
                                  energyScale ? energyColour(x, y) : colours::SOLID_GREY, density);
        const bool inBlob = blob.at(x * blob.width / content.material.width,
                                    y * blob.height / content.material.height) > 0;
        return inBlob ? mix(colour, colours::BLOB, colours::BLOB_SHARE) : colour;
    }

    Colour energyColour(int x, int y) const {
        const double energy = content.energies->at(x, y);
        const double average = energyScale->average();
        return EnergyScale::colour(average > 0 ? energyScale->position(energy / average) : 0);
    }

    void drawPlate() {
        const double plateWidth = scale * scene.width;
        const double plateHeight = scale * scene.height;
        const double shade = content.deformation ? colours::GHOST_SHARE : 1;
        canvas.cells(
            plate, plateWidth, plateHeight, content.material.width, content.material.height,
            [&](int x, int y) { return mix(colours::VOID_PLATE, colourOfCell(x, y), shade); });
        canvas.frame(plate, plateWidth, plateHeight, colours::FAINT_INK);
        if (content.deformation) drawDeformed(*content.deformation);
    }

    void drawDeformed(const Deformation& deformation) {
        for (const auto& [density, quads] :
             deformedCells(content.material, deformation, scene, plate, scale))
            canvas.quads(quads, mix(colours::VOID_PLATE, colours::SOLID_GREY, density));
    }

    Point position(double x, double y) const { return plate + scale * Point{x, y}; }

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
            drawOutline(area, 1.0 / part.refinement, colours::FLOATING);
        }
    }

    void supportSymbol(const SupportSign& sign) {
        canvas.polygon(sign.triangle, colours::SUPPORT);
        if (sign.rollerRadius > 0)
            canvas.disc(sign.rollerCentre, sign.rollerRadius, colours::SUPPORT);
        canvas.line(sign.ground[0], sign.ground[1], colours::SUPPORT, SUPPORT_GROUND_THICKNESS);
    }

    void drawSupport(const Support& support) {
        for (const SupportSign& sign : supportSigns(support, scene, plate, scale))
            supportSymbol(sign);
    }

    void drawLoads() {
        const bool numbered = scene.loadCaseCount() > LOAD_CASE_COLOURS;
        Scene shown = withLoadsInUse(scene);
        const ForceScale forces(shown);
        if (content.loadCases) shown.loadCasesInUse = *content.loadCases;
        for (const LoadArrow& load :
             loadArrows(withLoadsInUse(std::move(shown)), plate, scale, forces)) {
            canvas.polygon(arrowShape(load), loadCaseColour(load.loadCase));
            if (!numbered) continue;
            const Point badge = load.tail + 4 * load.direction;
            canvas.disc(badge, 6.5, colours::VOID_PLATE);
            canvas.text(std::to_string(load.loadCase), badge + Point{0, 3.5}, 10, colours::INK,
                        0.5);
        }
    }

    /// Node numbers along two sides of the plate, beyond its arrows and supports.
    void drawRulers() {
        const Point corner = position(0, scene.height) + Point{-SIGN_MARGIN, SIGN_MARGIN};
        for (const Ruler& ruler : rulers(scene, plate, scale, corner)) {
            for (const auto& [from, to] : ruler.lines) canvas.line(from, to, colours::FAINT_INK, 1);
            for (const Ruler::Label& number : ruler.numbers)
                canvas.text(number.text, number.at, 10, colours::FAINT_INK, number.align);
            canvas.text(ruler.axis.text, ruler.axis.at, 11, colours::FAINT_INK, ruler.axis.align);
        }
    }

    void drawLegend() {
        const Point corner = {LEFT, layout.legendY + 18.0};
        energyScale ? drawEnergyBar(corner) : drawDensityBar(corner);
        drawSymbolKey({width - 238.0, corner.y});
    }

    void drawBar(Point corner, const std::string& caption, Colour (*colourAt)(double)) {
        canvas.text(caption, corner, 12, colours::INK);
        const Point bar = corner + Point{0, 9};
        canvas.cells(bar, BAR_WIDTH, BAR_HEIGHT, int(BAR_WIDTH), 1,
                     [&](int x, int) { return colourAt(x / (BAR_WIDTH - 1)); });
        canvas.frame(bar, BAR_WIDTH, BAR_HEIGHT, colours::FAINT_INK);
    }

    void tick(Point corner, double position, const std::string& label) {
        const Point foot = corner + Point{position * BAR_WIDTH, 9 + BAR_HEIGHT};
        canvas.line(foot, foot + Point{0, 4}, colours::FAINT_INK, 1);
        canvas.text(label, foot + Point{0, 16}, 11, colours::INK, 0.5);
    }

    static std::string shortNumber(double value) {
        char text[32];
        std::snprintf(text, sizeof text, "%g", value);
        return text;
    }

    void drawEnergyBar(Point corner) {
        drawBar(corner, content.measure, EnergyScale::colour);
        const double average = energyScale->average();
        const double unit = content.isAbsolute && average > 0 ? 1 / average : 1;
        for (const double value : energyScale->ticks(unit))
            tick(corner, energyScale->position(value * unit), shortNumber(value));
    }

    void drawDensityBar(Point corner) {
        drawBar(corner, "Density", [](double density) {
            return mix(colours::VOID_PLATE, colours::SOLID_GREY, density);
        });
        for (const double density : {0.0, 0.5, 1.0}) tick(corner, density, shortNumber(density));
    }

    void drawSymbolKey(Point corner) {
        const double x = corner.x;
        const bool hasAreas =
            !scene.passive.empty() || !scene.blob.empty() || !content.floating.empty();
        const double y = corner.y + (hasAreas ? 3 : 15);
        supportSymbol(supportSign({x + 7, y - 8}, {0, 1}, false));
        canvas.text("held", {x + 20, y + 4}, 12, colours::INK);
        supportSymbol(supportSign({x + 65, y - 8}, {0, 1}, true));
        canvas.text("held in one direction", {x + 78, y + 4}, 12, colours::INK);
        drawLoadKey({corner.x, y + 27});
        drawAreaKey({corner.x, y + 43 + (layout.height - layout.legendY - LEGEND)});
    }

    void drawLoadKey(Point corner) {
        if (hasNamedCases(scene)) return drawNamedLoadKey(corner);
        const int cases = casesInKey(scene);
        const std::string caption = scene.loadCaseCount() > 1 ? "load case" : "load";
        Point at = corner;
        for (int loadCase = 0; loadCase < cases; ++loadCase) {
            if (loadCase == CASES_IN_ROW) at = corner + Point{0, KEY_ROW};
            canvas.polygon(arrowShape({at, {1, 0}, 22}), loadCaseColour(loadCase));
            const std::string number = scene.loadCaseCount() > 1 ? std::to_string(loadCase) : "";
            const std::string label = loadCase == 0 ? caption + " " + number : number;
            canvas.text(label, at + Point{27, 4}, 12, colours::INK);
            at.x += 27 + canvas.textWidth(label, 12) + 5;
        }
        if (scene.loadCaseCount() > cases)
            canvas.text("... numbered", at + Point{0, 4}, 12, colours::INK);
    }

    void drawNamedLoadKey(Point at) {
        for (int loadCase = 0; loadCase < casesInKey(scene); ++loadCase, at.y += KEY_ROW) {
            canvas.polygon(arrowShape({at, {1, 0}, 22}), loadCaseColour(loadCase));
            const Point place = at + Point{27, 4};
            canvas.fittedText(loadCaseLabel(scene, loadCase), place, 12, width - 10 - place.x,
                              colours::INK);
        }
        if (scene.loadCaseCount() > casesInKey(scene))
            canvas.text("... numbered", at + Point{0, 4}, 12, colours::INK);
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
            {!scene.passive.voids.empty(), "kept void", colours::PASSIVE[0]},
            {!scene.passive.solids.empty(), "solid", colours::PASSIVE[1]},
            {!scene.passive.secondSolids.empty(), "solid 2", colours::PASSIVE[2]},
            {!content.floating.empty(), "not held", colours::FLOATING},
            {!scene.blob.empty(), "blob", colours::BLOB, true}};
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
        const Colour inner = entry.filled
                                 ? mix(colours::VOID_PLATE, entry.colour, colours::BLOB_SHARE)
                                 : colours::VOID_PLATE;
        canvas.cells(corner, 11, 11, 1, 1, [&](int, int) { return inner; });
        canvas.frame(corner, 11, 11, entry.filled ? colours::FAINT_INK : entry.colour);
        canvas.text(entry.label, corner + Point{17, 10}, 12, colours::INK);
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
    Mask blob;
    std::optional<EnergyScale> energyScale;
};

int legendHeight(const Scene& scene) { return LEGEND + KEY_ROW * (rowsOfLoadKey(scene) - 1); }

double fittingScale(const Scene& scene, double sideways, double upright) {
    const double across = (sideways - 2 * SIGN_MARGIN - RULER_WIDTH) / scene.width;
    const double down =
        (upright - 2 * SIGN_MARGIN - RULER_HEIGHT - HEADER - legendHeight(scene)) / scene.height;
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
    layout.width = std::max(RULER_WIDTH + plateWidth + 2 * SIGN_MARGIN, MIN_WIDTH);
    layout.plateX = (layout.width + RULER_WIDTH - plateWidth) / 2;
    layout.plateY = HEADER + SIGN_MARGIN;
    layout.legendY =
        layout.plateY + int(std::ceil(scale * scene.height)) + SIGN_MARGIN + RULER_HEIGHT;
    layout.height = layout.legendY + legendHeight(scene);
    return layout;
}

RgbImage drawPicture(const Scene& scene, const PictureContent& content, double scale) {
    return PictureDrawing(scene, content, scale, Canvas::Kind::PIXELS).draw().image();
}

std::vector<std::uint8_t> drawPictureSvg(const Scene& scene, const PictureContent& content,
                                         double scale) {
    return PictureDrawing(scene, content, scale, Canvas::Kind::SVG).draw().svg();
}

}  // namespace voxam::inline drawing
