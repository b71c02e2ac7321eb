#include <QApplication>
#include <QCommandLineParser>
#include <algorithm>
#include <clocale>
#include <cstdio>

#include "main_window.h"
#include "translation.h"

namespace {

/// Whether there is something to open a window on, as far as the environment tells.
bool hasDisplay() {
    if (QSysInfo::kernelType() != "linux") return true;
    const auto names = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    return std::any_of(names.begin(), names.end(),
                       [](const char* name) { return !qEnvironmentVariableIsEmpty(name); });
}

}  // namespace

int main(int argc, char* argv[]) {
    const bool canShow = hasDisplay();
    // What needs no window is told all the same.
    if (!canShow) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    // Qt takes over the locale of the user, which is for people: files have points, not commas.
    std::setlocale(LC_NUMERIC, "C");
    installTranslation(application, QLocale());
    QApplication::setOrganizationName("Voxam");
    QApplication::setApplicationName("voxam-live");
    QApplication::setApplicationDisplayName("Voxam Live");
    QApplication::setApplicationVersion(VOXAM_LIVE_VERSION);

    QCommandLineParser parser;
    parser.setApplicationDescription("Edit a plate while the stiffest structure forms in it.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("scene", "The scene to open, instead of the last one.", "[SCENE]");
    parser.process(application);
    const QStringList scenes = parser.positionalArguments();
    if (scenes.size() > 1) parser.showHelp(2);

    if (!canShow) {
        std::fputs("voxam-live: there is no display to open a window on\n", stderr);
        return 1;
    }

    MainWindow window;
    window.endOnSignals();
    window.show();
    if (scenes.isEmpty() || !window.open(scenes.front().toStdString())) window.openAny();
    window.offerTour();
    return QApplication::exec();
}
