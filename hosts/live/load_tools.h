#pragma once

#include <QElapsedTimer>
#include <optional>
#include <utility>
#include <vector>

#include "piece_hand.h"
#include "tool.h"

/// How a hand took hold of an arrow by its free end.
struct Grip {
    double force = 0;
    double length = 0;                 ///< of the arrow when it was taken hold of, in pixels
    std::optional<double> reach = {};  ///< from the node to the hand now, in pixels
};

/// Selects loads, supports and kept areas and moves them, and turns and scales the arrows of loads.
/// With Alt it moves a copy. With Ctrl it selects several, one by one or by a frame.
class SelectTool : public Tool {
public:
    explicit SelectTool(const ToolSite& toolSite) : Tool(toolSite), pieces(toolSite) {}

    bool press(const Hand& hand) override;
    void drag(const Hand& hand) override;
    void release(const Hand& hand) override;
    void cancel() override;
    bool carries() const override { return true; }
    /// The piece that a press would grab.
    std::optional<PieceId> pieceAt(const Hand& hand) const;
    bool key(const QKeyEvent& event) override;
    void paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const override;
    QString describe(const Hand& hand) const override;
    Qt::CursorShape cursor(const Hand& hand) const override;
    std::optional<HeldLoad> heldLoad() const override;

private:
    enum class Part { FOOT, FREE_END };
    struct Hold {
        std::size_t load;
        Part part;
        bool isTailAtNode;
        QPointF offset;  // from the hand to the corner of the load's nodes, in elements
        Grip grip;       // of the free end
        bool copies = false;
    };

    std::optional<Hold> find(const Hand& hand) const;
    std::optional<Hold> findOn(const std::vector<LoadArrow>& arrows, const Hand& hand) const;
    ArrowsByLoad arrows() const;
    void dragFoot(const Hand& hand);
    void selectWithin(const QRectF& frame);
    QString countOfSelection() const;
    void selectNext(int step);
    void nudge(int dx, int dy);
    void turn(double degrees, double factor);
    /// Strokes of keys in quick succession are one step of the history.
    void changeByKey(const QString& what, const std::function<void(Piece&)>& change);

    void doByKey(const QString& what, const std::function<void()>& act);

    std::optional<Hold> held;           // of a load
    PieceHand pieces;                   // holds all others
    std::optional<PieceId> clicked;     // one of several, until the hand moves
    std::optional<QPointF> frameStart;  // in plate coordinates
    QPointF frameEnd;
    QElapsedTimer sinceKey;
    std::pair<QString, std::vector<PieceId>> lastByKey;  // the action, and its pieces then
    int keyGesture = Document::NO_GESTURE;
};

/// Adds a load at a node; dragging away from it pulls the arrow.
class LoadTool : public Tool {
public:
    using Tool::Tool;

    bool press(const Hand& hand) override;
    void drag(const Hand& hand) override;
    void release(const Hand& hand) override;
    bool carries() const override { return true; }
    void cancel() override;
    void paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const override;
    QString describe(const Hand& hand) const override;
    std::optional<HeldLoad> heldLoad() const override;

private:
    std::optional<Node> node;  // of the load that is being drawn
    Grip grip;
    bool wasPulled = false;
};
