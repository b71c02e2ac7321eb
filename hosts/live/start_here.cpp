#include "start_here.h"

#include <QScrollArea>
#include <QSettings>
#include <QToolBar>
#include <utility>

#include "action_text.h"

namespace {

constexpr const char* OFFERED_KEY = "hints/tourWasOffered";
constexpr int LOOKING_TIME = 800;  // ms to see the effect of an edit

}  // namespace

StartHere::StartHere(const Parts& shown)
    : action(new QAction(tr("&Start here"), this)), parts(shown), steps(shown.window) {
    explain(*action, tr("A tour of five steps"));
    connect(action, &QAction::triggered, this, &StartHere::start);
    connect(&parts.bench.document, &Document::sceneChanged, this, &StartHere::followScene);
    connect(&parts.gallery, &QAction::triggered, this, [this] { steps.done(GALLERY); });
    settling.setSingleShot(true);
    settling.setInterval(LOOKING_TIME);
    connect(&settling, &QTimer::timeout, this, &StartHere::settle);
}

void StartHere::offerOnce() {
    QSettings settings;
    if (settings.value(OFFERED_KEY, false).toBool()) return;
    settings.setValue(OFFERED_KEY, true);
    steps.offer(tr("Welcome to Voxam Live"),
                tr("New here? A tour of five steps shows what you can do. It takes two minutes, "
                   "and it waits in the Help menu."),
                [this] { start(); });
}

void StartHere::start() {
    if (!parts.openScene()) return;
    steps.start(makeSteps());
}

std::vector<Tour::Step> StartHere::makeSteps() {
    const auto plate = [this] { return placeOf(parts.plate); };
    std::vector<Tour::Step> made;
    made.push_back({tr("Drag the arrow"),
                    tr("The arrow is a force on the plate. Drag either of its ends, and watch the "
                       "stiffest structure form anew."),
                    plate});
    made.push_back({tr("Change the volume"),
                    tr("The volume is how much of the plate may be material. Move the slider to "
                       "spend less of it, or more."),
                    [this] { return placeOfRow(parts.volume); },
                    [this] {
                        parts.settings.show();
                        parts.settings.raise();
                        auto* scroller = parts.settings.findChild<QScrollArea*>();
                        if (scroller != nullptr) scroller->ensureWidgetVisible(&parts.volume);
                    }});
    made.push_back({tr("Keep a place free"),
                    tr("Take up this tool, and paint over a bar of the structure. Material has to "
                       "find a way around what you paint."),
                    [this, plate] {
                        return parts.keepVoid.isChecked() ? plate() : buttonOf(parts.keepVoid);
                    }});
    made.push_back(
        {tr("Draw a structure yourself"),
         tr("Press this button. Then draw bars from the left edge to the arrow, and see "
            "how stiff they are next to the optimiser's."),
         [this, plate] { return parts.drawMode.isChecked() ? plate() : buttonOf(parts.drawMode); },
         [] {}, true});
    made.push_back({tr("Choose another plate"),
                    tr("The gallery has scenes to play with, to understand, to design and to draw. "
                       "Press this button to look at them."),
                    [this] { return buttonOf(parts.gallery); }, [] {}, true});
    return made;
}

void StartHere::followScene() {
    const auto last = std::exchange(before, parts.bench.document.snapshot());
    if (!steps.isRunning() || !last) return;
    const Scene& now = *before;
    if (parts.plate.isInGesture() && last->loads != now.loads)
        finished = DRAG;
    else if (last->volumeFraction != now.volumeFraction)
        finished = VOLUME;
    else if (last->passive != now.passive)
        finished = KEEP_VOID;
    else if (last->densities != now.densities)
        finished = DRAW;
    else
        return;
    settling.start();
}

void StartHere::settle() {
    if (parts.plate.isInGesture()) return settling.start();
    if (const auto step = std::exchange(finished, std::nullopt)) steps.done(*step);
}

QRect StartHere::placeOf(const QWidget& widget) const {
    if (!widget.isVisible()) return {};
    const QRect seen = widget.visibleRegion().boundingRect();
    return {widget.mapTo(&parts.window, seen.topLeft()), seen.size()};
}

// Includes the label of the field, or the card would cover it.
QRect StartHere::placeOfRow(const QWidget& field) const {
    QRect row = placeOf(field);
    if (row.isValid()) row.setLeft(placeOf(*field.parentWidget()).left());
    return row;
}

QRect StartHere::buttonOf(QAction& button) const {
    constexpr int rim = 3;  // pixels around it
    for (const QToolBar* bar : parts.window.findChildren<QToolBar*>()) {
        const QWidget* widget = bar->widgetForAction(&button);
        if (widget != nullptr && widget->isVisible())
            return placeOf(*widget).adjusted(-rim, -rim, rim, rim);
    }
    return {};
}
