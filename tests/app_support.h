// The optimiser with its members in view.
#pragma once

#include <string>

#include "SolverApp.h"
#include "test_support.h"

class SolverAppInspector : public SolverApp {
public:
    using SolverApp::SolverApp;

    using SolverApp::blobCellCount, SolverApp::blobConverged, SolverApp::blobConvergedPrevious,
        SolverApp::blobH, SolverApp::blobHs, SolverApp::blobInterface, SolverApp::blobInterfaceSize,
        SolverApp::blobIteration, SolverApp::blobJoining, SolverApp::blobLeaving,
        SolverApp::blobMask, SolverApp::blobMoveCount, SolverApp::blobMoveLimit,
        SolverApp::blobMoveLimitFraction, SolverApp::blobMoveLimitLarge,
        SolverApp::blobMoveLimitMax, SolverApp::blobSensitivity, SolverApp::blobStage,
        SolverApp::circleInterface, SolverApp::circleInterfaceSize, SolverApp::circleMask,
        SolverApp::circleMoI, SolverApp::circleRadiusSquared, SolverApp::constraint, SolverApp::dc,
        SolverApp::dv, SolverApp::Emin, SolverApp::F, SolverApp::H, SolverApp::hasBlob,
        SolverApp::Hcoarse, SolverApp::Hs, SolverApp::HsCoarse, SolverApp::iteration, SolverApp::K,
        SolverApp::lambda, SolverApp::lambdaPrevious, SolverApp::loop, SolverApp::meshH,
        SolverApp::meshHs, SolverApp::meshRho, SolverApp::meshRhoFiltered, SolverApp::message,
        SolverApp::ndof, SolverApp::nely, SolverApp::nodesY, SolverApp::numberOfElements,
        SolverApp::numberOfMeshElements, SolverApp::objective, SolverApp::objectivePrevious,
        SolverApp::objectivePrevious2, SolverApp::passiveBlock, SolverApp::penalty, SolverApp::rho,
        SolverApp::rhoOld, SolverApp::rhoPhys, SolverApp::subdivision, SolverApp::U,
        SolverApp::useDensityFilter, SolverApp::useHeaviside, SolverApp::volumeFraction;
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
