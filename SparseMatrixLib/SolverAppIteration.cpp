// The drivers: one design iteration, and the same with a step of the blob.

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
    timers.iterationTimer.start();
    adjustEminBasedOnMovementChanges();
    rhoOld.set(rho.begin());

    // 2. State: displacements of every load case.
    timers.stateTimer.start();
    const bool solved = solveStateCHOL();
    timers.stateTimer.stop();

    if (solved) {
        // 3. Compliance and sensitivities.
        timers.sensitivityTimer.start();
        setObjectivePlusSens();
        if (!verifyValidLoadAndSupports()) {
            createAndPublishResult(output, messageLength, messageBuffer, stat);
            return -1.0;
        }
        filterSensitivities();
        if (blob.hasBlob) filterBlobSensitivities();  // only a step of the blob asks for them
        timers.sensitivityTimer.stop();

        // 4. Design.
        timers.updateTimer.start();
        computeConstraint();
        optimalityCriteriaUpdateOfRHO();
        updatePhysicalDensities();
        computeConstraint();
        timers.updateTimer.stop();

        // 5. Display.
        timers.meshTimer.start();
        picture.projectToMesh(rhoPhys);
        picture.densityFilterWithModifiedRadius();
        if (picture.useHeaviside) picture.projectHeaviside();
        change = maxDelta(rhoOld, rho);
        timers.meshTimer.stop();
    } else {
        fail("Change load / support");
    }

    // 6. Result.
    timers.iterationTimer.stop();
    createAndPublishResult(output, messageLength, messageBuffer, stat);
    ++blob.blobIteration;
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

double SolverApp::runIterationWithBlob(int messageLength, char* messageBuffer, float* output,
                                       double& change, RuntimeStat* stat, int* blobOut) {
    const double result = runIteration(messageLength, messageBuffer, output, change, stat);
    if (blob.blobStage >= 2) blob.updateBlobMoveLimit(objective);
    blob.redistributeBlob();
    blob.findBlobInterface(Blob::Shape::BLOB, passiveBlock);
    blob.blobConvergedPrevious = blob.blobConverged;
    blob.blobIteration = 1;
    ++blob.blobStage;
    blob.createAndPublishBlobResult(blobOut);
    return result;
}
