#pragma once

#include <QAction>
#include <QString>

/// Gives an action its explanation: as tooltip with name and key, and for the status bar. Call it
/// after the shortcut is set.
inline void explain(QAction& action, const QString& explanation) {
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    QString name = action.text();
    name.remove('&');
    if (name.endsWith("...")) name.chop(3);
    // Without markup, which screen readers would read out.
    action.setToolTip(name + (keys.isEmpty() ? "" : " (" + keys + ")") +
                      (explanation.isEmpty() ? "" : "\n" + explanation));
    action.setStatusTip(explanation);
    action.setWhatsThis("<qt><b>" + name.toHtmlEscaped() + "</b><br>" +
                        explanation.toHtmlEscaped() + "</qt>");
}
