#include "problems.h"

#include <QObject>
#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Sums of whole numbers, whose determinant is whole as well.
constexpr double LEAST_DETERMINANT = 0.5;

template <typename Visit>
void forEachNode(const Range& columns, const Range& rows, Visit visit) {
    for (int x = columns.from; x <= columns.to; ++x)
        for (int y = rows.from; y <= rows.to; ++y) visit(x, y);
}

/// What the supports hold of the three ways in which a rigid plate can move: it can move at all if
/// the sum of the squares of their rows is singular.
class RigidMotion {
public:
    explicit RigidMotion(const Scene& scene) {
        for (const Support& support : scene.supports)
            forEachNode(support.x, support.y, [&](int x, int y) {
                if (support.fixX) hold({1, 0, static_cast<double>(-y)});
                if (support.fixY) hold({0, 1, static_cast<double>(x)});
            });
    }

    bool isHeldInX() const { return sums[0][0] > 0; }
    bool isHeldInY() const { return sums[1][1] > 0; }
    bool isHeld() const {
        const auto& s = sums;
        const double determinant = s[0][0] * (s[1][1] * s[2][2] - s[1][2] * s[2][1]) -
                                   s[0][1] * (s[1][0] * s[2][2] - s[1][2] * s[2][0]) +
                                   s[0][2] * (s[1][0] * s[2][1] - s[1][1] * s[2][0]);
        return determinant > LEAST_DETERMINANT;
    }

private:
    void hold(const std::array<double, 3>& row) {
        for (std::size_t i = 0; i < row.size(); ++i)
            for (std::size_t j = 0; j < row.size(); ++j) sums[i][j] += row[i] * row[j];
    }

    std::array<std::array<double, 3>, 3> sums = {};
};

std::vector<QPointF> supportPlaces(const Scene& scene) {
    std::vector<QPointF> places;
    for (const Support& support : scene.supports)
        places.emplace_back(0.5 * (support.x.from + support.x.to),
                            0.5 * (support.y.from + support.y.to));
    return places;
}

QPointF placeOf(const Load& load) {
    return {0.5 * (load.x.from + load.x.to), 0.5 * (load.y.from + load.y.to)};
}

bool isHeld(const Scene& scene, int x, int y, bool isX) {
    return std::any_of(scene.supports.begin(), scene.supports.end(), [&](const Support& support) {
        return (isX ? support.fixX : support.fixY) && support.x.contains(x) &&
               support.y.contains(y);
    });
}

/// Whether every node of a load is held in each direction in which it pulls.
bool pullsAtSupportsOnly(const Load& load, const Scene& scene) {
    bool isAllHeld = true;
    forEachNode(load.x, load.y, [&](int x, int y) {
        isAllHeld = isAllHeld && (load.fx == 0 || isHeld(scene, x, y, true)) &&
                    (load.fy == 0 || isHeld(scene, x, y, false));
    });
    return isAllHeld;
}

Problems motionProblem(const Scene& scene) {
    if (scene.supports.empty())
        return {QObject::tr("Nothing is held."),
                QObject::tr("Paint supports where the plate is fastened."),
                {}};
    const RigidMotion motion(scene);
    if (motion.isHeld()) return {};
    const auto places = supportPlaces(scene);
    if (!motion.isHeldInX())
        return {QObject::tr("The plate can slide sideways."),
                QObject::tr("Paint a support that holds a node in x."), places};
    if (!motion.isHeldInY())
        return {QObject::tr("The plate can slide up and down."),
                QObject::tr("Paint a support that holds a node in y."), places};
    return {QObject::tr("The plate can turn."),
            QObject::tr("Paint one more support, away from the others."), places};
}

Problems loadProblem(const Scene& scene) {
    Problems problems;
    for (std::size_t i = 0; i < scene.loads.size(); ++i) {
        const Load& load = scene.loads[i];
        const auto& used = scene.loadCasesInUse;
        if (std::find(used.begin(), used.end(), load.loadCase) == used.end()) continue;
        const bool isNone = load.fx == 0 && load.fy == 0;
        if (!isNone && !pullsAtSupportsOnly(load, scene)) continue;
        problems.places.push_back(placeOf(load));
        if (!problems.text.isEmpty()) continue;
        problems.text = isNone ? QObject::tr("Load %1 has no force.").arg(i + 1)
                               : QObject::tr("Load %1 pulls at a support.").arg(i + 1);
        problems.advice = isNone ? QObject::tr("Give it one, or delete it.")
                                 : QObject::tr("It does no work there: move it to another node.");
    }
    return problems;
}

/// What to do about a text of the library.
QString adviceOn(const QString& text) {
    if (text == "Change load / support")
        return QObject::tr(
            "The plate cannot be solved: hold it in both directions and against "
            "turning, or move the loads.");
    if (text == "Change load/support")
        return QObject::tr(
            "The plate is not held against its loads: paint supports for both "
            "directions and against turning.");
    if (text == "Load cannot be on top of support")
        return QObject::tr(
            "The loads do no work: move one away from the supports, add one, or "
            "take its load case into use.");
    return QObject::tr("The library could not go on. Choose a smaller grid, or start afresh.");
}

}  // namespace

Problems problemsOf(const Scene& scene, const QString& libraryText) {
    Problems problems = motionProblem(scene);
    if (problems.text.isEmpty()) problems = loadProblem(scene);
    if (libraryText.isEmpty()) return problems;
    // What a check found says more than the library, and where.
    if (problems.text.isEmpty()) problems.advice = adviceOn(libraryText);
    problems.text = problems.text.isEmpty()
                        ? libraryText
                        : QObject::tr("%1 (%2)").arg(problems.text, libraryText);
    return problems;
}
