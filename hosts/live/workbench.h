#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <vector>

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

    /// The selected pieces, each once.
    const std::vector<PieceId>& selectedPieces() const { return selected; }
    bool isSelected(const PieceId& piece) const;
    /// The selected piece, unless several are.
    std::optional<PieceId> selection() const;
    std::optional<std::size_t> selectedLoad() const;
    void select(std::vector<PieceId> pieces);
    void select(const std::optional<PieceId>& piece);
    void select(std::size_t load) { select(PieceId::load(load)); }
    /// Adds a piece to the selection, or takes it out.
    void toggle(const PieceId& piece);

    // These edit all selected pieces in one step, and do nothing without a selection.
    void deleteSelected();
    void copySelected();
    void cutSelected();
    void moveSelected(int right, int down, int gesture);
    /// Mirrors the pieces at the middle of the plate, or adds mirrored copies.
    void mirrorSelected(bool isLeftRight, bool copies);

    /// Edits the selected piece, unless several are. It stays selected.
    void changeSelected(const QString& what, const std::function<void(Piece&)>& change,
                        int gesture = Document::NO_GESTURE);

    bool hasCopy() const { return !copied.empty(); }
    /// Adds a copy of the pieces on the clipboard with their centre at `place`, in plate
    /// coordinates. Without a place, the copy lies next to the previous one.
    void paste(const std::optional<QPointF>& place);

    /// Adds pieces and selects them.
    bool putIn(const QString& what, const std::vector<Piece>& pieces,
               int gesture = Document::NO_GESTURE);
    bool putIn(const QString& what, const Piece& piece, int gesture = Document::NO_GESTURE) {
        return putIn(what, std::vector{piece}, gesture);
    }

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
    /// A stroke makes elements of the drawing solid (1) or void (0).
    bool draw(const QString& what, const Cells& cells, float density, int gesture);
    /// Once the time of a timed drawing is up, strokes win nothing.
    void setTimeUp(bool isToBe) { isTimeUp = isToBe; }
    /// Edits the scene with its timeline in the same way.
    bool editWhole(const QString& what, const std::function<void(Scene&)>& change);
    /// Makes an edit and then selects `pieces`, which the edit may set.
    bool editSelecting(const QString& what, const std::function<void(Scene&)>& change,
                       const std::vector<PieceId>& pieces, int gesture = Document::NO_GESTURE);

signals:
    void brushChanged();
    void forcesChanged();
    void loadCaseChanged();
    void selectionChanged();
    void copiedChanged();
    /// An edit is not possible. `reason` is a sentence.
    void refused(const QString& reason);
    /// A stroke by hand is about to change the document to this scene.
    void drawn(const Scene& next);
    /// A side effect of an edit, as a sentence.
    void told(const QString& what);

private:
    void followScene();
    void followForces();
    bool attempt(const std::function<void()>& edit);
    std::vector<Piece> contentOfSelection() const;
    bool replaceSelected(const QString& what, const std::vector<Piece>& pieces, int gesture);

    Brush currentBrush{3, true};
    Mirror currentMirror;
    Shape currentShape = Shape::STROKE;
    int currentLoadCase = 0;
    std::vector<PieceId> selected;
    std::vector<Piece> copied;
    std::optional<HeldLoad> turned;
    ForceScale forceScale;
    bool isInGesture = false;
    bool isTimeUp = false;
    std::optional<Area> movedBlob;
    std::shared_ptr<const Scene> followed;
};
