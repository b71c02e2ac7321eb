#include <QApplication>
#include <QCommandLineParser>

#include "main_window.h"

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
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

    MainWindow window;
    window.show();
    if (scenes.isEmpty() || !window.open(scenes.front().toStdString())) window.openAny();
    return QApplication::exec();
}
