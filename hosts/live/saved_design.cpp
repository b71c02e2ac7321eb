#include "saved_design.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <chrono>
#include <cmath>

#include "export/design_file.h"
#include "export/output_file.h"
#include "format/input_error.h"
#include "packed_field.h"

using namespace voxam;
namespace fs = std::filesystem;

namespace {

// Copies of both files may have got their times in either order.
constexpr std::chrono::seconds SLACK(10);

// The key of the text with the exact densities.
constexpr const char* DENSITIES_KEY = "Densities";
// PNG readers refuse texts of more than 8 million bytes.
constexpr qsizetype MAX_TEXT = 4000000;

/// The bytes of the picture with the exact densities in a text.
std::vector<std::uint8_t> withDensities(const std::vector<std::uint8_t>& png, const Field& design) {
    const QString text = packed(design);
    if (text.size() > MAX_TEXT) return png;
    QImage image = QImage::fromData(png.data(), static_cast<int>(png.size()), "PNG");
    image.setText(DENSITIES_KEY, text);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG")) return png;
    return {bytes.begin(), bytes.end()};
}

/// The exact densities of a picture, or its greys if it has none. Another program may have changed
/// the picture and kept its text.
Field exactDesign(const fs::path& file, const Scene& scene, Field greys) {
    QImageReader reader(QString::fromStdString(file.string()));
    const QString text = reader.text(DENSITIES_KEY);
    if (text.isEmpty()) return greys;
    Field exact = unpacked(text, scene, file);
    if (exact.values.size() != greys.values.size()) return greys;
    constexpr float rounding = 0.51F / 255;
    for (std::size_t i = 0; i < exact.values.size(); ++i)
        if (std::abs(exact.values[i] - greys.values[i]) > rounding) return greys;
    return exact;
}

}  // namespace

fs::path designFileOf(const fs::path& sceneFile) {
    return sceneFile.parent_path() / (sceneFile.stem().string() + ".design.png");
}

void writeDesignBeside(const fs::path& sceneFile, const Field& design) {
    writeFile(designFileOf(sceneFile), withDensities(encodeDesignPng(design), design));
}

std::optional<Field> designBeside(const fs::path& sceneFile, const Scene& scene) {
    const fs::path file = designFileOf(sceneFile);
    std::error_code error;
    const auto sceneTime = fs::last_write_time(sceneFile, error);
    if (error) return std::nullopt;
    const auto designTime = fs::last_write_time(file, error);
    if (error || designTime + SLACK < sceneTime) return std::nullopt;
    return exactDesign(file, scene, readDesignPng(file, scene.width, scene.height));
}
