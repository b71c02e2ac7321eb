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

bool Workbench::isSelected(const PieceId& piece) const {
    return std::find(selected.begin(), selected.end(), piece) != selected.end();
}

std::optional<PieceId> Workbench::selection() const {
    if (selected.size() != 1) return std::nullopt;
    return selected.front();
}

std::optional<std::size_t> Workbench::selectedLoad() const {
    const auto piece = selection();
    if (!piece || piece->type != PieceId::Type::LOAD) return std::nullopt;
    return piece->index;
}

void Workbench::select(std::vector<PieceId> pieces) {
    if (selected == pieces) return;
    selected = std::move(pieces);
    turned.reset();
    emit selectionChanged();
}

void Workbench::select(const std::optional<PieceId>& piece) {
    select(piece ? std::vector{*piece} : std::vector<PieceId>());
}

void Workbench::toggle(const PieceId& piece) {
    auto pieces = selected;
    if (std::erase(pieces, piece) == 0) pieces.push_back(piece);
    select(std::move(pieces));
}

void Workbench::deleteSelected() {
    if (selected.empty()) return;
    const auto ids = selected;
    const std::array<QString, 3> names = {tr("Delete load"), tr("Delete support"),
                                          tr("Delete area")};
    const QString name =
        ids.size() > 1 ? tr("Delete selection") : names[static_cast<std::size_t>(ids.front().type)];
    if (edit(name, [&](Scene& scene) { takeOut(scene, ids); })) select(std::nullopt);
}

std::vector<Piece> Workbench::contentOfSelection() const {
    std::vector<Piece> pieces;
    for (const PieceId& id : selected) pieces.push_back(pieceOf(document.scene(), id));
    return pieces;
}

void Workbench::copySelected() {
    if (selected.empty()) return;
    copied = contentOfSelection();
    emit copiedChanged();
}

void Workbench::cutSelected() {
    copySelected();
    deleteSelected();
}

void Workbench::paste(const std::optional<QPointF>& place) {
    if (copied.empty()) return;
    attempt([&] {
        QRectF box = boxOf(copied.front());
        for (const Piece& piece : copied) {
            const QRectF other = boxOf(piece);
            // Not united(): the box of a node is empty.
            box = {QPointF(std::min(box.left(), other.left()), std::min(box.top(), other.top())),
                   QPointF(std::max(box.right(), other.right()),
                           std::max(box.bottom(), other.bottom()))};
        }
        const QPointF way = place ? *place - box.center() : QPointF(2, 2);
        const auto pieces = moved(copied, static_cast<int>(std::lround(way.x())),
                                  static_cast<int>(std::lround(way.y())), document.scene());
        if (putIn(tr("Paste"), pieces)) copied = pieces;
    });
}

void Workbench::moveSelected(int right, int down, int gesture) {
    if (selected.empty()) return;
    const std::array<QString, 3> names = {tr("Move load"), tr("Move support"), tr("Move area")};
    const QString name = selected.size() > 1
                             ? tr("Move selection")
                             : names[static_cast<std::size_t>(selected.front().type)];
    attempt([&] {
        replaceSelected(name, moved(contentOfSelection(), right, down, document.scene()), gesture);
    });
}

void Workbench::mirrorSelected(bool isLeftRight, bool copies) {
    std::vector<Piece> pieces = contentOfSelection();
    if (pieces.empty()) return;
    for (Piece& piece : pieces) piece = mirrored(piece, isLeftRight, document.scene());
    if (copies)
        putIn(tr("Copy mirrored"), pieces);
    else
        replaceSelected(tr("Mirror"), pieces, Document::NO_GESTURE);
}

void Workbench::changeSelected(const QString& what, const std::function<void(Piece&)>& change,
                               int gesture) {
    if (!selection()) return;
    attempt([&] {
        std::vector<Piece> pieces = contentOfSelection();
        change(pieces.front());
        replaceSelected(what, pieces, gesture);
    });
}

bool Workbench::replaceSelected(const QString& what, const std::vector<Piece>& pieces,
                                int gesture) {
    std::vector<PieceId> ids = selected;
    return editSelecting(
        what, [&](Scene& scene) { ids = replace(scene, ids, pieces); }, ids, gesture);
}

bool Workbench::putIn(const QString& what, const std::vector<Piece>& pieces, int gesture) {
    std::vector<PieceId> ids;
    return editSelecting(
        what, [&](Scene& scene) { ids = ::putIn(scene, pieces); }, ids, gesture);
}

bool Workbench::editSelecting(const QString& what, const std::function<void(Scene&)>& change,
                              const std::vector<PieceId>& pieces, int gesture) {
    if (!edit(what, change, gesture)) return false;
    select(pieces);
    return true;
}

bool Workbench::edit(const QString& what, const std::function<void(Scene&)>& change, int gesture) {
    return attempt([&] {
        Scene next = document.scene();
        change(next);
        document.edit(what, std::move(next), gesture);
    });
}

bool Workbench::draw(const QString& what, const Cells& cells, float density, int gesture) {
    const auto stroke = [&](Scene& scene) {
        const bool isByHand = !isTimeUp && document.byHand.contains(scene);
        paintDrawing(scene, cells, density);
        // Before the edit, because its receivers ask for it.
        if (isByHand) document.byHand.add(scene);
        emit drawn(scene);
    };
    return edit(what, stroke, gesture);
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
    auto left = selected;
    std::erase_if(left, [&](const PieceId& id) { return !exists(document.scene(), id); });
    select(std::move(left));
    if (currentLoadCase >= document.scene().loadCaseCount()) setLoadCase(currentLoadCase);
}
