#include <memory>
#include <stdexcept>

#include "reference_solve.h"
#include "suite.h"
#include "support/plates.h"
#include "voxam.h"

namespace {

class AnalysisBenchmark {
public:
    AnalysisBenchmark(const Plate& plate, double second)
        : moduli(chequeredDesign(plate, second)),
          displacements(plate.dofs()),
          energies(moduli.size()),
          stresses(3 * moduli.size()),
          loose(moduli.size()),
          reference(plate, test::cantilever(plate.width, plate.height), moduli) {
        const test::Settings settings = test::cantilever(plate.width, plate.height);
        _InitVoxamAnalysis(plate.width, plate.height, settings.loads.count(), settings.loads.data(),
                           settings.supports.count(), settings.supports.data(), 1);
        solve();
    }
    AnalysisBenchmark(const AnalysisBenchmark&) = delete;
    AnalysisBenchmark& operator=(const AnalysisBenchmark&) = delete;
    ~AnalysisBenchmark() { _DestroyVoxamAnalysis(); }

    Sample sample() {
        const double total = timed([this] { solve(); });
        const double factorisation = timed([this] { reference.factorize(); });
        const double solution = timed([this] { reference.solve(); });
        return {{"total", total},
                {"factorisation", factorisation},
                {"solution", solution},
                {"ratio", total / (factorisation + solution)}};
    }

private:
    // With all results.
    void solve() {
        double compliance = 0.0;
        const int status =
            _SolveVoxamAnalysis(moduli.data(), 0, nullptr, &compliance, displacements.data(),
                                energies.data(), stresses.data(), loose.data());
        if (status != VOXAM_ANALYSIS_SOLVED) throw std::runtime_error("not solved");
    }

    std::vector<double> moduli;
    std::vector<double> displacements;
    std::vector<double> energies;
    std::vector<double> stresses;
    std::vector<unsigned char> loose;
    ReferenceSolve reference;
};

}  // namespace

void addAnalysisBenchmarks(Suite& suite) {
    suite.beginSection("analysis", "one design analysed, with all results",
                       {"total", "factorisation", "solution", "ratio"});
    for (const Plate& plate : {Plate{60, 40}, Plate{300, 200}}) {
        for (const auto& [name, second] : {std::pair{"solid", 1.0}, {"grey", 0.1}}) {
            suite.add(name, plate, 2.0, [=, second = second] {
                return [analysis = std::make_shared<AnalysisBenchmark>(plate, second)] {
                    return analysis->sample();
                };
            });
        }
    }
}
