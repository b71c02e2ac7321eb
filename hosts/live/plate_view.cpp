#include "plate_view.h"

#include <QAccessible>
#include <QLineF>
#include <QMouseEvent>
#include <QTabletEvent>
#include <QTouchEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "drawing/deformed_cells.h"
#include "piece_hand.h"
#include "reflection.h"

namespace {

constexpr double LEAST_SCALE = 0.2;  // pixels per element
constexpr double MOST_SCALE = 200;
constexpr double WHEEL_FACTOR = 1.0015;  // per eighth of a degree, 1.2 a notch
constexpr double KEY_FACTOR = 1.25;
constexpr double KEY_PAN = 60;          // pixels
constexpr double HAND_STEPS = 5;        // with Shift
constexpr double MARGIN_OF_HAND = 2;    // pixels
constexpr double MARGIN_OF_PLATE = 40;  // pixels
constexpr qint64 READABLE = 250;        // ms
constexpr double REFLECTION_OPACITY = 0.45;
constexpr double PLANE_OVERHANG = 16;  // pixels of the plane of symmetry beyond the plate

}  // namespace

PlateView::PlateView(QWidget* parent)
    : QWidget(parent),
      scene(std::make_shared<const Scene>()),
      drawn(scene),
      palette(&PlateColours::light()) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
    setMinimumSize(160, 120);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

PlateView::~PlateView() = default;

void PlateView::setScene(std::shared_ptr<const Scene> next) {
    const bool hasOtherSize = scene->width != next->width || scene->height != next->height ||
                              scene->symmetry != next->symmetry;
    scene = std::move(next);
    drawn = shownHalf(scene);
    reflected = reflectedHalf(*scene);
    look.outlines = PlateOutlines(*scene);
    markCases();
    if (hasOtherSize) {
        look.material = {};
        look.deformed.reset();
        look.floating = {};
        fit();
    }
    followSelection();
    // A gesture tells its own effect.
    if (hand && tool != nullptr && gesture == Gesture::NONE) emit handMoved(tool->describe(*hand));
    update();
}

void PlateView::setMaterial(const QImage& image, bool isSmooth) {
    look.material = image;
    look.isSmooth = isSmooth;
    readValueAgain();
    update();
}

void PlateView::setDeformed(std::optional<DeformedPlate> next) {
    look.deformed = std::move(next);
    update();
}

void PlateView::setDeformationShare(double share) {
    look.deformationShare = share;
    if (look.deformed) update();
}

void PlateView::setShownCases(std::optional<std::vector<int>> cases) {
    if (cases == shownCases) return;
    shownCases = std::move(cases);
    markCases();
    update();
}

void PlateView::markCases() {
    look.loadCasesInUse.assign(static_cast<std::size_t>(std::max(0, scene->loadCaseCount())),
                               false);
    for (const int used : scene->loadCasesInUse) {
        const bool isShown = !shownCases || std::find(shownCases->begin(), shownCases->end(),
                                                      used) != shownCases->end();
        look.loadCasesInUse[static_cast<std::size_t>(used)] = isShown;
    }
}

void PlateView::readValue() {
    if (!reading) return;
    sinceReading.start();
    const auto place = hand ? placeRead() : std::nullopt;
    emit valueRead(place ? reading(*place) : QString());
}

// Users point at what they see, and a deformed plate is drawn away from its place.
std::optional<QPointF> PlateView::placeRead() const {
    if (!look.deformed) return hand->plate;
    const Deformation& deformation = *look.deformed->field->deformation;
    const auto atRest = placeAtRest(
        look.deformed->design, deformation, *scene, {hand->plate.x(), hand->plate.y()},
        look.deformationShare * look.deformed->magnification / deformation.magnification);
    return atRest ? std::optional(QPointF(atRest->x, atRest->y)) : std::nullopt;
}

// Digits that change with every picture cannot be read.
void PlateView::readValueAgain() {
    if (hand && sinceReading.hasExpired(READABLE)) readValue();
}

