#include "export/outline_file.h"

#include <dxflib/dl_writer.h>

#include <array>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>

#include "export/file_ending.h"
#include "export/solid.h"
#include "format/exact_text.h"

namespace voxam::inline files {

namespace {

// A style: a rectangle would be a contour to programs that cut along them.
constexpr const char* BACKGROUND = R"( style="background:#fff")";

std::vector<std::uint8_t> bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

/// Collects the groups of a DXF file, each a code and a value on lines of their own. Numbers have
/// no exponent, here as in the other formats: there are programs that do not read one.
class DxfText : public DL_Writer {
public:
    DxfText() : DL_Writer(DL_Codes::AC1009) {}

    std::vector<std::uint8_t> bytes() const { return bytesOf(text); }

    void dxfReal(int code, double value) const override { add(code, exactDecimalText(value)); }
    void dxfInt(int code, int value) const override { add(code, std::to_string(value)); }
    void dxfHex(int code, int value) const override {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%X", static_cast<unsigned>(value));
        add(code, digits);
    }
    void dxfString(int code, const char* value) const override { add(code, value); }
    void dxfString(int code, const std::string& value) const override { add(code, value); }

private:
    void add(int code, const std::string& value) const {
        text += std::to_string(code) + '\n' + value + '\n';
    }

    mutable std::string text;
};

struct Layer {
    const char* name;
    int colour;  // number in the palette of the format
};

constexpr Layer MATERIAL_LAYER = {"outline", 7};  // black on white, white on black
constexpr Layer HOLE_LAYER = {"holes", 1};        // red
constexpr const char* LINE_TYPE = "CONTINUOUS";

void writeHeader(const DxfText& dxf, const Outline& outline) {
    dxf.sectionHeader();
    dxf.dxfString(9, "$ACADVER");
    dxf.dxfString(1, "AC1009");
    dxf.dxfString(9, "$EXTMIN");
    dxf.coord(10, 0, 0);
    dxf.dxfString(9, "$EXTMAX");
    dxf.coord(10, outline.width, outline.height);
    dxf.sectionEnd();
}

void writeTables(const DxfText& dxf) {
    dxf.sectionTables();
    dxf.tableLinetypes(1);
    dxf.tableLinetypeEntry();
    dxf.dxfString(2, LINE_TYPE);
    dxf.dxfInt(70, 0);
    dxf.dxfString(3, "Solid line");
    dxf.dxfInt(72, 65);
    dxf.dxfInt(73, 0);  // no dashes
    dxf.dxfReal(40, 0);
    dxf.tableEnd();
    dxf.tableLayers(2);
    for (const Layer& layer : {MATERIAL_LAYER, HOLE_LAYER}) {
        dxf.tableLayerEntry();
        dxf.dxfString(2, layer.name);
        dxf.dxfInt(70, 0);
        dxf.color(layer.colour);
        dxf.linetype(LINE_TYPE);
    }
    dxf.tableEnd();
    dxf.sectionEnd();
}

void writeContour(const DxfText& dxf, const Contour& contour, double height) {
    const char* const layer = (contour.hole ? HOLE_LAYER : MATERIAL_LAYER).name;
    dxf.entity("POLYLINE");
    dxf.dxfString(8, layer);
    dxf.dxfInt(66, 1);  // vertices follow
    dxf.coord(10, 0, 0);
    dxf.dxfInt(70, 1);  // closed
    for (const auto& [x, y] : contour.corners) {
        dxf.entity("VERTEX");
        dxf.dxfString(8, layer);
        dxf.coord(10, x, height - y);
    }
    dxf.entity("SEQEND");
    dxf.dxfString(8, layer);
}

// The format is little-endian on every machine.
void append(std::vector<std::uint8_t>& bytes, std::uint32_t value, int count = 4) {
    for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void append(std::vector<std::uint8_t>& bytes, const Corner& corner) {
    for (const double part : corner) {
        const auto value = static_cast<float>(part);
        std::uint32_t bits;
        static_assert(sizeof bits == sizeof value);
        std::memcpy(&bits, &value, sizeof bits);
        append(bytes, bits);
    }
}

Corner normal(const Corner& a, const Corner& b, const Corner& c) {
    const Corner u = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const Corner v = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    const Corner n = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                      u[0] * v[1] - u[1] * v[0]};
    const double length = std::hypot(n[0], n[1], n[2]);
    // Three corners of a cap may lie on a line.
    return length > 0 ? Corner{n[0] / length, n[1] / length, n[2] / length} : Corner{0, 0, 0};
}

}  // namespace

std::vector<std::uint8_t> encodeSvg(const Outline& outline) {
    const std::string width = exactDecimalText(outline.width);
    const std::string height = exactDecimalText(outline.height);
    std::string svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" + width +
                      R"(mm" height=")" + height + R"(mm" viewBox="0 0 )" + width + ' ' + height +
                      '"' + BACKGROUND + ">\n<path fill=\"#000\" fill-rule=\"evenodd\" d=\"";
    for (const Contour& contour : outline.contours) {
        char command = 'M';
        for (const auto& [x, y] : contour.corners) {
            svg += command + exactDecimalText(x) + ' ' + exactDecimalText(y);
            command = 'L';
        }
        svg += "Z\n";
    }
    return bytesOf(svg + "\"/>\n</svg>\n");
}

std::vector<std::uint8_t> encodeDxf(const Outline& outline) {
    const DxfText dxf;
    writeHeader(dxf, outline);
    writeTables(dxf);
    dxf.sectionEntities();
    for (const Contour& contour : outline.contours) writeContour(dxf, contour, outline.height);
    dxf.sectionEnd();
    dxf.dxfEOF();
    return dxf.bytes();
}

std::vector<std::uint8_t> encodeStl(const Outline& outline, double thickness) {
    const Solid solid = extrude(outline, thickness);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(84 + 50 * solid.triangles.size());
    // Programs tell the binary form by a header that does not begin with "solid".
    const std::string header = "Voxam plate, binary STL";
    bytes.assign(header.begin(), header.end());
    bytes.resize(80, ' ');
    append(bytes, static_cast<std::uint32_t>(solid.triangles.size()));
    for (const auto& [i, j, k] : solid.triangles) {
        const Corner& a = solid.corners[i];
        const Corner& b = solid.corners[j];
        const Corner& c = solid.corners[k];
        for (const Corner& part : {normal(a, b, c), a, b, c}) append(bytes, part);
        append(bytes, 0, 2);  // attributes
    }
    return bytes;
}

std::vector<std::uint8_t> encodeOutline(const std::filesystem::path& file, const Outline& outline,
                                        double thickness) {
    const std::string ending = fileEnding(file);
    if (ending == ".svg") return encodeSvg(outline);
    if (ending == ".dxf") return encodeDxf(outline);
    return encodeStl(outline, thickness);
}

}  // namespace voxam::inline files
