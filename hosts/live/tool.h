#pragma once

#include <QKeyEvent>
#include <QPainter>
#include <QString>

#include "plate_colours.h"
#include "workbench.h"

/// Where the hand is: the pointer, or the marker that the arrow keys move.
struct Hand {
    QPointF widget;
    QPointF plate;  ///< in elements
    Qt::KeyboardModifiers modifiers;
};

/// The objects that a tool works on.
struct ToolSite {
    Workbench& bench;
    const PlateTransform& transform;

    const Scene& scene() const { return bench.document.scene(); }
};

/// One way to edit the plate. A gesture goes from press() over any number of drag() to release() or
/// cancel(); pointer and keyboard make the same calls.
class Tool {
public:
    explicit Tool(const ToolSite& toolSite) : site(toolSite) {}
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;
    virtual ~Tool() = default;

    /// Returns false if there is nothing here for the tool. Dragging then moves the view.
    virtual bool press(const Hand& hand) = 0;
    virtual void drag(const Hand&) {}
    virtual void release(const Hand&) {}
    /// Whether the gesture moves an object. The view then keeps the hand inside, so that the user
    /// can grab the object again.
    virtual bool carries() const { return false; }
    /// Whether it can paint by a rectangle or disc.
    virtual bool paintsShapes() const { return false; }
    /// Ends the gesture and undoes it.
    virtual void cancel();
    /// Returns whether the tool used the key.
    virtual bool key(const QKeyEvent&) { return false; }

    /// Shows the place under the hand, and the effect of a press.
    virtual void paintHint(QPainter& painter, const Hand& hand,
                           const PlateColours& colours) const = 0;
    /// For the status bar and for screen readers.
    virtual QString describe(const Hand& hand) const;
    virtual Qt::CursorShape cursor(const Hand&) const { return Qt::CrossCursor; }
    /// The load whose arrow is being turned: it must not flip to the other side under the hand.
    virtual std::optional<HeldLoad> heldLoad() const { return site.bench.turnedLoad(); }

protected:
    void beginGesture() { gesture = site.bench.beginGesture(); }

    ToolSite site;
    int gesture = Document::NO_GESTURE;
};

/// A node for the status bar, with its place in millimetres where the scene has a size of an
/// element.
QString describeNode(const Scene& scene, const Node& node);

/// Outlines elements under the hand.
void paintCells(QPainter& painter, const ToolSite& site, const Cells& cells, const QColor& colour);
/// Marks nodes under the hand.
void paintNodes(QPainter& painter, const ToolSite& site, const std::vector<Node>& nodes,
                const QColor& colour);
