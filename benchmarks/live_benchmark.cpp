// How long a hand waits for the window: from the mouse event to the picture that shows it, and how
// many pictures a second there are. Runs on any platform of Qt, also offscreen.

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <random>
#include <vector>

#include "main_window.h"

namespace {

constexpr int SETTLING_ITERATIONS = 15;
constexpr int DRAGS = 40;
constexpr int FRAME_SPAN = 4000;  // ms
constexpr int EDIT_INTERVAL = 400;
constexpr QSize WINDOW_SIZE(1280, 820);

struct Plate {
    int width;
    int height;
    int refinement;
};

Scene cantilever(const Plate& plate) {
    Scene scene;
    scene.title = "Cantilever";
    scene.width = plate.width;
    scene.height = plate.height;
    scene.subdivision = scene.meshFactor = plate.refinement;
    scene.volumeFraction = 0.4;
    scene.loadCasesInUse = {0};
    scene.loads = {{{plate.width, plate.width}, {plate.height / 2, plate.height / 2}, 0, 1, 0}};
    scene.supports = {{{0, 0}, {0, plate.height}, true, true}};
    return scene;
}

void waitFor(const std::function<bool()>& condition) {
    while (!condition()) QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
}

void waitFor(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    while (!clock.hasExpired(milliseconds)) QApplication::processEvents(QEventLoop::AllEvents, 2);
}

void send(PlateView& view, QEvent::Type type, QPointF place) {
    const bool isMove = type == QEvent::MouseMove;
    const bool isRelease = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, place, view.mapToGlobal(place), isMove ? Qt::NoButton : Qt::LeftButton,
                      isRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &event);
}

class Measurement {
public:
    explicit Measurement(const Plate& measured)
        : plate(measured), view(window.plateStage().plate()), run(window.liveRun()) {
        window.resize(WINDOW_SIZE);
        window.show();
        window.workbench().document.open(cantilever(plate), {});
        run.setPlaying(true);
        waitFor([this] { return run.frame().numbers.iteration >= SETTLING_ITERATIONS; });
    }

    void print() {
        const double rate = framesPerSecond();
        auto latencies = this->latencies();
        std::sort(latencies.begin(), latencies.end());
        const auto quantile = [&](double share) {
            return latencies[static_cast<std::size_t>(share *
                                                      static_cast<double>(latencies.size() - 1))];
        };
        std::printf("| %3d x %-3d (%d, %d) | %8.1f | %7.1f ms | %7.1f ms | %7.1f ms |\n",
                    plate.width, plate.height, plate.refinement, plate.refinement, rate,
                    quantile(0.5), quantile(0.9), quantile(1));
        std::fflush(stdout);
    }

private:
    /// A design that has settled rests, so edits keep it moving.
    double framesPerSecond() {
        int pictures = 0;
        QTimer editing;
        QObject::connect(&editing, &QTimer::timeout, [this] {
            window.workbench().edit("Volume", [](Scene& scene) {
                scene.volumeFraction = scene.volumeFraction < 0.4 ? 0.4 : 0.39;
            });
        });
        editing.start(EDIT_INTERVAL);
        const auto counting = QObject::connect(&run, &LiveRun::frameChanged, [&] { ++pictures; });
        QElapsedTimer clock;
        clock.start();
        waitFor(FRAME_SPAN);
        QObject::disconnect(counting);
        return 1000.0 * pictures / static_cast<double>(clock.elapsed());
    }

    /// Drags the load up and down, and waits each time for a picture of settings with the edit.
    std::vector<double> latencies() {
        std::mt19937 random(1);
        std::vector<double> milliseconds;
        int row = plate.height / 2;
        send(view, QEvent::MouseButtonPress, place(row));
        for (int i = 0; i < DRAGS; ++i) {
            // At any moment of an iteration and of a frame.
            waitFor(static_cast<int>(30 + random() % 70));
            row += row <= plate.height / 4 || (i % 2 == 0 && row < plate.height * 3 / 4) ? 1 : -1;
            // Taken when it is painted: the loop that waits here wakes up at leisure.
            double shownAfter = 0;
            QElapsedTimer clock;
            clock.start();
            send(view, QEvent::MouseMove, place(row));
            const auto wanted = run.revision();
            const auto showing = QObject::connect(&view, &PlateView::painted, [&] {
                if (shownAfter == 0 && run.frame().numbers.revision >= wanted)
                    shownAfter = static_cast<double>(clock.nsecsElapsed()) / 1e6;
            });
            waitFor([&] { return shownAfter > 0; });
            milliseconds.push_back(shownAfter);
            QObject::disconnect(showing);
        }
        send(view, QEvent::MouseButtonRelease, place(row));
        return milliseconds;
    }

    QPointF place(int row) const { return view.transform().toWidget(plate.width, row); }

    Plate plate;
    MainWindow window;
    PlateView& view;
    LiveRun& run;
};

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    // Not those of the user.
    const QTemporaryDir directory;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, directory.path());

    std::printf("platform %s, screen at %.0f Hz, window of %d x %d\n\n",
                qPrintable(QGuiApplication::platformName()),
                QGuiApplication::primaryScreen()->refreshRate(), WINDOW_SIZE.width(),
                WINDOW_SIZE.height());
    std::printf(
        "| grid             | pictures | event to picture, median | 90 %% | longest |\n"
        "| ---------------- | -------: | -----------------------: | ---: | ------: |\n");
    for (const Plate& plate :
         {Plate{60, 40, 2}, Plate{120, 60, 2}, Plate{150, 100, 1}, Plate{300, 200, 1}})
        Measurement(plate).print();
    return 0;
}
