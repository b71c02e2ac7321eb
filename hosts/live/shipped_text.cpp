#include "shipped_text.h"

#include <QCoreApplication>

namespace {

/// The texts in the files of scenes/, for the tool that collects the texts to translate.
[[maybe_unused]] constexpr const char* TEXTS[] = {
    QT_TRANSLATE_NOOP("Scenes", "Viaduct"),
    QT_TRANSLATE_NOOP(
        "Scenes",
        "An arch below a road, painted as a grey picture: black is solid, white is void."),
    QT_TRANSLATE_NOOP("Scenes", "Bridge with two load cases"),
    QT_TRANSLATE_NOOP(
        "Scenes",
        "A deck that stays solid is loaded on one half at a time; the design grows above it."),
    QT_TRANSLATE_NOOP("Scenes", "Bridge"),
    QT_TRANSLATE_NOOP("Scenes",
                      "A tied arch whose deck is loaded on one half at a time, a load case each."),
    QT_TRANSLATE_NOOP("Scenes", "Cantilever"),
    QT_TRANSLATE_NOOP(
        "Scenes",
        "A wall bracket of curved bars that carries a weight at the middle of its free end."),
    QT_TRANSLATE_NOOP("Scenes", "Beam on two supports"),
    QT_TRANSLATE_NOOP("Scenes",
                      "The right half of a beam that carries a load at its middle; the left edge "
                      "is the plane of symmetry."),
    QT_TRANSLATE_NOOP("Scenes", "Plate with a hole"),
    QT_TRANSLATE_NOOP(
        "Scenes",
        "A sheet pulled to the right: the rim of the hole above and below works hardest."),
    QT_TRANSLATE_NOOP("Scenes", "L-bracket"),
    QT_TRANSLATE_NOOP("Scenes",
                      "A bracket below a ceiling that has to leave the upper right corner free."),
    QT_TRANSLATE_NOOP("Scenes", "The smallest scene that shows every required key."),
    QT_TRANSLATE_NOOP("Scenes", "Moving load"),
    QT_TRANSLATE_NOOP("Scenes",
                      "A load moves across a beam in five steps, and the design follows it."),
    QT_TRANSLATE_NOOP(
        "Scenes",
        "The stiffest wall bracket for a weight at its tip, made of two fifths of the plate."),
    QT_TRANSLATE_NOOP("Scenes", "Pipe through a bracket"),
    QT_TRANSLATE_NOOP("Scenes",
                      "A pipe starts where the upper chord wants to be. If the blob may move, it "
                      "moves and bends into a hole."),
    QT_TRANSLATE_NOOP("Scenes", "Beam on rollers"),
    QT_TRANSLATE_NOOP("Scenes",
                      "Both ends may roll: nothing stops the beam from sliding sideways, so it "
                      "cannot be scored."),
    QT_TRANSLATE_NOOP("Scenes", "Wheel"),
    QT_TRANSLATE_NOOP("Scenes",
                      "A solid rim and a solid hub; the ground pushes and drags at the rim from "
                      "six sides, a load case each."),
};

}  // namespace

QString shippedText(const std::string& text) {
    return text.empty() ? QString() : QCoreApplication::translate("Scenes", text.c_str());
}
