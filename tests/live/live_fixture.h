#pragma once

#include <QMenuBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "main_window.h"

/// A window with a scene, worked on as a hand would: with events, and by looking at the picture.
class LiveFixture {
public:
    explicit LiveFixture(const std::string& scene) {
        window.resize(1100, 750);
        window.show();
        window.open(std::filesystem::path(VOXAM_SCENES) / scene);
    }

    explicit LiveFixture(const Scene& scene) {
        window.resize(1100, 750);
        window.show();
        bench().document.open(scene, {});
        run().setPlaying(true);
    }

    /// An optimisation that takes next to no time.
    static Scene smallScene() {
        Scene scene;
        scene.title = "Small";
        scene.width = 24;
        scene.height = 12;
        scene.volumeFraction = 0.5;
        scene.loadCasesInUse = {0};
        scene.loads = {{{24, 24}, {6, 6}, 0, 1, 0}};
        scene.supports = {{{0, 0}, {0, 12}, true, true}};
        return scene;
    }

    Workbench& bench() { return window.workbench(); }
    const Scene& scene() { return bench().document.scene(); }
    LiveRun& run() { return window.liveRun(); }
    PlateView& view() { return window.plateStage().plate(); }

    /// Waits until a picture of the settings in force has come to this iteration.
    bool reach(int iteration) {
        return QTest::qWaitFor(
            [&] {
                const IterationNumbers& numbers = run().frame().numbers;
                return numbers.revision == run().revision() && numbers.iteration >= iteration;
            },
            PATIENCE);
    }

    /// Lets the design follow the settings in force for so many iterations, or until it rests.
    bool runFor(int iterations) {
        // A torn design may start afresh meanwhile.
        const auto isThere = [&] { return run().frame().numbers.revision == run().revision(); };
        if (!QTest::qWaitFor(isThere, PATIENCE)) return false;
        const int last = run().frame().numbers.iteration + iterations;
        const auto isDone = [&] {
            return run().frame().numbers.iteration >= last || isAtRest(run().state());
        };
        return QTest::qWaitFor(isDone, PATIENCE);
    }

    /// Until the design rests and has its score.
    bool settle() {
        return QTest::qWaitFor(
            [&] {
                return isAtRest(run().state()) &&
                       window.plateStage().resultLine().text().contains("as drawn");
            },
            PATIENCE);
    }

    /// Mean density of a rectangle of elements.
    double material(int fromX, int toX, int fromY, int toY) {
        const Frame& frame = run().frame();
        double sum = 0;
        int count = 0;
        for (int y = fromY * frame.refinement; y < (toY + 1) * frame.refinement; ++y)
            for (int x = fromX * frame.refinement; x < (toX + 1) * frame.refinement; ++x, ++count)
                sum += static_cast<double>(frame.material.at(x, y));
        return sum / count;
    }

    /// The arrow that a hand can turn.
    LoadArrow handle(std::size_t load) {
        const auto arrows = arrowsOf(scene(), bench().forces(), view().transform());
        return handleOf(byLoad(arrows, scene(), view().transform()).at(load));
    }

    QPoint at(double x, double y) {
        // Where the plate will be when the event arrives.
        QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        return view().transform().toWidget(x, y).toPoint();
    }

    void press(QPoint place, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseMove(&view(), place);
        QTest::mousePress(&view(), Qt::LeftButton, keys, place);
    }
    void moveTo(QPoint place, Qt::KeyboardModifiers keys = {}) {
        QMouseEvent event(QEvent::MouseMove, place, view().mapToGlobal(place), Qt::NoButton,
                          Qt::LeftButton, keys);
        QApplication::sendEvent(&view(), &event);
    }
    void release(QPoint place) { QTest::mouseRelease(&view(), Qt::LeftButton, {}, place); }

    /// From press to release, with a few stops on the way.
    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers keys = {}) {
        constexpr int stops = 6;
        press(from, keys);
        for (int i = 1; i <= stops; ++i) moveTo(from + (to - from) * i / stops, keys);
        release(to);
    }

    void key(Qt::Key key, Qt::KeyboardModifiers keys = {}) { QTest::keyClick(&view(), key, keys); }
    /// Entries of the menus, and of menus within them.
    QList<QAction*> entries() { return entriesOf(*window.menuBar()); }

    /// Takes up the tool with this key in the menus, unless the mode has no such tool. Returns
    /// whether it has. So with any other entry.
    bool takeTool(const QString& key) {
        for (QAction* action : entries())
            if (action->shortcuts().contains(QKeySequence(key)) && action->isEnabled()) {
                action->trigger();
                return true;
            }
        return false;
    }

    /// The widget of the window that a screen reader knows by this name.
    template <typename Widget>
    Widget& named(const QString& name) {
        for (Widget* widget : window.findChildren<Widget*>())
            if (widget->accessibleName() == name) return *widget;
        throw std::invalid_argument("no widget " + name.toStdString());
    }

    MainWindow window;

private:
    static QList<QAction*> entriesOf(const QWidget& menu) {
        QList<QAction*> entries;
        for (QAction* action : menu.actions()) {
            entries.append(action);
            if (action->menu() != nullptr) entries += entriesOf(*action->menu());
        }
        return entries;
    }

    static constexpr int PATIENCE = 60000;  // ms; sanitizers take their time
};

/// Settings of the tests go to a directory of their own.
inline void isolateSettings() {
    static QTemporaryDir directory;
    QCoreApplication::setOrganizationName("Voxam");
    QCoreApplication::setApplicationName("voxam-live-test");
    // Of this process alone: tests run at the same time, and would find each other's unsaved edits.
    for (const char* const name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qputenv(name, directory.path().toUtf8());
    QSettings::setDefaultFormat(QSettings::IniFormat);
    // Dialogs of Qt have some as well, in the native format.
    for (const auto format : {QSettings::IniFormat, QSettings::NativeFormat})
        QSettings::setPath(format, QSettings::UserScope, directory.path());
}
