#include "room_text.h"

#include <QCoreApplication>
#include <QLocale>
#include <QRegularExpression>
#include <vector>

namespace {

constexpr const char* CONTEXT = "Rooms";

// Longer phrases come before shorter ones that they contain. %1 to %9 match any text.
constexpr const char* PHRASES[] = {
    QT_TRANSLATE_NOOP("Rooms", "from iteration %1 on, %2"),
    QT_TRANSLATE_NOOP("Rooms", "as drawn it is %1, %2 times the %3 while optimising"),
    QT_TRANSLATE_NOOP("Rooms", "as drawn, %1"),
    QT_TRANSLATE_NOOP("Rooms", "node %1 lies inside what is kept void"),
    QT_TRANSLATE_NOOP("Rooms", "what is kept void separates it from every support"),
    QT_TRANSLATE_NOOP("Rooms", "none acts in load case %1"),
    QT_TRANSLATE_NOOP("Rooms", "none acts in the load cases %1"),
    QT_TRANSLATE_NOOP("Rooms",
                      "the solid elements are %1 % of the plate, more than the volume %2 %"),
    QT_TRANSLATE_NOOP("Rooms",
                      "the void elements leave %1 % of the plate, less than the volume %2 %"),
    QT_TRANSLATE_NOOP("Rooms", "needs about %1 GB of memory, and %2 GB are free"),
    QT_TRANSLATE_NOOP("Rooms", "lower its width and height"),
    QT_TRANSLATE_NOOP("Rooms", "lower the detail of the picture or the detail of the design"),
    QT_TRANSLATE_NOOP("Rooms", "lower it"),
    QT_TRANSLATE_NOOP("Rooms", "score a coarser design"),
    QT_TRANSLATE_NOOP("Rooms",
                      "keep the elements at this load solid, and set the detail of the design and "
                      "the detail of the picture to %1"),
    QT_TRANSLATE_NOOP("Rooms",
                      "keep the elements at this load solid, and set the detail of the picture to "
                      "%1"),
    QT_TRANSLATE_NOOP("Rooms", "keep the elements at this load solid"),
    QT_TRANSLATE_NOOP("Rooms", "raise the penalty to 3: a low one leaves greys"),
    QT_TRANSLATE_NOOP("Rooms",
                      "a volume of %1 % is enough for a bar %2 elements wide from load %3 to the "
                      "nearest support, and such a thin design tears"),
    QT_TRANSLATE_NOOP("Rooms", "take more volume or a finer grid"),
    QT_TRANSLATE_NOOP("Rooms", "take a finer grid, more volume or more iterations"),
    QT_TRANSLATE_NOOP("Rooms", "take a finer grid or more iterations"),
    QT_TRANSLATE_NOOP("Rooms", "take a finer grid or more volume"),
    QT_TRANSLATE_NOOP("Rooms", "take a finer grid"),
    QT_TRANSLATE_NOOP("Rooms",
                      "elements that are kept solid do not touch the structure: move them to it, "
                      "or do not keep them solid"),
    QT_TRANSLATE_NOOP("Rooms", "some of its nodes may get no material"),
    QT_TRANSLATE_NOOP("Rooms",
                      "%1 is above %2 (below a volume of %3 %): the design may fall into dots that "
                      "carry nothing"),
    QT_TRANSLATE_NOOP("Rooms", "%1 is above %2: the design may fall into dots that carry nothing"),
    QT_TRANSLATE_NOOP("Rooms",
                      "set the detail of the design and the detail of the picture to %1, or take a "
                      "finer grid or more iterations"),
    QT_TRANSLATE_NOOP("Rooms", "the design has %1 % as drawn instead of %2 %"),
    QT_TRANSLATE_NOOP("Rooms", "the design has %1 % instead of %2 %"),
    QT_TRANSLATE_NOOP("Rooms", "there is no material"),
    QT_TRANSLATE_NOOP("Rooms", "act where nothing holds them"),
    QT_TRANSLATE_NOOP("Rooms", "its densities differ too much for an accurate analysis"),
    QT_TRANSLATE_NOOP("Rooms", "make the faintest void"),
    QT_TRANSLATE_NOOP("Rooms", "the plate is free to move: nothing is held"),
    QT_TRANSLATE_NOOP("Rooms", "the plate is free to move along %1: nothing is held in %2"),
    QT_TRANSLATE_NOOP(
        "Rooms", "the plate is free to turn: hold x in two rows of nodes, or y in two columns"),
    QT_TRANSLATE_NOOP("Rooms", "the node %1 on the plane of symmetry is free in %2"),
    QT_TRANSLATE_NOOP("Rooms", "hold the nodes of the left edge in x"),
    QT_TRANSLATE_NOOP("Rooms", "hold the nodes of the right edge in x"),
    QT_TRANSLATE_NOOP("Rooms", "hold the nodes of the top edge in y"),
    QT_TRANSLATE_NOOP("Rooms", "hold the nodes of the bottom edge in y"),
    QT_TRANSLATE_NOOP("Rooms",
                      "acts where a support holds the node in its direction, and does no work"),
    QT_TRANSLATE_NOOP("Rooms", "move the loads or the supports"),
    QT_TRANSLATE_NOOP("Rooms", "is cancelled by others at its nodes"),
    QT_TRANSLATE_NOOP("Rooms", "nothing is left to carry"),
    QT_TRANSLATE_NOOP("Rooms", "there is no force at all"),
    QT_TRANSLATE_NOOP("Rooms", "the largest force is %1, expected at least %2"),
    QT_TRANSLATE_NOOP("Rooms", "take a smaller unit of force"),
    QT_TRANSLATE_NOOP("Rooms", "none of them has a force"),
    QT_TRANSLATE_NOOP("Rooms",
                      "every force of load case %1 acts where a support holds the node in its "
                      "direction, and does no work"),
    QT_TRANSLATE_NOOP("Rooms", "every force of load case %1 is cancelled by others at its nodes"),
    QT_TRANSLATE_NOOP("Rooms",
                      "every force acts where a support holds the node in its direction, and does "
                      "no work"),
    QT_TRANSLATE_NOOP("Rooms", "every force is cancelled by others at its nodes"),
    QT_TRANSLATE_NOOP("Rooms", "acts on a part that no support holds, at %1"),
    QT_TRANSLATE_NOOP("Rooms", "acts on a part that can turn about the corner %1"),
    QT_TRANSLATE_NOOP("Rooms", "join it along an edge"),
    QT_TRANSLATE_NOOP("Rooms", "the load is at %1"),
    QT_TRANSLATE_NOOP("Rooms", "acts where there is no material, at %1"),
    QT_TRANSLATE_NOOP("Rooms", "no support holds %1 of it, %2 of the grid"),
    QT_TRANSLATE_NOOP("Rooms", "the first at %1"),
    QT_TRANSLATE_NOOP("Rooms", "1 part"),
    QT_TRANSLATE_NOOP("Rooms", "%1 parts"),
    QT_TRANSLATE_NOOP("Rooms", "1 element"),
    QT_TRANSLATE_NOOP("Rooms", "%1 elements"),
    QT_TRANSLATE_NOOP("Rooms", "refines the design to %1 x %2 cells"),
    QT_TRANSLATE_NOOP("Rooms", "refines the picture to %1 x %2 cells"),
    QT_TRANSLATE_NOOP("Rooms", "the limits are %1 cells, and %2 along a side"),
    QT_TRANSLATE_NOOP("Rooms",
                      "the detail of the design (%1) and the detail of the picture (%2) must be "
                      "equal if there are elements that are kept void or solid, or a blob"),
    QT_TRANSLATE_NOOP("Rooms", "set the detail of the picture to %1"),
    QT_TRANSLATE_NOOP("Rooms", "too many elements are kept void: %1"),
    QT_TRANSLATE_NOOP("Rooms", "too many elements are kept solid: %1"),
    QT_TRANSLATE_NOOP("Rooms", "too many elements of the second kind are kept solid: %1"),
    QT_TRANSLATE_NOOP("Rooms", "%1 elements, the limit is %2"),
    QT_TRANSLATE_NOOP("Rooms", "%1 nodes in all, the limit is %2"),
    QT_TRANSLATE_NOOP("Rooms", "the title is longer than %1 characters"),
    QT_TRANSLATE_NOOP("Rooms", "This is larger than the plate: use a finer grid first"),
    QT_TRANSLATE_NOOP("Rooms", "This area has no elements on the plate"),
};

struct Phrase {
    QRegularExpression pattern;
    const char* source;
};

const std::vector<Phrase>& phrases() {
    static const std::vector<Phrase> all = [] {
        std::vector<Phrase> made;
        for (const char* source : PHRASES) {
            QString pattern = QRegularExpression::escape(QString(source));
            static const QRegularExpression place(R"(\\%\d)");
            pattern.replace(place, "(.+?)");
            made.push_back(
                {QRegularExpression(QRegularExpression::anchoredPattern(pattern)), source});
        }
        return made;
    }();
    return all;
}

/// A number with the separators of the locale; other texts as phrases.
QString partText(const QString& part) {
    bool isNumber = false;
    QLocale::c().toDouble(part, &isNumber);
    if (!isNumber) return roomText(part);
    return QString(part).replace('.', QLocale().decimalPoint());
}

}  // namespace

QString roomText(const QString& text) {
    // Sentences of two halves: the fault and its remedy.
    if (const auto half = text.indexOf("; "); half >= 0)
        return roomText(text.left(half)) + "; " + roomText(text.mid(half + 2));
    for (const Phrase& phrase : phrases()) {
        const QRegularExpressionMatch match = phrase.pattern.match(text);
        if (!match.hasMatch()) continue;
        QString words = QCoreApplication::translate(CONTEXT, phrase.source);
        // From the last, because an argument may contain a percent sign.
        for (int i = match.lastCapturedIndex(); i > 0; --i)
            words.replace("%" + QString::number(i), partText(match.captured(i)));
        return words;
    }
    return text;
}
