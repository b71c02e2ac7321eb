#include "worker.h"

#include <dlfcn.h>
#include <voxam.h>

#include <QtTest>
#include <atomic>
#include <chrono>
#include <thread>

#include "format/scene_reader.h"

// The library's functions are looked up here first: they count themselves, and go on to the real
// ones.
using namespace voxam;

namespace {

std::atomic<int> inside = 0;
std::atomic<int> overlaps = 0;
std::atomic<int> iterations = 0;

class Call {
public:
    Call() {
        if (inside++ > 0) ++overlaps;
    }
    ~Call() { --inside; }
};

template <typename Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

void _InitVoxamApp(int width, int height, int subdivision, int meshFactor, float volume, int cases,
                   int restartId) {
    const Call call;
    real<decltype(_InitVoxamApp)>("_InitVoxamApp")(width, height, subdivision, meshFactor, volume,
                                                   cases, restartId);
}

void _UpdateVoxamApp(int loadCount, const float* loads, int supportCount, const float* supports,
                     float volume, const short* passive, int caseCount, const char* cases,
                     const short* blob) {
    const Call call;
    real<decltype(_UpdateVoxamApp)>("_UpdateVoxamApp")(loadCount, loads, supportCount, supports,
                                                       volume, passive, caseCount, cases, blob);
}

double _IterateVoxamApp(int length, char* message, float* output, double* change, RuntimeStat* stat,
                        float penalty) {
    const Call call;
    ++iterations;
    return real<decltype(_IterateVoxamApp)>("_IterateVoxamApp")(length, message, output, change,
                                                                stat, penalty);
}

void _InitVoxamGame(int nelx, int nely, int ndopt, int ndvis, int loadCount, const float* loads,
                    int supportCount, const float* supports, int cases) {
    const Call call;
    real<decltype(_InitVoxamGame)>("_InitVoxamGame")(nelx, nely, ndopt, ndvis, loadCount, loads,
                                                     supportCount, supports, cases);
}

double _SolveVoxamGame(const float* densities, float* values) {
    const Call call;
    return real<decltype(_SolveVoxamGame)>("_SolveVoxamGame")(densities, values);
}

void _DestroyVoxamGame() {
    const Call call;
    real<decltype(_DestroyVoxamGame)>("_DestroyVoxamGame")();
}

void _DestroyVoxamApp() {
    const Call call;
    real<decltype(_DestroyVoxamApp)>("_DestroyVoxamApp")();
}

}  // extern "C"

namespace {

constexpr int PATIENCE = 60000;  // ms; sanitizers take their time

std::shared_ptr<Scene> cantilever(int width, int height) {
    auto scene = std::make_shared<Scene>();
    scene->width = width;
    scene->height = height;
    scene->volumeFraction = 0.4;
    scene->loadCasesInUse = {0};
    scene->loads = {{{width, width}, {height / 2, height / 2}, 0, 1, 0}};
    scene->supports = {{{0, 0}, {0, height}, true, true}};
    return scene;
}

LiveSettings settingsOf(std::shared_ptr<const Scene> scene, std::uint64_t revision) {
    LiveSettings settings;
    settings.scene = std::move(scene);
    settings.revision = revision;
    return settings;
}

}  // namespace

class WorkerTest : public QObject {
    Q_OBJECT

private slots:
    void callsNeverOverlapWhateverIsAskedFor() {
        overlaps = 0;
        std::atomic<int> notices = 0;
        int frames = 0;
        {
            Worker worker([&] { ++notices; });
            const auto small = cantilever(24, 12);
            const auto other = cantilever(16, 10);
            const auto drawing = std::make_shared<const Field>(24, 12, 1.0f);
            const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
            Frame frame;
            for (std::uint64_t i = 1; std::chrono::steady_clock::now() < end; ++i) {
                LiveSettings settings = settingsOf(i % 50 == 0 ? other : small, i);
                settings.start = i / 20;
                settings.scoredRefinement = i % 3 == 0 ? 1 : 0;
                worker.send(settings);
                if (i % 7 == 0) worker.score({small, drawing, i});
                i % 5 == 0 ? worker.pause() : worker.play();
                if (i % 11 == 0) worker.step();
                if (worker.fetchFrame(frame)) ++frames;
                worker.fetchNumbers();
                worker.fetchScore();
                worker.fetchDesignScore();
                std::this_thread::sleep_for(std::chrono::microseconds(500));
            }
        }
        QCOMPARE(overlaps.load(), 0);
        QVERIFY(frames > 0);
        QVERIFY(notices > 0);
    }

