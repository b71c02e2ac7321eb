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
    action.setToolTip("<p><b>" + name + "</b>" + (keys.isEmpty() ? "" : " (" + keys + ")") +
                      (explanation.isEmpty() ? "" : "<br>" + explanation) + "</p>");
    action.setStatusTip(explanation);
}
