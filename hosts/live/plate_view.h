#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "piece.h"
#include "plate_painter.h"
#include "tool.h"

/// The plate in a widget: zoom, pan, and the hand that edits it with a tool. Without a tool, it
/// only shows the plate.
class PlateView : public QWidget {
    Q_OBJECT

public:
    explicit PlateView(QWidget* parent = nullptr);
    ~PlateView() override;

    /// Shows a scene until the next call. The other half of a symmetric plate appears as a
    /// reflection.
    void setScene(std::shared_ptr<const Scene> next);
    void setMaterial(const QImage& image, bool isSmooth);
    /// Draws a deformed plate over the material.
    void setDeformed(std::optional<DeformedPlate> next);
    /// How much of the deformation is drawn, from 0 to 1.
    void setDeformationShare(double share);
    /// Load cases whose arrows are not faint; without them all that are in use.
    void setShownCases(std::optional<std::vector<int>> cases);
    /// Gives the text on the value at a place of the plate, for the status bar.
    void setReading(std::function<QString(QPointF plate)> next) { reading = std::move(next); }
    /// The outline of floating parts, in plate coordinates.
    void setFloating(const QPainterPath& outline);
    /// Whether nodes are numbered along the plate.
    void setRulers(bool isToBe);
    void setFaults(std::vector<QPointF> places);
    void setSelection(const std::vector<PieceId>& pieces);
    void setForces(const ForceScale& forces);
    void setColours(const PlateColours& colourSet);
    const PlateColours& colours() const { return *palette; }

    /// The tool must outlive the view or its next setTool(). A gesture of the mouse is
    /// cancelled; a gesture of keys ends.
    void setTool(Tool* next);
    /// The tool of the right button and of a pen's eraser; null: they move the plate.
    void setEraser(Tool* next);
    /// Makes the right button ask for a menu instead.
    void setMenu(bool isToBe) { hasMenu = isToBe; }
    bool isInGesture() const { return gesture == Gesture::TOOL; }
    void cancelGesture();
    /// As if the button were released where the hand is.
    void endGesture();

    const PlateTransform& transform() const { return where; }
    void zoom(double factor);
    void fit();

    /// The place under the hand, in plate coordinates.
    std::optional<QPointF> handPlace() const;

signals:
    /// The right button or the menu key asks for the menu of the place under the hand. `at` is a
    /// place on the screen. Not emitted while the right button erases.
    void menuAsked(const Hand& hand, QPoint at);
    /// The text about the place under the hand; empty if the hand left.
    void handMoved(const QString& description);
    /// The value under the hand, or an empty text.
    void valueRead(const QString& value);
    /// The tool has ended or cancelled its gesture.
    void gestureEnded();
    /// The last picture is on the screen.
    void painted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void tabletEvent(QTabletEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    enum class Gesture { NONE, TOOL, PAN };
    /// Two fingers.
    struct Pinch {
        QPointF centre;
        double span = 0;
    };

    void zoomAbout(QPointF place, double factor);
    void panBy(QPointF distance);
    Hand handAt(QPointF widget, Qt::KeyboardModifiers modifiers) const;
    QPointF inReach(QPointF widget) const;
    void keepInSight();
    void moveHand(const Hand& next);
    bool panByKey(int key);
    void bringIntoView(QPointF plate);
    bool moveHandByKey(const QKeyEvent& event);
    void pressByKey(Qt::KeyboardModifiers modifiers);
    void leaveGesture();
    void takeUp(Qt::MouseButton button);
    // Mouse, pen and finger do the same.
    void pressAt(QPointF widget, Qt::KeyboardModifiers modifiers, Qt::MouseButton button);
    void dragTo(QPointF widget, Qt::KeyboardModifiers modifiers);
    void releaseAt(QPointF widget, Qt::KeyboardModifiers modifiers);
    void touch(const QTouchEvent& event);
    void pinch(const QList<QEventPoint>& fingers);
    void markCases();
    void readValue();
    void readValueAgain();
    std::optional<QPointF> placeRead() const;

    void followSelection();

    void drawReflection(QPainter& painter);
    void drawPlane(QPainter& painter) const;

    std::shared_ptr<const Scene> scene;
    std::shared_ptr<const Scene> drawn;      // of the scene
    std::shared_ptr<const Scene> reflected;  // of the scene's other half; null without one
    std::vector<PieceId> selection;
    std::vector<QRectF> selectionFrames;
    PlateLook look;
    const PlateColours* palette;
    PlateTransform where;
    bool isFitted = true;
    bool hasRulers = true;

    Tool* tool = nullptr;  // in the hand
    bool hasMenu = false;
    Tool* eraser = nullptr;  // or the other one, while the right button is held
    bool isErasing = false;
    Gesture gesture = Gesture::NONE;
    bool isGestureByKey = false;
    std::optional<Hand> hand;
    QPointF panStart;
    std::optional<Pinch> lastPinch;  // from the second finger until all have gone
    std::optional<std::vector<int>> shownCases;
    std::function<QString(QPointF plate)> reading;
    QElapsedTimer sinceReading;
};
