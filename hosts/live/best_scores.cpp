#include "best_scores.h"

#include <QCryptographicHash>
#include <QObject>
#include <QSettings>

#include "format/refinement.h"
#include "format/scene_writer.h"

using namespace voxam;

namespace {

constexpr double BRONZE_FROM = 85;
constexpr double SILVER_FROM = 95;
constexpr double GOLD_FROM = 100;
constexpr const char* PERCENT_KEY = "percent";
constexpr const char* COMPLIANCE_KEY = "optimiser";  // in the scene's units

QString keyOf(Scene scene) {
    const int refinement = scene.densities ? refinementOf(*scene.densities, scene) : 1;
    // Members that do not change the task are reset, so that they do not make a new one.
    scene.title = "problem";
    scene.description.clear();
    scene.densities.reset();
    scene.timeline.clear();
    scene.files.clear();
    scene.iterations = Scene().iterations;
    scene.elementSize = 1;
    for (LoadCase& each : scene.loadCases) each.name.clear();
    const auto hash = QCryptographicHash::hash(QByteArray::fromStdString(sceneText(scene)),
                                               QCryptographicHash::Sha1);
    // Percentages of earlier versions followed other rules.
    return QString("best3/%1/%2/").arg(QString::fromLatin1(hash.toHex())).arg(refinement);
}

}  // namespace

bool BestScores::offer(const Scene& scene, double percent) {
    QSettings settings;
    const QString key = keyOf(scene) + PERCENT_KEY;
    if (percent <= settings.value(key, 0).toDouble()) return false;
    settings.setValue(key, percent);
    return true;
}

double BestScores::best(const Scene& scene) {
    return QSettings().value(keyOf(scene) + PERCENT_KEY, 0).toDouble();
}

void BestScores::offerRival(const Scene& scene, double compliance) {
    const double best = bestRival(scene);
    if (best == 0 || compliance < best)
        QSettings().setValue(keyOf(scene) + COMPLIANCE_KEY, compliance);
}

double BestScores::bestRival(const Scene& scene) {
    return QSettings().value(keyOf(scene) + COMPLIANCE_KEY, 0).toDouble();
}

BestScores::Medal BestScores::medalFor(double percent) {
    if (percent >= GOLD_FROM) return Medal::GOLD;
    if (percent >= SILVER_FROM) return Medal::SILVER;
    return percent >= BRONZE_FROM ? Medal::BRONZE : Medal::NONE;
}

QString BestScores::nameOf(Medal medal) {
    switch (medal) {
        case Medal::GOLD:
            return QObject::tr("gold");
        case Medal::SILVER:
            return QObject::tr("silver");
        case Medal::BRONZE:
            return QObject::tr("bronze");
        case Medal::NONE:
            break;
    }
    return {};
}
