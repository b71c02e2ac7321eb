#include <cmath>

#include "ParallelFor.h"
#include "SolverApp.h"

namespace {

// Stiffness floor of a passive void cell. The first assembly takes the single-precision constant,
// the refills the double one; the slight difference is deliberate.
constexpr double VOID_FLOOR_FIRST = 1e-9F;
constexpr double VOID_FLOOR = 1e-9;

}  // namespace

void SolverApp::assemble() {
    if (!assembled) {
        elementEntries = buildStiffnessPattern(K, nelx, nely);
        for (unsigned ix = 0; ix < nelx; ++ix) addColumn(ix, VOID_FLOOR_FIRST);
        assembled = true;
        return;
    }
    K.zero();
    if (nelx == 0) return;
    // The elements of a column touch only the nodes of its two sides, so the even columns share no
    // node with each other, nor do the odd ones: within a pass no entry is written twice.
    const unsigned tasks = (nelx - 1) / 2 + 1;
    for (unsigned first : {0U, 1U}) {
        parallelFor(tasks, [this, first](size_t i) {
            const auto ix = static_cast<unsigned>(2 * i) + first;
            if (ix < nelx) addColumn(ix, VOID_FLOOR);
        });
    }
}

// Adds the elements of one coarse column to the values of K.
void SolverApp::addColumn(unsigned ix, double voidFloor) {
    const bool withPassiveVoid = passiveBlock.hasPassiveVoid();
    double* const values = K.getValues();
    for (unsigned iy = 0; iy < nely; ++iy) {
        const ElementEntries& entries = elementEntries[nely * ix + iy];
        std::array<double, ELEMENT_UPPER_ENTRIES> sums;
        for (size_t i = 0; i < sums.size(); ++i) sums[i] = values[entries[i]];
        const double* upper = KEUpper.data();
        for (unsigned b = 0; b < subdivision; ++b) {
            for (unsigned a = 0; a < subdivision; ++a, upper += ELEMENT_UPPER_ENTRIES) {
                const double E = modulus(fineElement(ix, iy, a, b), withPassiveVoid, voidFloor);
                for (size_t i = 0; i < sums.size(); ++i) sums[i] += upper[i] * E;
            }
        }
        for (size_t i = 0; i < sums.size(); ++i) values[entries[i]] = sums[i];
    }
}

// SIMP interpolation. The powers are kept for the compliance and the sensitivities.
double SolverApp::modulus(unsigned e, bool withPassiveVoid, double voidFloor) {
    power[e] = std::pow(rhoPhys(e, 0), penalty);
    powerLessOne[e] = std::pow(rhoPhys(e, 0), penalty - 1.0);
    const bool isVoid = withPassiveVoid && (passiveBlock.getFineGridElement(static_cast<int>(e)) &
                                            PassiveBlock::VOID) != 0;
    const double floor = isVoid ? voidFloor : Emin;
    return (E0 - floor) * power[e] + floor;
}
