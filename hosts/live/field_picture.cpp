#include "field_picture.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

#include "checks/floating_parts.h"
#include "drawing/picture_colours.h"
#include "format/refinement.h"
#include "load_case_text.h"
#include "number_text.h"
#include "plate_image.h"

using namespace voxam;

namespace {

constexpr int DIGITS = 3;  // of a value under the hand

const ViewedField* fieldOf(const ScoreResult* score) {
    return score != nullptr ? score->view.field.get() : nullptr;
}

void append(Field& stack, const Field& field) {
    stack.width = field.width;
    stack.height += field.height;
    stack.values.insert(stack.values.end(), field.values.begin(), field.values.end());
}

/// The plate before it is deformed, faint.
PlateColours ghostly(PlateColours colours) {
    colours.solid = mixed(colours.voids, colours.solid, picture_colours::GHOST_SHARE);
    return colours;
}

bool areWeighted(const Scene& scene, const std::vector<int>& cases) {
    return std::any_of(cases.begin(), cases.end(),
                       [&](int each) { return scene.weight(each) != 1; });
}

QString casesText(const ViewedField& field, const Scene& scene) {
    if (scene.loadCaseCount() < 2 || field.loadCases.empty()) return {};
    if (field.loadCases.size() == 1)
        return QObject::tr(", load case %1").arg(numberedCase(scene, field.loadCases.front()));
    const QString text =
        field.choice.view == View::STRESS     ? QObject::tr(", largest of %1 load cases")
        : areWeighted(scene, field.loadCases) ? QObject::tr(", weighted sum of %1 load cases")
                                              : QObject::tr(", sum of %1 load cases");
    return text.arg(field.loadCases.size());
}

/// A component of a value. A solver leaves rounding where it is 0.
QString partText(double part, double whole) {
    constexpr double rounding = 1e-9;
    return numberText(std::abs(part) <= rounding * whole ? 0 : part, DIGITS);
}

QString energyReading(const ScoreResult& score, const Cell& cell) {
    const Field& energies = *score.view.field->values;
    const auto energy = static_cast<double>(energies.at(cell.x, cell.y));
    const double average = mean(energies);
    return QObject::tr("Share of this cell in the compliance %1, %2 × the average of the plate")
        .arg(numberText(energy, DIGITS), numberText(average > 0 ? energy / average : 0, DIGITS));
}

QString stressReading(const ScoreResult& score, const Scene& scene, const Cell& cell) {
    const auto& states = *score.view.states;
    const auto stressIn = [&](int loadCase) {
        return states[static_cast<std::size_t>(loadCase)].stress(cell.x, cell.y);
    };
    const auto& cases = score.view.field->loadCases;
    const int worst = *std::max_element(cases.begin(), cases.end(), [&](int one, int other) {
        return stressIn(one).vonMises() < stressIn(other).vonMises();
    });
    const Stress stress = stressIn(worst);
    const double edge = elementEdge(score.design.width, scene);
    const auto number = [&](double value) {
        return partText(value / edge, stress.vonMises() / edge);
    };
    const QString loadCase = cases.size() > 1
                                 ? QObject::tr(" (load case %1)").arg(numberedCase(scene, worst))
                                 : QString();
    return QObject::tr("Stress, von Mises %1, x %2, y %3, shear %4 force/mm²")
               .arg(number(stress.vonMises()), number(stress.x), number(stress.y),
                    number(stress.shear)) +
           loadCase;
}

QString displacementReading(const ScoreResult& score, QPointF cells) {
    const auto& field = *score.view.field;
    if (field.loadCases.empty()) return {};
    const auto& state = (*score.view.states)[static_cast<std::size_t>(field.loadCases.front())];
    const auto x = static_cast<int>(std::lround(cells.x()));
    const auto y = static_cast<int>(std::lround(cells.y()));
    const double right = state.displacementX(x, y);
    const double down = state.displacementY(x, y);
    if (std::isnan(right) || std::isnan(down)) return QObject::tr("No material");
    const double size = std::hypot(right, down);
    const int refinement = refinementOf(score.design, *score.scene);
    return QObject::tr("Displacement of node %1, %2: %3, in x %4, in y %5 (force / E t)")
        .arg(placeText(double(x) / refinement), placeText(double(y) / refinement),
             numberText(size, DIGITS), partText(right, size), partText(down, size));
}

}  // namespace

