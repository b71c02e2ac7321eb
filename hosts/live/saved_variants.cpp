#include "saved_variants.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <limits>

#include "export/output_file.h"
#include "export/scene_file.h"
#include "format/input_error.h"
#include "format/json_value.h"
#include "format/scene_writer.h"
#include "format/text.h"
#include "packed_field.h"

using namespace voxam;
namespace fs = std::filesystem;

namespace {

constexpr const char* VARIANTS_KEY = "variants";
constexpr const char* NAME_KEY = "name";
constexpr const char* SCENE_KEY = "scene";
constexpr const char* SEEN_KEY = "seen";
constexpr const char* CHANGES_KEY = "changesMade";
constexpr const char* DRAWN_KEY = "isDrawn";
constexpr const char* DENSITIES_KEY = "densities";

QJsonObject objectOf(const Scene& scene) {
    return QJsonDocument::fromJson(QByteArray::fromStdString(sceneText(scene))).object();
}

std::shared_ptr<const Scene> sceneOf(const QJsonValue& value, const fs::path& file) {
    const std::string text = QJsonDocument(value.toObject()).toJson().toStdString();
    return std::make_shared<const Scene>(parseScene(text, file));
}

QJsonObject objectOf(const Variant& variant) {
    return {{NAME_KEY, variant.name},
            {SCENE_KEY, objectOf(*variant.whole)},
            {SEEN_KEY, objectOf(*variant.seen)},
            {CHANGES_KEY, static_cast<qint64>(variant.changesMade)},
            {DRAWN_KEY, variant.isDrawn},
            {DENSITIES_KEY, packed(variant.material)}};
}

Variant variantOf(const QJsonObject& object, const fs::path& file) {
    Variant variant;
    variant.name = object[NAME_KEY].toString();
    variant.whole = sceneOf(object[SCENE_KEY], file);
    variant.seen = sceneOf(object[SEEN_KEY], file);
    variant.changesMade = static_cast<std::size_t>(std::max(0, object[CHANGES_KEY].toInt()));
    variant.isDrawn = object[DRAWN_KEY].toBool();
    variant.material = unpacked(object[DENSITIES_KEY].toString(), *variant.seen, file);
    variant.findDrawn();
    return variant;
}

}  // namespace

fs::path variantsFileOf(const fs::path& sceneFile) {
    return sceneFile.parent_path() / (sceneFile.stem().string() + ".variants");
}

void writeVariantsBeside(const fs::path& sceneFile, const std::deque<Variant>& variants) {
    const fs::path file = variantsFileOf(sceneFile);
    if (variants.empty()) {
        std::error_code error;
        fs::remove(file, error);
        return;
    }
    const QByteArray text = textOf(variants);
    writeFile(file, {text.begin(), text.end()});
}

std::deque<Variant> variantsBeside(const fs::path& sceneFile) {
    const fs::path file = variantsFileOf(sceneFile);
    std::error_code error;
    if (!fs::exists(file, error)) return {};
    return variantsFrom(QByteArray::fromStdString(readText(file, "variants")), file);
}

QByteArray textOf(const std::deque<Variant>& variants) {
    QJsonArray list;
    for (const Variant& variant : variants) list.append(objectOf(variant));
    return QJsonDocument(QJsonObject{{VARIANTS_KEY, list}}).toJson();
}

std::deque<Variant> variantsFrom(const QByteArray& text, const fs::path& file) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) throw InputError(nameOf(file) + ": this is not a file with variants");
    std::deque<Variant> variants;
    // Scores find their variants by these numbers. Revisions of a run count up from 0.
    std::uint64_t number = std::numeric_limits<std::uint64_t>::max();
    for (const QJsonValue value : document.object()[VARIANTS_KEY].toArray()) {
        variants.push_back(variantOf(value.toObject(), file));
        variants.back().revision = number--;
    }
    return variants;
}
