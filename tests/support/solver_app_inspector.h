// The optimiser with the members in view that tests and benchmarks set or read between the phases
// of an iteration. What types of its own hold is tested there.
#pragma once

#include <string>

#include "SolverApp.h"
#include "support/plates.h"

class SolverAppInspector : public SolverApp {
public:
    using SolverApp::SolverApp;

    using SolverApp::blob, SolverApp::dc, SolverApp::dv, SolverApp::Emin, SolverApp::equilibrium,
        SolverApp::iteration, SolverApp::lambda, SolverApp::lambdaPrevious, SolverApp::loop,
        SolverApp::objective, SolverApp::picture, SolverApp::rho, SolverApp::rhoOld,
        SolverApp::rhoPhys, SolverApp::useDensityFilter, SolverApp::volumeFraction;
};

namespace test {

inline void send(const Settings& settings, SolverApp& app) {
    const auto& load = TopologyOptimizationComponentData::load;
    const std::vector<signed char> cases(settings.loadCases.begin(), settings.loadCases.end());
    app.updateSettings(load(settings.loads.data(), settings.loads.count()),
                       load(settings.supports.data(), settings.supports.count()),
                       settings.volumeFraction, settings.passive.data(),
                       static_cast<int>(cases.size()), cases.data(), settings.blob.data());
}

/// One iteration. Returns the text.
inline std::string iterate(SolverApp& app) {
    char text[64];
    double change = 0.0;
    app.runIteration(sizeof text, text, nullptr, change, nullptr);
    return text;
}

}  // namespace test