CommonView commonView(std::initializer_list<const ScoreResult*> scores) {
    CommonView common;
    Field values;
    Field densities;
    for (const ScoreResult* score : scores) {
        const ViewedField* field = fieldOf(score);
        if (field == nullptr) continue;
        if (common.field == nullptr) common.field = field;
        if (field->values && (values.width == 0 || values.width == field->values->width)) {
            append(values, *field->values);
            append(densities, without(score->design, score->assessment.floating));
        }
        if (!field->deformation) continue;
        const double own = field->deformation->magnification;
        common.magnification = common.magnification > 0 ? std::min(common.magnification, own) : own;
    }
    if (!values.values.empty()) common.scale.emplace(values, densities);
    return common;
}

void showDesign(PlateView& plate, const Scene& scene, const Field& design, const ScoreResult* score,
                const CommonView& common) {
    const bool isOfThisSize = score != nullptr && score->design.width == design.width &&
                              score->design.height == design.height;
    const ViewedField* field = isOfThisSize ? fieldOf(score) : nullptr;
    std::optional<ShownEnergies> shown;
    if (field != nullptr && field->values && common.scale)
        shown.emplace(ShownEnergies{*field->values, *common.scale});
    const bool isDeformed = field != nullptr && field->deformation.has_value();
    plate.setMaterial(drawingImage(design, shown, refinementOf(design, scene), scene.blob.cells,
                                   isDeformed ? ghostly(plate.colours()) : plate.colours()),
                      false);
    plate.setDeformed(isDeformed ? std::optional(DeformedPlate{score->design, score->view.field,
                                                               common.magnification})
                                 : std::nullopt);
    plate.setShownCases(field != nullptr ? std::optional(field->loadCases) : std::nullopt);
    plate.setFloating(isOfThisSize ? outlineOf(score->assessment.floating, design, scene)
                                   : QPainterPath());
}

Legend legendOf(const CommonView& common, const Scene& scene) {
    if (common.field == nullptr) return {Legend::Kind::DENSITY, QObject::tr("Density")};
    const QString cases = casesText(*common.field, scene);
    switch (common.field->choice.view) {
        case View::ENERGY:
            return {Legend::Kind::MULTIPLES,
                    QObject::tr("Energy as a multiple of the average of the whole plate") + cases,
                    common.scale};
        case View::STRESS:
            return {Legend::Kind::VALUES,
                    QObject::tr("Von Mises stress in force/mm² at a thickness of 1 mm") + cases,
                    common.scale};
        default:
            return {Legend::Kind::TEXT, QObject::tr("Deformed plate, displacements times %1")
                                                .arg(numberText(common.magnification, 2)) +
                                            cases};
    }
}

QString densityReading(const Field& design, const Scene& scene, QPointF plate) {
    const int refinement = refinementOf(design, scene);
    const Cell cell = cellAt(refinement * plate);
    if (!design.contains(cell.x, cell.y)) return {};
    return QObject::tr("Density %1")
        .arg(QLocale().toString(static_cast<double>(design.at(cell.x, cell.y)), 'f', 2));
}

QString fieldReading(const ScoreResult& score, const Scene& scene, QPointF plate) {
    const QPointF place = refinementOf(score.design, scene) * plate;
    const Cell cell = cellAt(place);
    if (!score.design.contains(cell.x, cell.y)) return {};
    if (score.view.field->choice.view == View::DEFORMED) return displacementReading(score, place);
    if (score.design.at(cell.x, cell.y) <= 0) return QObject::tr("No material");
    return score.view.field->choice.view == View::STRESS ? stressReading(score, scene, cell)
                                                         : energyReading(score, cell);
}
