#include "field_manners.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSpinBox>

namespace {

/// Whether a number cannot contain it.
bool isForTheWindow(const QKeyEvent& key) {
    if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) return true;
    if ((key.modifiers() & ~Qt::ShiftModifier) != Qt::NoModifier || key.text().isEmpty())
        return false;
    const QChar letter = key.text().front();
    return letter.isLetter() || letter == ' ' || letter == '?' || letter == '[' || letter == ']';
}

/// A point that the locale would take for a separator of thousands, or refuse.
bool isForeignPoint(const QWidget& field, const QEvent& event) {
    return event.type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(event).text() == "." &&
           qobject_cast<const QDoubleSpinBox*>(&field) != nullptr &&
           field.locale().decimalPoint() != ".";
}

/// Replaces unfinished input by the current value. Returns false if there is no such input.
template <typename Box>
bool discardsTyped(QWidget& field) {
    auto* const box = qobject_cast<Box*>(&field);
    if (box == nullptr) return false;
    const QString typed = box->text();
    box->setValue(box->value());
    return box->text() != typed;
}

bool isEscape(const QEvent& event) {
    return event.type() == QEvent::KeyPress &&
           static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
}

}  // namespace

void FieldManners::teach(QWidget& panel) {
    for (QWidget* field : panel.findChildren<QWidget*>()) {
        if (qobject_cast<QAbstractSpinBox*>(field) == nullptr &&
            qobject_cast<QAbstractSlider*>(field) == nullptr &&
            qobject_cast<QComboBox*>(field) == nullptr)
            continue;
        // The wheel scrolls a list even if the list does not have the focus.
        if (qobject_cast<QScrollBar*>(field) != nullptr) continue;
        // Otherwise the wheel itself would choose it.
        field->setFocusPolicy(Qt::StrongFocus);
        field->installEventFilter(this);
    }
}

bool FieldManners::eventFilter(QObject* field, QEvent* event) {
    auto& widget = static_cast<QWidget&>(*field);
    if (isForeignPoint(widget, *event)) {
        QKeyEvent point(QEvent::KeyPress, Qt::Key_Comma, Qt::NoModifier,
                        widget.locale().decimalPoint());
        QApplication::sendEvent(field, &point);
        return true;
    }
    if (isEscape(*event) &&
        (discardsTyped<QSpinBox>(widget) || discardsTyped<QDoubleSpinBox>(widget)))
        return true;
    const bool isWheelElsewhere = event->type() == QEvent::Wheel && !widget.hasFocus();
    const bool isKeyOfWindow = event->type() == QEvent::ShortcutOverride &&
                               qobject_cast<QAbstractSpinBox*>(field) != nullptr &&
                               isForTheWindow(static_cast<QKeyEvent&>(*event));
    if (!isWheelElsewhere && !isKeyOfWindow) return QObject::eventFilter(field, event);
    event->ignore();
    return true;
}
