#include "field_manners.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QScrollBar>
#include <QSpinBox>
#include <QValidator>
#include <algorithm>

namespace {

/// Whether a number cannot contain it.
bool isForTheWindow(const QKeyEvent& key) {
    if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) return true;
    if ((key.modifiers() & ~Qt::ShiftModifier) != Qt::NoModifier || key.text().isEmpty())
        return false;
    const QChar letter = key.text().front();
    return letter.isLetter() || letter == ' ' || letter == '?' || letter == '[' || letter == ']';
}

bool isDecimalSign(QChar letter) { return letter == '.' || letter == ','; }

/// The text with the last sign as the decimal point of the locale, if that sign is there once.
/// Other signs separate thousands, and are left out: a field does not show them.
void readSigns(QString& text, int& cursor, const QString& point) {
    qsizetype last = text.size() - 1;
    while (last >= 0 && !isDecimalSign(text[last])) --last;
    if (last < 0) return;
    const bool isPoint = text.count(text[last]) == 1;
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        if (!isDecimalSign(text[i])) continue;
        const bool stays = isPoint && i == last;
        text.replace(i, 1, stays ? point : QString());
        if (!stays && i < cursor) --cursor;
    }
}

/// Lets number fields read both decimal signs, whatever sign the locale has.
class NumberReader : public QValidator {
public:
    NumberReader(QAbstractSpinBox& box, const QValidator& own)
        : QValidator(&box), field(box), inner(own) {}

    State validate(QString& text, int& cursor) const override {
        if (qobject_cast<const QDoubleSpinBox*>(&field) != nullptr)
            readSigns(text, cursor, field.locale().decimalPoint());
        else if (std::any_of(text.begin(), text.end(), isDecimalSign))
            // The field itself refuses the text at its end. Without the sign, 12.5 would be 125.
            return Intermediate;
        return inner.validate(text, cursor);
    }

    void fixup(QString& text) const override { inner.fixup(text); }

private:
    const QAbstractSpinBox& field;
    const QValidator& inner;
};

/// A locale with the same decimal point, in which points and commas do not separate thousands.
QLocale withoutThousands(const QLocale& own) {
    const QString separator = own.groupSeparator();
    if (separator != "." && separator != ",") return own;
    return own.decimalPoint() == "," ? QLocale(QLocale::German, QLocale::Austria)
                                     : QLocale(QLocale::English, QLocale::Switzerland);
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
        if (auto* const box = qobject_cast<QAbstractSpinBox*>(field)) readBothSigns(*box);
    }
}

void FieldManners::readBothSigns(QAbstractSpinBox& box) {
    auto* const line = box.findChild<QLineEdit*>();
    if (line == nullptr || dynamic_cast<const NumberReader*>(line->validator()) != nullptr) return;
    // Spin boxes take the separators of thousands out of what is typed, wherever they stand.
    box.setLocale(withoutThousands(box.locale()));
    if (line->validator() != nullptr) line->setValidator(new NumberReader(box, *line->validator()));
}

bool FieldManners::eventFilter(QObject* field, QEvent* event) {
    auto& widget = static_cast<QWidget&>(*field);
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
