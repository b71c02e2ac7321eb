#include "problems.h"

#include <QObject>

namespace {

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

Problems problemsOf(const Scene&, const QString& libraryText) {
    if (libraryText.isEmpty()) return {};
    return {libraryText, adviceOn(libraryText), {}};
}
