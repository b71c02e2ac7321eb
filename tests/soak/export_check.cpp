#include "export_check.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "export/design_file.h"
#include "export/outline.h"
#include "export/outline_file.h"
#include "export/solid.h"
#include "fault.h"

using namespace voxam;

namespace soak {

namespace {

constexpr double THICKNESS = 2.5;

// The first bytes choose the size and the level, the others are densities, again and again.
class Input {
public:
    explicit Input(const std::vector<std::uint8_t>& from) : bytes(from) {}

    int upTo(int most) { return bytes.empty() ? most : bytes[next++ % bytes.size()] % (most + 1); }

    // Often exactly void, solid or the level, where an outline has its corners.
    float density(double level) {
        const int byte = upTo(255);
        if (byte < 64) return 0;
        if (byte < 128) return 1;
        return byte < 160 ? static_cast<float>(level) : static_cast<float>(byte - 160) / 95;
    }

private:
    const std::vector<std::uint8_t>& bytes;
    std::size_t next = 0;
};

void requireOutline(const Outline& outline) {
    for (const Contour& contour : outline.contours) {
        require(contour.corners.size() > 2, "a contour has an inside");
        require(std::ranges::all_of(contour.corners,
                                    [&](const OutlinePoint& corner) {
                                        return corner.x >= 0 && corner.x <= outline.width &&
                                               corner.y >= 0 && corner.y <= outline.height;
                                    }),
                "an outline lies on the plate");
    }
    const double plate = outline.width * outline.height;
    require(area(outline) >= 0 && area(outline) <= plate * (1 + 1e-12),
            "material covers a part of the plate");
}

void requireSolid(const Solid& solid, const Outline& outline) {
    std::map<std::pair<std::size_t, std::size_t>, int> edges;
    for (const auto& [a, b, c] : solid.triangles) {
        for (const auto& edge : {std::pair{a, b}, {b, c}, {c, a}}) ++edges[edge];
    }
    for (const auto& [edge, count] : edges) {
        require(count == 1 && edges.contains({edge.second, edge.first}), "a body is closed");
    }
    const double expected = THICKNESS * area(outline);
    require(
        std::fabs(volume(solid) - expected) <= 1e-9 * THICKNESS * outline.width * outline.height,
        "a body has the volume of its outline");
}

void requireSameDesign(const Field& design, int width, int height) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    for (const std::string& ending : DESIGN_ENDINGS) {
        const auto file = folder / ("voxam-soak-" + std::to_string(getpid()) + ending);
        const std::vector<std::uint8_t> bytes = encodeDesign(file, design);
        std::ofstream(file, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        const Field again = readDesign(file, width, height);
        std::filesystem::remove(file);
        const bool isExact = ending == ".csv";
        require(std::ranges::equal(design.values, again.values,
                                   [&](float a, float b) {
                                       return isExact ? a == b
                                                      : (a >= 0.5F) == (b >= 0.5F) &&
                                                            std::fabs(a - b) <= 1.0F / 255;
                                   }),
                "a design that is written and read is the same");
    }
}

}  // namespace

void checkExports(const std::vector<std::uint8_t>& bytes) {
    Input input(bytes);
    const int refinement = 1 + input.upTo(2);
    const int width = 1 + input.upTo(11);
    const int height = 1 + input.upTo(11);
    const double level = (1 + input.upTo(98)) / 100.0;
    const double elementSize = std::ldexp(1.0, input.upTo(16) - 8);
    Field design(refinement * width, refinement * height);
    for (float& value : design.values) value = input.density(level);

    const Outline outline = traceOutline(design, refinement, elementSize, level);
    requireOutline(outline);
    requireSolid(extrude(outline, THICKNESS), outline);
    for (const std::string& ending : OUTLINE_ENDINGS) {
        require(!encodeOutline("design" + ending, outline, THICKNESS).empty(), "a file has bytes");
    }
    requireSameDesign(design, width, height);
}

}  // namespace soak
