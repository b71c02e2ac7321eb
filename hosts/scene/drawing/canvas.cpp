#include "drawing/canvas.h"

#include <cairo-svg.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace voxam::inline drawing {

namespace {

constexpr Colour WHITE = {1, 1, 1};

// The surface keeps a pixel as one 32-bit number in the machine's byte order: unused, red, green,
// blue from the highest byte to the lowest.
unsigned char* pixelAddress(cairo_surface_t* surface, int x, int y) {
    return cairo_image_surface_get_data(surface) +
           static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface) +
           static_cast<std::ptrdiff_t>(x) * 4;
}

std::uint32_t pixelOf(const Colour& colour) {
    std::uint32_t pixel = 0;
    for (const double part : colour)
        pixel = pixel << 8 | static_cast<std::uint32_t>(std::lround(255 * part));
    return pixel;
}

}  // namespace

Canvas::Surface Canvas::newSurface(int width, int height, Kind kind,
                                   std::vector<std::uint8_t>& bytes) {
    if (kind == Kind::PIXELS)
        return {cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height),
                cairo_surface_destroy};
    const auto collect = [](void* target, const unsigned char* data, unsigned length) {
        auto& all = *static_cast<std::vector<std::uint8_t>*>(target);
        all.insert(all.end(), data, data + length);
        return CAIRO_STATUS_SUCCESS;
    };
    Surface svg(cairo_svg_surface_create_for_stream(collect, &bytes, width, height),
                cairo_surface_destroy);
    cairo_svg_surface_set_document_unit(svg.get(), CAIRO_SVG_UNIT_PX);
    return svg;
}