    void aStepIsOneIteration() {
        Worker worker([] {});
        worker.send(settingsOf(cantilever(20, 10), 1));
        iterations = 0;
        for (int i = 1; i <= 3; ++i) {
            worker.step();
            std::vector<IterationNumbers> numbers;
            QVERIFY(QTest::qWaitFor(
                [&] {
                    for (const auto& each : worker.fetchNumbers()) numbers.push_back(each);
                    return !numbers.empty();
                },
                PATIENCE));
            QTest::qWait(20);
            QCOMPARE(iterations.load(), i);
            QCOMPARE(numbers.front().iteration, i);
        }
    }

    void theLatestSettingsWin() {
        Worker worker([] {});
        worker.play();
        for (std::uint64_t revision = 1; revision <= 200; ++revision) {
            auto scene = cantilever(40, 20);
            scene->volumeFraction = 0.2 + 0.003 * static_cast<double>(revision);
            worker.send(settingsOf(scene, revision));
        }
        Frame frame;
        QVERIFY(
            QTest::qWaitFor([&] { return worker.fetchFrame(frame) && frame.isSettled; }, PATIENCE));
        QCOMPARE(frame.numbers.revision, std::uint64_t{200});
        QVERIFY(std::abs(frame.numbers.volume - 0.8) < 0.05);
        QCOMPARE(frame.material.width, 40);
    }

    void aTextStandsUntilItIsMended() {
        Worker worker([] {});
        auto unheld = cantilever(20, 10);
        unheld->supports.clear();
        worker.send(settingsOf(unheld, 1));
        worker.play();
        QVERIFY(QTest::qWaitFor([&] { return !worker.fetchText().text.empty(); }, PATIENCE));
        iterations = 0;
        QTest::qWait(50);
        QCOMPARE(iterations.load(), 0);
        worker.send(settingsOf(cantilever(20, 10), 2));
        Frame frame;
        QVERIFY(QTest::qWaitFor([&] { return worker.fetchFrame(frame); }, PATIENCE));
        QCOMPARE(frame.numbers.revision, std::uint64_t{2});
        QVERIFY(worker.fetchText().text.empty());
    }

    void aSceneThatDidNotChangeIsNotSentAgain() {
        const auto lastCompliance = [](bool again) {
            LibrarySession solvers;
            const auto scene = cantilever(20, 10);
            solvers.optimise(scene, false, 1);
            Frame frame;
            for (int i = 0; i < 12; ++i) {
                if (again && i == 8)
                    solvers.optimise(std::make_shared<const Scene>(*scene), false, 1);
                solvers.iterate(frame);
            }
            return frame.numbers.compliance;
        };
        QCOMPARE(lastCompliance(true), lastCompliance(false));
    }

    void aScoreCountsTheLoadCasesInUse() {
        const auto complianceOf = [](const Scene& scene) {
            const Field solid(scene.width, scene.height, 1);
            return LibrarySession::score(std::make_shared<const Scene>(scene), solid)
                .assessment.score.compliance;
        };
        Scene scene = *cantilever(20, 10);
        const double one = complianceOf(scene);
        scene.loadCases.resize(2);
        scene.loads.push_back(scene.loads.front());
        scene.loads.back().loadCase = 1;
        scene.loadCasesInUse = {1};
        QCOMPARE(complianceOf(scene), one);
        scene.loadCasesInUse = {0, 1};
        QVERIFY(std::abs(complianceOf(scene) / one - 2) < 1e-4);  // in single precision
    }

    void endsInTheMiddleOfAnIteration() {
        iterations = 0;
        {
            Worker worker([] {});
            worker.send(settingsOf(cantilever(150, 100), 1));
            worker.play();
            QVERIFY(QTest::qWaitFor([] { return iterations >= 1 && inside == 1; }, PATIENCE));
            iterations = 0;
        }
        // The call under way was waited for, and none came after it.
        QCOMPARE(inside.load(), 0);
        QVERIFY(iterations <= 1);
    }
};

QTEST_GUILESS_MAIN(WorkerTest)
#include "worker_test.moc"
