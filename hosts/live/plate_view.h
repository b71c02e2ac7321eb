#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "plate_painter.h"
#include "tool.h"

/// The plate in a widget: zoom, pan, and the hand that edits it with a tool. Without a tool, it
/// only shows the plate.
class PlateView : public QWidget {
    Q_OBJECT

public:
    explicit PlateView(QWidget* parent = nullptr);
    ~PlateView() override;

    /// Shows a scene until the next call.
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
    void setSelectedLoad(std::optional<std::size_t> load);
    void setForces(const ForceScale& forces);
    void setColours(const PlateColours& colourSet);
    const PlateColours& colours() const { return *palette; }

    /// The tool must outlive the view or its next setTool(). A gesture of the mouse is
    /// cancelled; a gesture of keys ends.
    void setTool(Tool* next);
    /// The tool of the right button; null: the button moves the plate.
    void setEraser(Tool* next);
    bool isInGesture() const { return gesture == Gesture::TOOL; }
    void cancelGesture();

    const PlateTransform& transform() const { return where; }
    void zoom(double factor);
    void fit();

signals:
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
    void endGesture();
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

    std::shared_ptr<const Scene> scene;
    PlateLook look;
    const PlateColours* palette;
    PlateTransform where;
    bool isFitted = true;
    bool hasRulers = true;

    Tool* tool = nullptr;    // in the hand
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
