#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "brush.h"
#include "document.h"
#include "piece.h"
#include "plate_arrow.h"

/// The common state of the tools and the panels: the document, the selection, the brush, and the
/// present place of the blob.
class Workbench : public QObject {
    Q_OBJECT

public:
    Workbench();

    Document document;

    const Brush& brush() const { return currentBrush; }
    void setBrush(const Brush& brush);

    /// The mirror of the tools that draw a design.
    const Mirror& mirror() const { return currentMirror; }
    void setMirror(const Mirror& mirror) { currentMirror = mirror; }

    /// The shape that the tools for elements paint.
    Shape shape() const { return currentShape; }
    void setShape(Shape shape);

    /// The load case that new loads belong to.
    int loadCase() const { return currentLoadCase; }
    void setLoadCase(int loadCase);

    const std::optional<PieceId>& selection() const { return selected; }
    std::optional<std::size_t> selectedLoad() const;
    void select(const std::optional<PieceId>& piece);
    void select(std::size_t load) { select(PieceId::load(load)); }

    // These edit the selected piece, and do nothing without a selection.
    void deleteSelected();
    void copySelected();
    void cutSelected();
    /// Mirrors the piece at the middle of the plate, or adds a mirrored copy.
    void mirrorSelected(bool isLeftRight, bool copies);
    /// Edits the piece. It stays selected.
    void changeSelected(const QString& what, const std::function<void(Piece&)>& change,
                        int gesture = Document::NO_GESTURE);

    bool hasCopy() const { return copied.has_value(); }
    /// Adds a copy of the piece on the clipboard with its centre at `place`, in plate coordinates.
    /// Without a place, the copy lies next to the previous one.
    void paste(const std::optional<QPointF>& place);

    /// Adds a piece and selects it.
    bool putIn(const QString& what, const Piece& piece, int gesture = Document::NO_GESTURE);

    /// The selected load if a hand has turned it. Its free end stays where the hand left it while
    /// the load is selected.
    const std::optional<HeldLoad>& turnedLoad() const { return turned; }
    void setTurnedLoad(const std::optional<HeldLoad>& load) { turned = load; }

    /// The largest force of the scene has an arrow of ordinary length. The scale is constant during
    /// a gesture, so that changing one load does not rescale the other arrows.
    const ForceScale& forces() const { return forceScale; }

    /// Begins a gesture, from pressing a button to releasing it. Its edits become one step of the
    /// history.
    int beginGesture();
    void endGesture();

    /// The present place of the blob: the place in the scene, unless the blob moves.
    Area blob() const { return movedBlob ? *movedBlob : document.scene().blob; }
    void setMovedBlob(std::optional<Area> blob) { movedBlob = std::move(blob); }

    /// Edits the visible scene, or emits refused(). Returns whether the edit was possible.
    bool edit(const QString& what, const std::function<void(Scene&)>& change,
              int gesture = Document::NO_GESTURE);
    /// Edits the scene with its timeline in the same way.
    bool editWhole(const QString& what, const std::function<void(Scene&)>& change);
    /// Makes an edit and then selects `piece`, which the edit may set.
    bool editSelecting(const QString& what, const std::function<void(Scene&)>& change,
                       const PieceId& piece, int gesture = Document::NO_GESTURE);

signals:
    void brushChanged();
    void forcesChanged();
    void loadCaseChanged();
    void selectionChanged();
    void copiedChanged();
    /// An edit is not possible. `reason` is a sentence.
    void refused(const QString& reason);
    /// A side effect of an edit, as a sentence.
    void told(const QString& what);

private:
    void followScene();
    void followForces();
    bool attempt(const std::function<void()>& edit);

    Brush currentBrush{3, true};
    Mirror currentMirror;
    Shape currentShape = Shape::STROKE;
    int currentLoadCase = 0;
    std::optional<PieceId> selected;
    std::optional<Piece> copied;
    std::optional<HeldLoad> turned;
    ForceScale forceScale;
    bool isInGesture = false;
    std::optional<Area> movedBlob;
    std::shared_ptr<const Scene> followed;
};
