#include <map>
#include <memory>
#include <stdexcept>

#include "cholmod_floor.h"
#include "host.h"
#include "plate_stiffness.h"
#include "suite.h"
#include "support/solver_app_inspector.h"

namespace {

// By then a design has found its shape, and the bisection its multiplier.
constexpr int WARM_UPS = 15;

// After the first, in a measurement of the start.
constexpr std::size_t LATER_ITERATIONS = 7;

const std::vector<Plate> MAIN_PLATES = {
    {60, 40}, {60, 40, 2, 2}, {150, 100}, {150, 100, 2, 2}, {300, 200}};

test::Settings cantilever(const Plate& plate) {
    return test::cantilever(plate.width, plate.height);
}

// A void block above the middle, and a solid bottom row.
test::Settings withPassiveCells(const Plate& plate) {
    test::Settings settings = cantilever(plate);
    test::addBlock(settings.passive, 0, plate.width * 4 / 10, plate.width * 6 / 10,
                   plate.height / 8, plate.height * 3 / 8);
    test::addBlock(settings.passive, 1, 0, plate.width, plate.height - 1, plate.height);
    return settings;
}

// A square in the middle.
void addBlob(const Plate& plate, test::Settings& settings) {
    const int size = plate.height / 3;
    const int left = (plate.width - size) / 2;
    const int top = (plate.height - size) / 2;
    test::addBlock(settings.blob, 0, left, left + size, top, top + size);
}

std::shared_ptr<Host> warmHost(const Plate& plate, const test::Settings& settings) {
    auto host = std::make_shared<Host>(plate, settings);
    host->create();
    host->send();
    for (int i = 0; i < WARM_UPS; ++i) host->iterate();
    return host;
}

std::shared_ptr<SolverAppInspector> warmSolver(const Plate& plate, const test::Settings& settings) {
    auto app = std::make_shared<SolverAppInspector>(plate.width, plate.height, plate.subdivision,
                                                    plate.meshFactor, settings.volumeFraction, 1);
    test::send(settings, *app);
    for (int i = 0; i < WARM_UPS; ++i) {
        const std::string text = test::iterate(*app);
        if (!text.empty()) throw std::runtime_error(text);
    }
    return app;
}

// Of the matrix of the last warm-up. Kept, because making it takes as long as the warm-up.
CholmodFloor& floorOf(const Plate& plate) {
    static std::map<std::string, std::unique_ptr<CholmodFloor>> floors;
    auto& floor = floors[plate.grid() + "/" + plate.refinement()];
    if (!floor) {
        const auto app = warmSolver(plate, cantilever(plate));
        floor = std::make_unique<CholmodFloor>(app->equilibrium.K, app->equilibrium.F[0]);
    }
    return *floor;
}

// Where the time of an iteration went whose call took `total`.
Sample phases(double total, const RuntimeStat& stat) {
    const double solver = double{stat.factorizeTime} + stat.solveTime;
    const double others =
        double{stat.assembleTime} + stat.sensitivityTime + stat.updateTime + stat.meshTime;
    return {{"total", total},
            {"assembly", stat.assembleTime},
            {"factorisation", stat.factorizeTime},
            {"solves", stat.solveTime},
            {"sensitivities", stat.sensitivityTime},
            {"update", stat.updateTime},
            {"picture", stat.meshTime},
            {"rest", total - solver - others},
            {"ratio", total / solver}};
}

Sampler iterationSampler(const Plate& plate) {
    const auto host = warmHost(plate, cantilever(plate));
    CholmodFloor& floor = floorOf(plate);
    return [=, &floor] {
        const double total = timed([&] { host->iterate(); });
        const double least = floor.measure();
        Sample sample = phases(total, host->lastStat());
        sample.insert(sample.end(), {{"floor", least}, {"total/floor", total / least}});
        return sample;
    };
}

Sampler growthSampler(const Plate& plate) {
    const auto host = warmHost(plate, cantilever(plate));
    return [=] {
        const double total = timed([&] { host->iterate(); });
        Sample sample = phases(total, host->lastStat());
        sample.insert(sample.end(),
                      {{"dofs", plate.dofs()}, {"us/dof", total * 1000.0 / plate.dofs()}});
        return sample;
    };
}

Sampler startUpSampler(const Plate& plate) {
    const auto host = std::make_shared<Host>(plate, cantilever(plate));
    const std::vector<double> moduli(static_cast<std::size_t>(plate.elements()), 1.0);
    const auto stiffness = std::make_shared<PlateStiffness>(plate, moduli);
    return [=]() -> Sample {
        _DestroyVoxamApp();
        const double create = timed([&] { host->create(); });
        const double settings = timed([&] { host->send(); });
        const double first = timed([&] { host->iterate(); });
        std::vector<double> times(LATER_ITERATIONS);
        for (double& time : times) time = timed([&] { host->iterate(); });
        const double later = median(times);
        const double analysis = timed([&] { stiffness->getMatrix().analyze(); });
        const double total = create + settings + first;
        return {{"total", total},
                {"create", create},
                {"settings", settings},
                {"first", first},
                {"later", later},
                {"analysis", analysis},
                {"ratio", total / (2.0 * later + analysis)}};
    };
}

Sampler blobSampler(const Plate& plate) {
    test::Settings settings = cantilever(plate);
    addBlob(plate, settings);
    const auto host = warmHost(plate, settings);
    return [=] {
        const double total = timed([&] { host->iterateWithBlob(); });
        Sample sample = phases(total, host->lastStat());
        const double iteration = host->lastStat().totalTime;
        sample.insert(sample.end(), {{"iteration", iteration}, {"blob step", total - iteration}});
        return sample;
    };
}

Sampler settingsSampler(const Plate& plate, const test::Settings& settings) {
    const auto host = warmHost(plate, settings);
    return [=]() -> Sample { return {{"total", timed([&] { host->send(); })}}; };
}

// Repeats the update of one and the same iteration.
Sampler bisectionSampler(const Plate& plate, const test::Settings& settings) {
    const auto app = warmSolver(plate, settings);
    const double lambda = app->lambda;
    const double lambdaPrevious = app->lambdaPrevious;
    test::iterate(*app);
    return [=]() -> Sample {
        app->rho.set(app->rhoOld.begin());
        app->rhoPhys.set(app->rhoOld.begin());
        app->lambda = lambda;
        app->lambdaPrevious = lambdaPrevious;
        app->computeConstraint();
        return {{"total", timed([&] { app->optimalityCriteriaUpdateOfRHO(); })}};
    };
}

Sampler filterSampler(const Plate& plate) {
    const auto app = std::make_shared<SolverAppInspector>(
        plate.width, plate.height, plate.subdivision, plate.meshFactor, 0.5F, 1);
    const DesignGrids grids(plate.width, plate.height, plate.subdivision, plate.meshFactor);
    return [=]() -> Sample {
        const double blob = timed([&] { app->blob.setFilterMatBlob(); });
        const double blobWithCoarse =
            timed([&] { const Blob built(grids.nelx, grids.nely, 3.0 / grids.subdivision); });
        const double filters = blobWithCoarse - blob + timed([&] { app->setFilterMat(); }) +
                               timed([&] { const Picture built(grids); });
        return {{"total", filters + blob}, {"fine, coarse, mesh", filters}, {"blob", blob}};
    };
}

}  // namespace

