#include "banner.h"

#include <QAccessible>
#include <QHBoxLayout>

Banner::Banner(QWidget* parent) : QFrame(parent), sign(new QLabel("⚠")), label(new QLabel) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 8);
    layout->addWidget(sign);
    layout->addWidget(label, 1);
    label->setWordWrap(true);
    label->setTextFormat(Qt::RichText);
    setAccessibleName(tr("Problem"));
    // Dark on amber, in a light window as in a dark one.
    setStyleSheet(
        "Banner { background: #f6c85f; } QLabel { color: #2b2100; background: transparent; }");
    sign->setStyleSheet("font-size: 18px;");
    hide();
}

void Banner::say(const QString& text, const QString& advice) {
    const QString whole = text.isEmpty()
                              ? QString()
                              : "<b>" + text.toHtmlEscaped() + "</b> " + advice.toHtmlEscaped();
    if (label->text() == whole) return;
    label->setText(whole);
    setAccessibleDescription(text + " " + advice);
    setVisible(!text.isEmpty());
    if (!text.isEmpty()) {
        QAccessibleEvent event(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
}

QString Banner::text() const { return isHidden() ? QString() : accessibleDescription(); }
