#include "workbench.h"

#include <algorithm>
#include <utility>

#include "format/input_error.h"
#include "problems.h"

using namespace voxam;

Workbench::Workbench() {
    connect(&document, &Document::sceneChanged, this, &Workbench::followScene);
    connect(&document, &Document::opened, this, [this] {
        endGesture();
        select(std::nullopt);
        setLoadCase(0);
    });
}

void Workbench::setBrush(const Brush& brush) {
    currentBrush = {std::clamp(brush.size, 1, Brush::MAX_SIZE), brush.isRound};
    emit brushChanged();
}

void Workbench::setLoadCase(int loadCase) {
    currentLoadCase = std::clamp(loadCase, 0, std::max(0, document.scene().loadCases - 1));
    emit loadCaseChanged();
}

void Workbench::select(std::optional<std::size_t> load) {
    if (selected == load) return;
    selected = load;
    turned.reset();
    emit selectionChanged();
}

void Workbench::deleteSelectedLoad() {
    if (!selected) return;
    const std::size_t index = *selected;
    if (edit(tr("Delete load"), [index](Scene& scene) { eraseLoad(scene, index); }))
        select(std::nullopt);
}

bool Workbench::edit(const QString& what, const std::function<void(Scene&)>& change, int gesture) {
    return attempt([&] {
        Scene next = document.scene();
        change(next);
        document.edit(what, std::move(next), gesture);
    });
}

bool Workbench::editWhole(const QString& what, const std::function<void(Scene&)>& change) {
    return attempt([&] {
        Scene next = *document.whole();
        change(next);
        document.editWhole(what, std::move(next));
    });
}

bool Workbench::attempt(const std::function<void()>& edit) {
    try {
        edit();
        return true;
    } catch (const InputError& error) {
        emit refused(sentenceOf(error));
        return false;
    }
}

int Workbench::beginGesture() {
    isInGesture = true;
    return document.newGesture();
}

void Workbench::endGesture() {
    isInGesture = false;
    followForces();
}

void Workbench::followForces() {
    const ForceScale next(document.scene());
    if (isInGesture || next.unit() == forceScale.unit()) return;
    forceScale = next;
    emit forcesChanged();
}

void Workbench::followScene() {
    const auto before = std::exchange(followed, document.snapshot());
    followForces();
    if (!before || before->blob != followed->blob) movedBlob.reset();
    if (selected && *selected >= document.scene().loads.size()) select(std::nullopt);
    if (currentLoadCase >= document.scene().loadCases) setLoadCase(currentLoadCase);
}