void PlateView::setFloating(const QPainterPath& outline) {
    look.floating = outline;
    update();
}

void PlateView::setRulers(bool isToBe) {
    hasRulers = isToBe;
    if (isFitted) fit();
    update();
}

void PlateView::setFaults(std::vector<QPointF> places) {
    look.faults = std::move(places);
    update();
}

void PlateView::setSelection(const std::vector<PieceId>& pieces) {
    selection = pieces;
    followSelection();
    update();
}

void PlateView::followSelection() {
    look.selectedLoad.reset();
    selectionFrames.clear();
    for (const PieceId& id : selection) {
        if (!exists(*scene, id)) continue;
        // Its arrow shows the selection.
        if (selection.size() == 1 && id.type == PieceId::Type::LOAD)
            look.selectedLoad = id.index;
        else
            selectionFrames.push_back(boxOf(pieceOf(*scene, id)));
    }
}

std::optional<QPointF> PlateView::handPlace() const {
    if (!hand) return std::nullopt;
    return hand->plate;
}

void PlateView::setForces(const ForceScale& forces) {
    look.forces = forces;
    update();
}

void PlateView::setColours(const PlateColours& colourSet) {
    palette = &colourSet;
    update();
}

void PlateView::setTool(Tool* next) {
    isGestureByKey ? endGesture() : cancelGesture();
    tool = next;
    if (hand) moveHand(*hand);
    update();
}

void PlateView::setEraser(Tool* next) {
    if (isErasing) cancelGesture();
    eraser = next;
}

// While the right button is held, the eraser is in the hand.
void PlateView::takeUp(Qt::MouseButton button) {
    const bool erases = button == Qt::RightButton && eraser != nullptr;
    if (erases != isErasing) std::swap(tool, eraser);
    isErasing = erases;
}

// Keys hold nothing down, so a stroke of theirs stays when another tool or the menu is next.
void PlateView::endGesture() {
    if (gesture == Gesture::TOOL && tool != nullptr && hand) tool->release(*hand);
    leaveGesture();
}

void PlateView::cancelGesture() {
    if (gesture == Gesture::TOOL && tool != nullptr) tool->cancel();
    leaveGesture();
}

void PlateView::leaveGesture() {
    gesture = Gesture::NONE;
    isGestureByKey = false;
    takeUp(Qt::NoButton);
    emit gestureEnded();
    update();
}

void PlateView::zoom(double factor) { zoomAbout(QRectF(rect()).center(), factor); }

void PlateView::zoomAbout(QPointF place, double factor) {
    const QPointF fixed = where.toPlate(place);
    where.scale = std::clamp(where.scale * factor, LEAST_SCALE, MOST_SCALE);
    where.origin = place - where.scale * fixed;
    isFitted = false;
    keepInSight();
    update();
}

void PlateView::panBy(QPointF distance) {
    where.origin += distance;
    isFitted = false;
    keepInSight();
    update();
}

// Some of the plate stays in view, or nothing would tell where it is.
void PlateView::keepInSight() {
    const QSizeF plate = where.scale * QSizeF(scene->width, scene->height);
    where.origin.setX(
        std::clamp(where.origin.x(), MARGIN_OF_PLATE - plate.width(), width() - MARGIN_OF_PLATE));
    where.origin.setY(
        std::clamp(where.origin.y(), MARGIN_OF_PLATE - plate.height(), height() - MARGIN_OF_PLATE));
}

void PlateView::fit() {
    isFitted = true;
    if (scene->width == 0) return;
    const QRectF room =
        QRectF(rect()).adjusted(SIGN_MARGIN + (hasRulers ? RULER_WIDTH : 0), SIGN_MARGIN,
                                -SIGN_MARGIN, -SIGN_MARGIN - (hasRulers ? RULER_HEIGHT : 0));
    const auto [offset, size] = wholePlateOf(*scene);
    const double scale = std::min(room.width() / size.width(), room.height() / size.height());
    where.scale = std::clamp(scale, LEAST_SCALE, MOST_SCALE);
    where.origin =
        room.center() + where.scale * (offset - 0.5 * QPointF(size.width(), size.height()));
    update();
}

