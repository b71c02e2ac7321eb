// The optimiser with its members in view.
#pragma once

#include <string>

#include "SolverApp.h"
#include "test_support.h"

class SolverAppInspector : public SolverApp {
public:
    using SolverApp::SolverApp;

    using SolverApp::blob, SolverApp::blobMask, SolverApp::blobSensitivity, SolverApp::constraint,
        SolverApp::dc, SolverApp::dv, SolverApp::Emin, SolverApp::equilibrium, SolverApp::grids,
        SolverApp::H, SolverApp::hasBlob, SolverApp::iteration, SolverApp::lambda,
        SolverApp::lambdaPrevious, SolverApp::loop, SolverApp::meshH, SolverApp::meshRho,
        SolverApp::meshRhoFiltered, SolverApp::message, SolverApp::objective,
        SolverApp::passiveBlock, SolverApp::penalty, SolverApp::powers, SolverApp::rho,
        SolverApp::rhoOld, SolverApp::rhoPhys, SolverApp::useDensityFilter, SolverApp::useHeaviside,
        SolverApp::volumeFraction;
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

inline void fillRandom(kmat::DenseMatrix& m, Random& random, double low, double high) {
    for (double& v : m) v = random.number(low, high);
}

/// One iteration. Returns the text.
inline std::string iterate(SolverApp& app) {
    char text[64];
    double change = 0.0;
    app.runIteration(sizeof text, text, nullptr, change, nullptr);
    return text;
}

}  // namespace test