Canvas::Canvas(int width, int height, Kind kind)
    : surface(newSurface(width, height, kind, svgBytes)),
      context(cairo_create(surface.get()), cairo_destroy) {
    cairo_select_font_face(context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    // Hinted widths are whole pixels per letter, and would not shrink in proportion to the size.
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    use(WHITE);
    cairo_paint(context.get());
}

void Canvas::use(const Colour& colour) {
    cairo_set_source_rgb(context.get(), colour[0], colour[1], colour[2]);
}

void Canvas::strokePath(const Colour& colour, double thickness) {
    use(colour);
    cairo_set_line_width(context.get(), thickness);
    cairo_stroke(context.get());
}

void Canvas::fillWithRim(const Colour& colour) {
    use(WHITE);
    cairo_set_line_width(context.get(), 2.5);
    cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
    cairo_stroke_preserve(context.get());
    use(colour);
    cairo_fill(context.get());
}

void Canvas::frame(Point corner, double width, double height, const Colour& colour) {
    cairo_new_path(context.get());
    cairo_rectangle(context.get(), corner.x - 0.5, corner.y - 0.5, width + 1, height + 1);
    strokePath(colour, 1);
}

void Canvas::line(Point from, Point to, const Colour& colour, double thickness) {
    lines({{from, to}}, colour, thickness);
}

void Canvas::lines(const std::vector<std::array<Point, 2>>& ends, const Colour& colour,
                   double thickness) {
    cairo_new_path(context.get());
    for (const auto& [from, to] : ends) {
        cairo_move_to(context.get(), from.x, from.y);
        cairo_line_to(context.get(), to.x, to.y);
    }
    strokePath(colour, thickness);
}

void Canvas::polygon(const std::vector<Point>& corners, const Colour& colour) {
    cairo_new_path(context.get());
    for (const Point& corner : corners) cairo_line_to(context.get(), corner.x, corner.y);
    cairo_close_path(context.get());
    fillWithRim(colour);
}

void Canvas::disc(Point centre, double radius, const Colour& colour) {
    cairo_new_path(context.get());
    cairo_arc(context.get(), centre.x, centre.y, radius, 0, 2 * std::acos(-1.0));
    fillWithRim(colour);
}

void Canvas::quads(const std::vector<std::array<Point, 4>>& shapes, const Colour& colour) {
    cairo_t* const cr = context.get();
    cairo_save(cr);
    // Neighbours that are smoothed each on its own would let the ground shine through between them.
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    use(colour);
    for (const auto& corners : shapes) {
        cairo_new_path(cr);
        for (const Point& corner : corners) cairo_line_to(cr, corner.x, corner.y);
        cairo_close_path(cr);
        cairo_fill(cr);
    }
    cairo_restore(cr);
}

double Canvas::textWidth(const std::string& text, double size) {
    cairo_set_font_size(context.get(), size);
    cairo_text_extents_t extents;
    cairo_text_extents(context.get(), text.c_str(), &extents);
    return extents.x_advance;
}

void Canvas::text(const std::string& text, Point at, double size, const Colour& colour,
                  double align) {
    const double width = textWidth(text, size);
    use(colour);
    cairo_move_to(context.get(), at.x - align * width, at.y);
    cairo_show_text(context.get(), text.c_str());
}

void Canvas::fittedText(const std::string& text, Point at, double size, double room,
                        const Colour& colour) {
    const double width = textWidth(text, size);
    this->text(text, at, width > room ? size * room / width : size, colour);
}

void Canvas::cells(Point corner, double width, double height, int columns, int rows,
                   const std::function<Colour(int x, int y)>& colourOf) {
    const Surface raster(cairo_image_surface_create(CAIRO_FORMAT_RGB24, columns, rows),
                         cairo_surface_destroy);
    if (cairo_surface_status(raster.get()) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x) {
            const std::uint32_t pixel = pixelOf(colourOf(x, y));
            std::memcpy(pixelAddress(raster.get(), x, y), &pixel, sizeof pixel);
        }
    cairo_surface_mark_dirty(raster.get());

    cairo_t* cr = context.get();
    cairo_save(cr);
    cairo_translate(cr, corner.x, corner.y);
    cairo_rectangle(cr, 0, 0, width, height);
    cairo_scale(cr, width / columns, height / rows);
    cairo_set_source_surface(cr, raster.get(), 0, 0);
    hasFineCells = hasFineCells || columns > width;
    // Cells smaller than pixels are averaged.
    cairo_pattern_t* const pattern = cairo_get_source(cr);
    cairo_pattern_set_filter(pattern, columns > width ? CAIRO_FILTER_GOOD : CAIRO_FILTER_NEAREST);
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
    cairo_fill(cr);
    cairo_restore(cr);
}

void Canvas::check() {
    auto status = cairo_status(context.get());
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface.get());
    if (status != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error(std::string("drawing: ") + cairo_status_to_string(status));
}

std::vector<std::uint8_t> Canvas::svg() {
    check();
    cairo_surface_finish(surface.get());
    check();
    if (hasFineCells) return std::move(svgBytes);
    // Cairo leaves out of an SVG file that cells have sharp edges.
    const std::string image = "<image ";
    const std::string sharp = "style=\"image-rendering:pixelated\" ";
    for (auto at = svgBytes.begin();;) {
        at = std::search(at, svgBytes.end(), image.begin(), image.end());
        if (at == svgBytes.end()) return std::move(svgBytes);
        at = svgBytes.insert(at + static_cast<std::ptrdiff_t>(image.size()), sharp.begin(),
                             sharp.end());
    }
}

RgbImage Canvas::image() {
    cairo_surface_flush(surface.get());
    check();
    RgbImage result{cairo_image_surface_get_width(surface.get()),
                    cairo_image_surface_get_height(surface.get()),
                    {}};
    result.pixels.reserve(3 * static_cast<std::size_t>(result.width) *
                          static_cast<std::size_t>(result.height));
    for (int y = 0; y < result.height; ++y)
        for (int x = 0; x < result.width; ++x) {
            std::uint32_t pixel;
            std::memcpy(&pixel, pixelAddress(surface.get(), x, y), sizeof pixel);
            for (const int shift : {16, 8, 0})
                result.pixels.push_back(static_cast<std::uint8_t>(pixel >> shift));
        }
    return result;
}

}  // namespace voxam::inline drawing