void PlateView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette->surroundings);
    if (scene->width > 0) {
        look.held = tool != nullptr ? tool->heldLoad() : std::nullopt;
        if (reflected) drawReflection(painter);
        PlatePainter plate(painter, where, *palette);
        plate.draw(*drawn, look);
        if (reflected) drawPlane(painter);
        if (hasRulers) plate.drawRulers(*scene, rect());
        for (const QRectF& frame : selectionFrames)
            paintFrame(painter, where, frame, palette->hand);
    }
    if (tool != nullptr && hand && gesture != Gesture::PAN) {
        painter.setRenderHint(QPainter::Antialiasing);
        tool->paintHint(painter, *hand, *palette);
    }
    if (hasFocus() && tool != nullptr) {
        painter.setPen(QPen(palette->hand, 1, Qt::DotLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(1, 1, -2, -2));
    }
    emit painted();
}

void PlateView::drawReflection(QPainter& painter) {
    PlateLook other = look;
    other.selectedLoad.reset();
    other.held.reset();
    other.faults.clear();
    painter.save();
    painter.setTransform(reflection(*scene, where));
    painter.setOpacity(REFLECTION_OPACITY);
    PlatePainter(painter, where, *palette).draw(*reflected, other);
    painter.restore();
}

void PlateView::drawPlane(QPainter& painter) const {
    painter.save();
    painter.setPen(QPen(palette->edge, 1.5, Qt::DashDotLine));
    const QLineF plane = planeOf(*scene, where);
    const QPointF beyond = PLANE_OVERHANG / plane.length() * (plane.p2() - plane.p1());
    painter.drawLine(plane.p1() - beyond, plane.p2() + beyond);
    painter.restore();
}

void PlateView::resizeEvent(QResizeEvent*) { isFitted ? fit() : keepInSight(); }

Hand PlateView::handAt(QPointF widget, Qt::KeyboardModifiers modifiers) const {
    return {widget, where.toPlate(widget), modifiers};
}

void PlateView::moveHand(const Hand& next) {
    hand = next;
    if (tool != nullptr) {
        if (gesture == Gesture::TOOL) tool->drag(next);
        setCursor(gesture == Gesture::PAN ? Qt::SizeAllCursor : tool->cursor(next));
        emit handMoved(tool->describe(next));
        update();
    }
    readValue();
}

void PlateView::mousePressEvent(QMouseEvent* event) {
    // The menu comes by an event of its own.
    if (event->button() == Qt::RightButton && hasMenu) return;
    pressAt(event->position(), event->modifiers(), event->button());
}

void PlateView::pressAt(QPointF widget, Qt::KeyboardModifiers modifiers, Qt::MouseButton button) {
    const Hand next = handAt(widget, modifiers);
    if (isGestureByKey) endGesture();
    if (gesture != Gesture::NONE) return;
    takeUp(button);
    const bool isTool =
        (button == Qt::LeftButton || isErasing) && tool != nullptr && tool->press(next);
    gesture = isTool ? Gesture::TOOL : Gesture::PAN;
    panStart = widget;
    moveHand(next);
}

// What a hand holds must not end where no hand can take hold of it again.
QPointF PlateView::inReach(QPointF widget) const {
    if (gesture != Gesture::TOOL || !tool->carries()) return widget;
    return {std::clamp(widget.x(), MARGIN_OF_HAND, width() - MARGIN_OF_HAND),
            std::clamp(widget.y(), MARGIN_OF_HAND, height() - MARGIN_OF_HAND)};
}

void PlateView::mouseMoveEvent(QMouseEvent* event) {
    dragTo(event->position(), event->modifiers());
}

void PlateView::dragTo(QPointF widget, Qt::KeyboardModifiers modifiers) {
    if (gesture == Gesture::PAN) {
        panBy(widget - panStart);
        panStart = widget;
    }
    if (gesture == Gesture::TOOL && isGestureByKey) return;
    moveHand(handAt(inReach(widget), modifiers));
}

