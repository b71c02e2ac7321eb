#pragma once

#include <cairo.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "drawing/colour.h"
#include "drawing/point.h"
#include "drawing/rgb_image.h"

namespace voxam::inline drawing {

/// A white sheet of pixels, or of shapes for an SVG file, with the drawing operations of a picture.
/// Points are the corners between pixels. image() and svg() report failures of all operations.
class Canvas {
public:
    enum class Kind { PIXELS, SVG };

    Canvas(int width, int height, Kind kind);
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// A rectangle's outline, one pixel wide, just outside it.
    void frame(Point corner, double width, double height, const Colour& colour);
    void line(Point from, Point to, const Colour& colour, double thickness);
    /// Separate lines of one colour.
    void lines(const std::vector<std::array<Point, 2>>& ends, const Colour& colour,
               double thickness);

    /// Filled shapes with a white rim that separates them from the background.
    void polygon(const std::vector<Point>& corners, const Colour& colour);
    void disc(Point centre, double radius, const Colour& colour);

    /// Filled shapes of one colour, whose common edges show no seams.
    void quads(const std::vector<std::array<Point, 4>>& shapes, const Colour& colour);

    double textWidth(const std::string& text, double size);
    /// `at` is on the base line: its left end for an `align` of 0, its middle for 0.5, its right
    /// end for 1.
    void text(const std::string& text, Point at, double size, const Colour& colour,
              double align = 0);
    /// Text that is made smaller if it would be wider than `room`.
    void fittedText(const std::string& text, Point at, double size, double room,
                    const Colour& colour);

    /// A rectangle filled with columns * rows cells that have sharp edges.
    void cells(Point corner, double width, double height, int columns, int rows,
               const std::function<Colour(int x, int y)>& colourOf);

    /// The sheet of pixels. Throws std::runtime_error if something could not be drawn.
    RgbImage image();

    /// The bytes of the SVG file; ends the drawing. Throws std::runtime_error like image().
    std::vector<std::uint8_t> svg();

private:
    using Surface = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;

    static Surface newSurface(int width, int height, Kind kind, std::vector<std::uint8_t>& bytes);
    void check();
    void use(const Colour& colour);
    void strokePath(const Colour& colour, double thickness);
    void fillWithRim(const Colour& colour);

    std::vector<std::uint8_t> svgBytes;
    bool hasFineCells = false;  // smaller than a pixel
    Surface surface;
    std::unique_ptr<cairo_t, void (*)(cairo_t*)> context;
};

}  // namespace voxam::inline drawing
