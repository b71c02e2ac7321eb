#pragma once

#include <QFormLayout>
#include <QWidget>

/// Explains a field in plain words, as its tooltip and for What's This.
inline void explainField(QWidget& field, const QString& text) {
    // Only rich text is broken into lines.
    const QString markup = "<qt>" + text.toHtmlEscaped() + "</qt>";
    field.setToolTip(markup);
    field.setWhatsThis(markup);
}

/// The same for the label of the field, too.
inline void explainRow(const QFormLayout& form, QWidget& field, const QString& text) {
    explainField(field, text);
    if (QWidget* label = form.labelForField(&field)) explainField(*label, text);
}