void PlateView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton) releaseAt(event->position(), event->modifiers());
}

void PlateView::releaseAt(QPointF widget, Qt::KeyboardModifiers modifiers) {
    if (isGestureByKey) return;
    const Hand next = handAt(inReach(widget), modifiers);
    if (gesture == Gesture::TOOL && tool != nullptr) tool->release(next);
    leaveGesture();
    moveHand(next);
}

void PlateView::tabletEvent(QTabletEvent* event) {
    const bool isEraser = event->pointerType() == QPointingDevice::PointerType::Eraser;
    if (event->type() == QEvent::TabletPress)
        pressAt(event->position(), event->modifiers(),
                isEraser ? Qt::RightButton : event->button());
    else if (event->type() == QEvent::TabletMove)
        dragTo(event->position(), event->modifiers());
    else if (event->type() == QEvent::TabletRelease && event->buttons() == Qt::NoButton)
        releaseAt(event->position(), event->modifiers());
    // Otherwise Qt would send mouse events as well.
    event->accept();
}

// One finger acts as the left button; two fingers zoom and move the plate.
void PlateView::touch(const QTouchEvent& event) {
    const QList<QEventPoint>& fingers = event.points();
    const QPointF place = fingers.isEmpty() ? QPointF() : fingers.front().position();
    if (event.type() == QEvent::TouchCancel) {
        cancelGesture();
    } else if (fingers.size() > 1) {
        // The first finger came alone and may have begun to draw.
        if (!lastPinch) cancelGesture();
        // A finger that leaves ends the pinch; another one may begin the next.
        if (event.touchPointStates().testFlag(QEventPoint::Released))
            lastPinch = Pinch();
        else
            pinch(fingers);
    } else if (lastPinch) {
        // The finger that stays longer must not draw.
    } else if (event.type() == QEvent::TouchBegin) {
        pressAt(place, event.modifiers(), Qt::LeftButton);
    } else if (event.type() == QEvent::TouchUpdate) {
        dragTo(place, event.modifiers());
    } else {
        releaseAt(place, event.modifiers());
    }
    if (event.type() == QEvent::TouchBegin || event.type() == QEvent::TouchUpdate) return;
    lastPinch.reset();
    // A finger that has gone is nowhere.
    hand.reset();
    update();
}

void PlateView::pinch(const QList<QEventPoint>& fingers) {
    const QPointF one = fingers[0].position();
    const QPointF other = fingers[1].position();
    const Pinch now = {0.5 * (one + other), std::max(1.0, QLineF(one, other).length())};
    if (lastPinch && lastPinch->span > 0) {
        zoomAbout(lastPinch->centre, now.span / lastPinch->span);
        panBy(now.centre - lastPinch->centre);
    }
    lastPinch = now;
}

void PlateView::contextMenuEvent(QContextMenuEvent* event) {
    if (!hasMenu || tool == nullptr || isErasing || gesture != Gesture::NONE) return;
    // The menu key opens the menu at the cursor of the arrow keys.
    if (event->reason() == QContextMenuEvent::Mouse || !hand)
        moveHand(handAt(event->pos(), event->modifiers()));
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    emit menuAsked(*hand, isByMouse ? event->globalPos() : mapToGlobal(hand->widget.toPoint()));
}

void PlateView::wheelEvent(QWheelEvent* event) {
    zoomAbout(event->position(), std::pow(WHEEL_FACTOR, event->angleDelta().y()));
    event->accept();
}

void PlateView::leaveEvent(QEvent*) {
    if (gesture == Gesture::TOOL) return;
    hand.reset();
    emit handMoved({});
    readValue();
    update();
}

void PlateView::bringIntoView(QPointF plate) {
    const QPointF place = where.toWidget(plate);
    if (rect().contains(place.toPoint())) return;
    const double across = std::max(KEY_PAN, width() - KEY_PAN);
    const double down = std::max(KEY_PAN, height() - KEY_PAN);
    panBy(QPointF(std::clamp(place.x(), KEY_PAN, across), std::clamp(place.y(), KEY_PAN, down)) -
          place);
}

