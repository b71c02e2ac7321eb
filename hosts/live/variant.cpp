#include "variant.h"

#include <QCoreApplication>
#include <cmath>

#include "checks/assessment.h"
#include "format/refinement.h"
#include "number_text.h"

using namespace voxam;

namespace {

constexpr double SAME = 0.0005;  // a share; less is not shown

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Variant)
};

}  // namespace

std::optional<double> Variant::compliance() const {
    if (!score || !score->isSupported()) return std::nullopt;
    return score->assessment.score.compliance;
}

double Variant::share() const { return mean(*drawn); }

void Variant::findDrawn() {
    const int refinement = drawnRefinement(*seen, refinementOf(material, *seen));
    drawn = std::make_shared<const Field>(
        isDrawn ? material : drawnDesign(material, *seen, refinement).design);
}

bool haveSameTask(const Variant& one, const Variant& other) {
    const Scene& first = *one.seen;
    const Scene& second = *other.seen;
    return first.width == second.width && first.height == second.height &&
           first.symmetry == second.symmetry && first.loads == second.loads &&
           first.supports == second.supports && first.loadCasesInUse == second.loadCasesInUse &&
           weightsOf(first) == weightsOf(second);
}

QString numbersOf(const Variant& variant) {
    const auto compliance = variant.compliance();
    const bool isHalf = variant.seen->symmetry != Symmetry::NONE;
    const QString worth = compliance      ? complianceText(*compliance, isHalf)
                          : variant.score ? Words::tr("Does not hold")
                                          : Words::tr("Not scored yet");
    return worth + "\n" + Words::tr("Material %1").arg(percentText(variant.share()));
}

QString comparisonOf(const Variant& one, const Variant& other) {
    if (!haveSameTask(one, other))
        return Words::tr(
            "The plates, loads or supports differ, so the compliances cannot be compared.");
    const auto first = one.compliance();
    const auto second = other.compliance();
    if (!first || !second) return Words::tr("A design that does not hold cannot be compared.");
    const double stiffer = *first / *second - 1;
    const double more = other.share() - one.share();
    const QString stiffness =
        std::abs(stiffer) < SAME ? Words::tr("Both are equally stiff.")
        : stiffer > 0
            ? Words::tr("%1 is %2 stiffer.").arg(other.name, percentText(stiffer))
            : Words::tr("%1 is %2 stiffer.").arg(one.name, percentText(*second / *first - 1));
    const QString material = std::abs(more) < SAME ? Words::tr("They have as much material.")
                             : more > 0 ? Words::tr("%1 has more material, by %2 of the plate.")
                                              .arg(other.name, percentText(more))
                                        : Words::tr("%1 has more material, by %2 of the plate.")
                                              .arg(one.name, percentText(-more));
    return stiffness + " " + material;
}
