#include "translation.h"

#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

namespace {

constexpr const char* DIRECTORY = ":/translations";

bool install(QCoreApplication& application, const QLocale& locale, const QString& name,
             const QString& directory) {
    auto translator = std::make_unique<QTranslator>(&application);
    if (!translator->load(locale, name, "_", directory)) return false;
    QCoreApplication::installTranslator(translator.release());
    return true;
}

}  // namespace

void installTranslation(QCoreApplication& application, const QLocale& locale) {
    // The plurals of English, for whatever has no other translation.
    install(application, QLocale::English, "voxam_live", DIRECTORY);
    if (locale.language() == QLocale::English) return;
    // Texts of Qt's own dialogs would be the only ones in another language than English.
    if (install(application, locale, "voxam_live", DIRECTORY))
        install(application, locale, "qtbase", QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}