bool PlateView::moveHandByKey(const QKeyEvent& event) {
    const double steps = event.modifiers().testFlag(Qt::ShiftModifier) ? HAND_STEPS : 1;
    QPointF way;
    switch (event.key()) {
        case Qt::Key_Left:
            way = {-steps, 0};
            break;
        case Qt::Key_Right:
            way = {steps, 0};
            break;
        case Qt::Key_Up:
            way = {0, -steps};
            break;
        case Qt::Key_Down:
            way = {0, steps};
            break;
        default:
            return false;
    }
    // Between the middle of an element and its node, so that both are the one under the hand.
    const QPointF from = hand ? hand->plate : QPointF(scene->width / 2, scene->height / 2);
    const auto place = [](double at, double step, int last) {
        return std::clamp(std::floor(at) + step + 0.25, 0.25, last + 0.25);
    };
    const QPointF plate(place(from.x(), way.x(), scene->width),
                        place(from.y(), way.y(), scene->height));
    bringIntoView(plate);
    moveHand({where.toWidget(plate), plate, event.modifiers()});
    // Screen readers tell the change.
    const QString value = reading ? "  " + reading(plate) : QString();
    setAccessibleDescription(tool != nullptr ? tool->describe(*hand) + value : value);
    return true;
}

bool PlateView::panByKey(int key) {
    switch (key) {
        case Qt::Key_Left:
            panBy({KEY_PAN, 0});
            return true;
        case Qt::Key_Right:
            panBy({-KEY_PAN, 0});
            return true;
        case Qt::Key_Up:
            panBy({0, KEY_PAN});
            return true;
        case Qt::Key_Down:
            panBy({0, -KEY_PAN});
            return true;
        default:
            return false;
    }
}

void PlateView::pressByKey(Qt::KeyboardModifiers modifiers) {
    if (!hand) moveHand(handAt(where.toWidget(scene->width / 2, scene->height / 2), modifiers));
    if (gesture == Gesture::TOOL) {
        endGesture();
        return moveHand(*hand);
    }
    hand->modifiers = modifiers;
    if (tool->press(*hand)) {
        gesture = Gesture::TOOL;
        isGestureByKey = true;
    }
    moveHand(*hand);
}

void PlateView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && gesture != Gesture::NONE) {
        cancelGesture();
    } else if (event->modifiers().testFlag(Qt::ControlModifier) && panByKey(event->key())) {
        return;
    } else if (tool != nullptr && gesture == Gesture::NONE && tool->key(*event)) {
        update();
    } else if (tool != nullptr && moveHandByKey(*event)) {
        return;
    } else if (tool != nullptr &&
               (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        pressByKey(event->modifiers());
    } else if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal) {
        zoom(KEY_FACTOR);
    } else if (event->key() == Qt::Key_Minus) {
        zoom(1 / KEY_FACTOR);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PlateView::focusInEvent(QFocusEvent*) { update(); }

void PlateView::focusOutEvent(QFocusEvent*) {
    if (isGestureByKey) endGesture();
    update();
}

bool PlateView::event(QEvent* event) {
    // A key that the tool takes must not be taken for a shortcut of a menu.
    if (event->type() == QEvent::ShortcutOverride && gesture == Gesture::TOOL &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        event->accept();
    const bool isTouch = event->type() == QEvent::TouchBegin ||
                         event->type() == QEvent::TouchUpdate ||
                         event->type() == QEvent::TouchEnd || event->type() == QEvent::TouchCancel;
    // Touch pads, too, send such events.
    if (isTouch && static_cast<QTouchEvent*>(event)->device()->type() ==
                       QInputDevice::DeviceType::TouchScreen) {
        touch(static_cast<QTouchEvent&>(*event));
        event->accept();
        return true;
    }
    return QWidget::event(event);
}
