#pragma once

#include <QCoreApplication>
#include <QLocale>

/// Shows the texts of the window and of Qt in the language of a locale. Languages without a
/// translation get English. The program remains the owner of the translation.
void installTranslation(QCoreApplication& application, const QLocale& locale);
