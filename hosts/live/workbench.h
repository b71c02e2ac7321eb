#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "brush.h"
#include "document.h"
#include "plate_arrow.h"

/// What the tools and the panels share: the document, what is selected in it, the brush, and what
/// of the running design an edit has to start from.
class Workbench : public QObject {
    Q_OBJECT

public:
    Workbench();

    Document document;

    const Brush& brush() const { return currentBrush; }
    void setBrush(const Brush& brush);

    /// Of the tools that draw a design.
    const Mirror& mirror() const { return currentMirror; }
    void setMirror(const Mirror& mirror) { currentMirror = mirror; }

    /// The load case that new loads belong to.
    int loadCase() const { return currentLoadCase; }
    void setLoadCase(int loadCase);

    const std::optional<std::size_t>& selectedLoad() const { return selected; }
    void select(std::optional<std::size_t> load);
    void deleteSelectedLoad();

    /// The selected load, if a hand has turned it: its free end stays where the hand has left it
    /// for as long as it is selected.
    const std::optional<HeldLoad>& turnedLoad() const { return turned; }
    void setTurnedLoad(const std::optional<HeldLoad>& load) { turned = load; }

    /// The largest force of the scene has an arrow of ordinary length. The scale rests during a
    /// gesture, so that no arrow changes because another load does.
    const ForceScale& forces() const { return forceScale; }

    /// Begins a gesture of a hand, from pressing a button to releasing it: its edits become one
    /// step of the history.
    int beginGesture();
    void endGesture();

    /// Where the blob is now: in the scene, unless it moves.
    Area blob() const { return movedBlob ? *movedBlob : document.scene().blob; }
    void setMovedBlob(std::optional<Area> blob) { movedBlob = std::move(blob); }

    /// Makes an edit of the scene that is seen, or reports why it is not possible. Returns whether
    /// it was.
    bool edit(const QString& what, const std::function<void(Scene&)>& change,
              int gesture = Document::NO_GESTURE);
    /// The same for the scene with its timeline.
    bool editWhole(const QString& what, const std::function<void(Scene&)>& change);

signals:
    void brushChanged();
    void forcesChanged();
    void loadCaseChanged();
    void selectionChanged();
    /// An edit that was asked for is not possible, and why.
    void refused(const QString& reason);
    /// What an edit did beside what was asked for.
    void told(const QString& what);

private:
    void followScene();
    void followForces();
    bool attempt(const std::function<void()>& edit);

    Brush currentBrush{3, true};
    Mirror currentMirror;
    int currentLoadCase = 0;
    std::optional<std::size_t> selected;
    std::optional<HeldLoad> turned;
    ForceScale forceScale;
    bool isInGesture = false;
    std::optional<Area> movedBlob;
    std::shared_ptr<const Scene> followed;
};
