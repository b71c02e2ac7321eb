#include "banner.h"

#include <QAccessible>
#include <QHBoxLayout>

Banner::Banner(QWidget* parent)
    : QFrame(parent), sign(new QLabel(QString::fromUtf8("⚠"))), label(new QLabel) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 4, 12, 4);
    layout->addWidget(sign);
    layout->addWidget(label, 1);
    label->setWordWrap(true);
    label->setTextFormat(Qt::RichText);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    constexpr int slack = 4;  // pixels
    label->setFixedHeight(2 * label->fontMetrics().lineSpacing() + slack);
    setAccessibleName(tr("Problem"));
    sign->setStyleSheet("font-size: 18px;");
    refresh({});
}

void Banner::say(const QString& text, const QString& advice) {
    const QString next = text.isEmpty() ? QString() : text + " " + advice;
    if (problem == next) return;
    problem = next;
    setAccessibleDescription(problem);
    refresh(text.isEmpty() ? QString()
                           : "<b>" + text.toHtmlEscaped() + "</b> " + advice.toHtmlEscaped());
    if (text.isEmpty()) return;
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void Banner::setHint(const QString& text) {
    hint = text;
    if (problem.isEmpty()) refresh({});
}

void Banner::refresh(const QString& markup) {
    const bool isProblem = !markup.isEmpty();
    label->setText(isProblem ? markup : hint.toHtmlEscaped());
    // Whatever does not fit into the two lines.
    label->setToolTip(isProblem ? problem : hint);
    sign->setVisible(isProblem);
    // Dark on amber, in a light window as in a dark one.
    setStyleSheet(isProblem ? "Banner { background: #f6c85f; } QLabel { color: #2b2100; "
                              "background: transparent; }"
                            : "");
}