void addAppBenchmarks(Suite& suite) {
    suite.beginSection("iteration", "one iteration of a cantilever",
                       {"total", "assembly", "factorisation", "solves", "sensitivities", "update",
                        "picture", "rest", "ratio", "floor", "total/floor"});
    for (const Plate& plate : MAIN_PLATES) {
        suite.add("", plate, 1.0, [=] { return iterationSampler(plate); });
    }

    suite.beginSection("start-up", "create, first settings, first iteration",
                       {"total", "create", "settings", "first", "later", "analysis", "ratio"});
    for (const Plate& plate : MAIN_PLATES) {
        suite.add("", plate, 20.0, [=] { return startUpSampler(plate); });
    }

    suite.beginSection("growth", "one iteration by the size of the plate",
                       {"dofs", "total", "factorisation", "solves", "ratio", "us/dof"});
    for (const int height : {10, 20, 40, 60, 80, 120, 160, 200}) {
        const Plate plate = {2 * height, height};
        suite.add("", plate, 1.0, [=] { return growthSampler(plate); });
    }

    suite.beginSection("blob", "one iteration with a blob",
                       {"total", "iteration", "blob step", "ratio"});
    for (const Plate& plate : {Plate{60, 40}, Plate{60, 40, 2, 2}, Plate{150, 100}}) {
        suite.add("", plate, 1.0, [=] { return blobSampler(plate); });
    }

    const Plate refinedPlates[] = {{60, 40, 2, 2}, {150, 100, 2, 2}};
    suite.beginSection("settings", "sending all settings", {"total"});
    for (const Plate& plate : refinedPlates) {
        test::Settings all = withPassiveCells(plate);
        addBlob(plate, all);
        suite.add("loads and supports", plate, 0.2,
                  [=] { return settingsSampler(plate, cantilever(plate)); });
        suite.add("with passive cells and a blob", plate, 0.2,
                  [=] { return settingsSampler(plate, all); });
    }

    suite.beginSection("bisection", "the design update and its volume constraint", {"total"});
    for (const Plate& plate : refinedPlates) {
        suite.add("no passive cells", plate, 0.5,
                  [=] { return bisectionSampler(plate, cantilever(plate)); });
        suite.add("passive cells", plate, 0.5,
                  [=] { return bisectionSampler(plate, withPassiveCells(plate)); });
    }

    suite.beginSection("filters", "building the filters", {"total", "fine, coarse, mesh", "blob"});
    for (const Plate& plate : MAIN_PLATES) {
        suite.add("", plate, 1.0, [=] { return filterSampler(plate); });
    }
}
