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

    /// The load case that new loads belong to.
    int loadCase() const { return currentLoadCase; }
    void setLoadCase(int loadCase);

    const std::optional<std::size_t>& selectedLoad() const { return selected; }
    void select(std::optional<std::size_t> load);
    void deleteSelectedLoad();

    const ForceScale& forces() const { return forceScale; }

    /// Where the blob is now: in the scene, unless it moves.
    Area blob() const { return movedBlob ? *movedBlob : document.scene().blob; }
    void setMovedBlob(std::optional<Area> blob) { movedBlob = std::move(blob); }

    /// Makes an edit of the scene, or reports why it is not possible. Returns whether it was.
    bool edit(const QString& what, const std::function<void(Scene&)>& change,
              int gesture = Document::NO_GESTURE);

signals:
    void brushChanged();
    void loadCaseChanged();
    void selectionChanged();
    /// An edit that was asked for is not possible, and why.
    void refused(const QString& reason);

private:
    void followScene();

    Brush currentBrush{3, true};
    int currentLoadCase = 0;
    std::optional<std::size_t> selected;
    ForceScale forceScale;
    std::optional<Area> movedBlob;
};
