#include "drawn_by_hand.h"

#include <QCryptographicHash>
#include <QSettings>
#include <QStringList>
#include <array>

#include "scene_edits.h"

using namespace voxam;

namespace {

constexpr const char* REMEMBERED_KEY = "drawing/byHand";
constexpr int MAX_REMEMBERED = 200;

}  // namespace

QByteArray fingerprintOf(const Field& drawing) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const std::array<int, 2> size = {drawing.width, drawing.height};
    hash.addData(QByteArrayView(reinterpret_cast<const char*>(size.data()), sizeof size));
    hash.addData(QByteArrayView(
        reinterpret_cast<const char*>(drawing.values.data()),
        static_cast<qsizetype>(drawing.values.size() * sizeof drawing.values.front())));
    return hash.result().toHex();
}

bool isEmptyDrawing(const Scene& scene) {
    if (!scene.densities) return true;
    Field drawing = *scene.densities;
    Field nothing(drawing.width, drawing.height);
    keepAreas(drawing, scene);
    keepAreas(nothing, scene);
    return drawing == nothing;
}

bool DrawnByHand::isKnown(const Scene& scene) const {
    return scene.densities && isKnown(fingerprintOf(*scene.densities));
}

bool DrawnByHand::isKnown(const QByteArray& fingerprint) const {
    return fingerprints.contains(fingerprint) ||
           QSettings().value(REMEMBERED_KEY).toStringList().contains(fingerprint);
}

void DrawnByHand::add(const Scene& scene) {
    if (scene.densities) fingerprints.insert(fingerprintOf(*scene.densities));
}

void DrawnByHand::remember(const Field& drawing) const {
    const QString fingerprint = fingerprintOf(drawing);
    if (!isKnown(fingerprint.toLatin1())) return;
    QSettings settings;
    QStringList remembered = settings.value(REMEMBERED_KEY).toStringList();
    remembered.removeAll(fingerprint);
    remembered.prepend(fingerprint);
    settings.setValue(REMEMBERED_KEY, remembered.mid(0, MAX_REMEMBERED));
}
