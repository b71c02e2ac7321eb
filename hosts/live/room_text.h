#pragma once

#include <QString>

/// A text of the code that all hosts share, in the language of the window. The text is in the words
/// of the window already. Numbers in it get the separators of the locale. A text that is not known
/// stays in English.
QString roomText(const QString& text);
