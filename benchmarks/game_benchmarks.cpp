#include <cfloat>
#include <memory>
#include <stdexcept>

#include "SolverGame.h"
#include "reference_solve.h"
#include "suite.h"
#include "support/plates.h"
#include "voxam.h"

namespace {

// The solver's own factor is out of reach, so the split takes its public operations and, for the
// factorisation and the solution, the same calls on an equal matrix.
class GameBenchmark {
public:
    explicit GameBenchmark(const Plate& plate)
        : settings(test::cantilever(plate.width, plate.height)),
          densities(chequeredDesign(plate, 0.1F)),
          values(densities.size()),
          solver(plate.width, plate.height, 1, 1, components(settings.loads),
                 components(settings.supports), 1),
          reference(plate, settings, {densities.begin(), densities.end()}) {
        _InitVoxamGame(plate.width, plate.height, 1, 1, settings.loads.count(),
                       settings.loads.data(), settings.supports.count(), settings.supports.data(),
                       1);
        if (!solver.solveStateCHOL(densities.data())) throw std::runtime_error("not solved");
        score();
    }
    GameBenchmark(const GameBenchmark&) = delete;
    GameBenchmark& operator=(const GameBenchmark&) = delete;
    ~GameBenchmark() { _DestroyVoxamGame(); }

    Sample sample() {
        const double total = timed([this] { score(); });
        const double assembly = timed([this] { solver.assemble(densities.data()); });
        const double factorisation = timed([this] { reference.factorize(); });
        const double solves = timed([this] { reference.solve(); });
        const double objective =
            timed([this] { solver.setObjective(densities.data(), values.data()); });
        return {{"total", total},
                {"assembly", assembly},
                {"factorisation", factorisation},
                {"solves", solves},
                {"rest", total - assembly - factorisation - solves},
                {"objective", objective},
                {"ratio", total / (factorisation + solves)}};
    }

private:
    void score() {
        const bool solved = _SolveVoxamGame(densities.data(), values.data()) < FLT_MAX;
        if (!solved) throw std::runtime_error("no score");
    }

    test::Settings settings;
    std::vector<float> densities;
    std::vector<float> values;
    SolverGame solver;
    ReferenceSolve reference;
};

}  // namespace

void addGameBenchmarks(Suite& suite) {
    suite.beginSection(
        "game", "one score",
        {"total", "assembly", "factorisation", "solves", "rest", "objective", "ratio"});
    for (const Plate& plate : {Plate{60, 40}, Plate{150, 100}}) {
        suite.add("", plate, 1.0, [=] {
            return [game = std::make_shared<GameBenchmark>(plate)] { return game->sample(); };
        });
    }
}
