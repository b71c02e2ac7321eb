#include "workbench.h"

#include <algorithm>
#include <array>
#include <cmath>
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
    currentLoadCase = std::clamp(loadCase, 0, std::max(0, document.scene().loadCaseCount() - 1));
    emit loadCaseChanged();
}

void Workbench::setShape(Shape shape) {
    currentShape = shape;
    emit brushChanged();
}

std::optional<std::size_t> Workbench::selectedLoad() const {
    if (!selected || selected->type != PieceId::Type::LOAD) return std::nullopt;
    return selected->index;
}

void Workbench::select(const std::optional<PieceId>& piece) {
    if (selected == piece) return;
    selected = piece;
    turned.reset();
    emit selectionChanged();
}

void Workbench::deleteSelected() {
    if (!selected) return;
    const PieceId id = *selected;
    const std::array<QString, 3> names = {tr("Delete load"), tr("Delete support"),
                                          tr("Delete area")};
    const QString& name = names[static_cast<std::size_t>(id.type)];
    if (edit(name, [id](Scene& scene) { takeOut(scene, id); })) select(std::nullopt);
}

void Workbench::copySelected() {
    if (!selected) return;
    copied = pieceOf(document.scene(), *selected);
    emit copiedChanged();
}

void Workbench::cutSelected() {
    copySelected();
    deleteSelected();
}

void Workbench::paste(const std::optional<QPointF>& place) {
    if (!copied) return;
    attempt([&] {
        const Extent extent = extentOf(*copied);
        const int beside = 2;
        const auto step = [](double middle, const Range& range) {
            return static_cast<int>(std::lround(middle - 0.5 * (range.from + range.to)));
        };
        // The middle of an element is half a step from its node.
        const double half = std::holds_alternative<KeptArea>(*copied) ? 0.5 : 0;
        const int right = place ? step(place->x() - half, extent.x) : beside;
        const int down = place ? step(place->y() - half, extent.y) : beside;
        const Piece piece = moved(*copied, right, down, document.scene());
        if (putIn(tr("Paste"), piece)) copied = piece;
    });
}

void Workbench::mirrorSelected(bool isLeftRight, bool copies) {
    if (!selected) return;
    const Piece piece =
        mirrored(pieceOf(document.scene(), *selected), isLeftRight, document.scene());
    if (copies)
        putIn(tr("Copy mirrored"), piece);
    else
        changeSelected(tr("Mirror"), [&](Piece& each) { each = piece; });
}

void Workbench::changeSelected(const QString& what, const std::function<void(Piece&)>& change,
                               int gesture) {
    if (!selected) return;
    PieceId id = *selected;
    const auto exchange = [&](Scene& scene) {
        Piece piece = pieceOf(scene, id);
        change(piece);
        id = replace(scene, {id}, {piece}).front();
    };
    editSelecting(what, exchange, id, gesture);
}

bool Workbench::putIn(const QString& what, const Piece& piece, int gesture) {
    PieceId id;
    return editSelecting(
        what, [&](Scene& scene) { id = ::putIn(scene, piece); }, id, gesture);
}

bool Workbench::editSelecting(const QString& what, const std::function<void(Scene&)>& change,
                              const PieceId& piece, int gesture) {
    if (!edit(what, change, gesture)) return false;
    select(piece);
    return true;
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
    if (selected && !exists(document.scene(), *selected)) select(std::nullopt);
    if (currentLoadCase >= document.scene().loadCaseCount()) setLoadCase(currentLoadCase);
}
