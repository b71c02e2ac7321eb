// The driver of one design iteration.

#include "SolverApp.h"

namespace {

// The volume fraction follows the host's wish by at most 5 % per iteration.
constexpr double SHRINK = 0.95F;
constexpr double GROW = 1.05F;

}  // namespace

double SolverApp::runIteration(int messageLength, char* messageBuffer, float* output,
                               double& change, RuntimeStat* stat) {
    // 1. Continuation of the volume and of the stiffness floor.
    ++iteration;
    continueVolumeFraction();
    ++loop;
    iterationTimer.start();
    adjustEminBasedOnMovementChanges();
    rhoOld.set(rho.begin());

    // 2. State: displacements of every load case.
    stateTimer.start();
    const bool solved = solveStateCHOL();
    stateTimer.stop();

    if (solved) {
        // 3. Compliance and sensitivities.
        sensitivityTimer.start();
        setObjectivePlusSens();
        if (!verifyValidLoadAndSupports()) {
            createAndPublishResult(output, messageLength, messageBuffer, stat);
            return -1.0;
        }
        filterSensitivities();
        filterBlobSensitivities();
        sensitivityTimer.stop();

        // 4. Design.
        updateTimer.start();
        computeConstraint();
        optimalityCriteriaUpdateOfRHO();
        updatePhysicalDensities();
        computeConstraint();
        updateTimer.stop();

        // 5. Display.
        meshTimer.start();
        projectToMesh();
        densityFilterWithModifiedRadius();
        if (useHeaviside) projectHeaviside();
        change = maxDelta(rhoOld, rho);
        meshTimer.stop();
    } else {
        message = "Change load / support";
    }

    // 6. Result.
    iterationTimer.stop();
    createAndPublishResult(output, messageLength, messageBuffer, stat);
    ++blobIteration;
    return objective;
}

void SolverApp::continueVolumeFraction() {
    const double lo = volumeFraction * SHRINK;
    const double hi = volumeFraction * GROW;
    if (targetVolumeFraction >= lo && targetVolumeFraction <= hi) {
        volumeFraction = targetVolumeFraction;
    } else if (targetVolumeFraction > hi) {
        volumeFraction = hi;
    } else {
        volumeFraction = lo;  // below, or not a number
    }
}

void SolverApp::updatePhysicalDensities() {
    if (useDensityFilter) {
        HNonZero.multiply(false, 1.0, 0.0, rho, rhoPhys);
        rhoPhys.elemDivide(Hs);
        return;
    }
    rhoPhys.set(rho.begin());
    if (hasBlob <= 0) return;
    for (unsigned i = 0; i < numberOfElements; ++i) {
        if (blobMaskOfFineCell(i) == 1.0) rhoPhys(i, 0) = 0.0;
    }
}
