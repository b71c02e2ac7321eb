#include "scene_caption.h"

SceneCaption::SceneCaption(QWidget* parent) : QLabel(parent) {
    setContentsMargins(12, 5, 12, 5);
    setWordWrap(true);
    setTextFormat(Qt::RichText);
    // A long text must not widen the window.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
}

void SceneCaption::show(const QString& title, const QString& description) {
    QStringList parts;
    if (!title.isEmpty()) parts << "<b>" + title.toHtmlEscaped() + "</b>";
    if (!description.isEmpty()) parts << description.toHtmlEscaped();
    setText(parts.join(" &nbsp; "));
    setAccessibleName(QStringList({title, description}).join(". "));
    setVisible(!parts.isEmpty());
}
