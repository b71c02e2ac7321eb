#include <cfloat>
#include <memory>
#include <stdexcept>

#include "SolverGame.h"
#include "factor.h"
#include "plate_stiffness.h"
#include "suite.h"
#include "support/plates.h"
#include "voxam.h"

namespace {

// Squares of 4 x 4 elements, solid and nearly void in turn.
std::vector<float> chequeredDesign(const Plate& plate) {
    std::vector<float> densities;
    for (int x = 0; x < plate.width; ++x) {
        for (int y = 0; y < plate.height; ++y) {
            densities.push_back((x / 4 + y / 4) % 2 == 0 ? 1.0F : 0.1F);
        }
    }
    return densities;
}

std::vector<TopologyOptimizationComponentData> components(const test::Records& records) {
    return TopologyOptimizationComponentData::load(records.data(), records.count());
}

// The solver's own factor is out of reach, so the split takes its public operations and, for the
// factorisation and the solution, the same calls on an equal matrix.
class GameBenchmark {
public:
    explicit GameBenchmark(const Plate& plate)
        : settings(test::cantilever(plate.width, plate.height)),
          densities(chequeredDesign(plate)),
          values(densities.size()),
          solver(plate.width, plate.height, 1, 1, components(settings.loads),
                 components(settings.supports), 1),
          stiffness(plate, {densities.begin(), densities.end()}),
          force(plate.dofs(), 1, 0.0) {
        _InitVoxamGame(plate.width, plate.height, 1, 1, settings.loads.count(),
                       settings.loads.data(), settings.supports.count(), settings.supports.data(),
                       1);
        stiffness.refillByEntries(false);
        const auto nodesY = static_cast<unsigned>(plate.height) + 1;
        for (const auto& support : components(settings.supports)) {
            const unsigned d =
                2 * static_cast<unsigned>(support.x * nodesY + support.y) + (support.fx > 0.0F);
            stiffness.getMatrix().getValue(d, d) += 1e8;
        }
        for (const auto& load : components(settings.loads)) {
            force(2 * static_cast<unsigned>(load.x * nodesY + load.y) + 1, 0) = load.fy;
        }
        factor = stiffness.getMatrix().analyze();
        if (!solver.solveStateCHOL(densities.data())) throw std::runtime_error("not solved");
        score();
    }
    GameBenchmark(const GameBenchmark&) = delete;
    GameBenchmark& operator=(const GameBenchmark&) = delete;
    ~GameBenchmark() { _DestroyVoxamGame(); }

    Sample sample() {
        const double total = timed([this] { score(); });
        const double assembly = timed([this] { solver.assemble(densities.data()); });
        const double factorisation = timed([this] { factor.factorize(stiffness.getMatrix()); });
        const double solves = timed([this] { solve(factor, force); });
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
    PlateStiffness stiffness;
    kmat::DenseMatrix force;
    kmat::Factor factor;
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
