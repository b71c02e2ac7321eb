#include <cmath>

#include "GridNumbering.h"
#include "ParallelFor.h"
#include "SolverApp.h"

namespace {

// Stiffness floor of a passive void cell. The first assembly takes the single-precision constant,
// the refills the double one; the slight difference is deliberate.
constexpr double VOID_FLOOR_FIRST = 1e-9F;
constexpr double VOID_FLOOR = 1e-9;

constexpr int VOID_BIT = PassiveBlock::VOID;

}  // namespace

void SolverApp::assemble() {
    if (!assembled) {
        for (unsigned ix = 0; ix < nelx; ++ix) assembleColumn(ix, VOID_FLOOR_FIRST);
        K.build();
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
            if (ix < nelx) assembleColumn(ix, VOID_FLOOR);
        });
    }
}

void SolverApp::assembleColumn(unsigned ix, double voidFloor) {
    const bool withPassiveVoid = passiveBlock.hasPassiveVoid();
    for (unsigned iy = 0; iy < nely; ++iy) {
        const ElementDofs dof = elementDofs(ix, iy, nodesY);
        const double* matrix = KE.get();
        for (unsigned b = 0; b < subdivision; ++b) {
            for (unsigned a = 0; a < subdivision; ++a, matrix += ELEMENT_MATRIX_SIZE) {
                const unsigned e = fineElement(ix, iy, a, b);
                const bool isVoid =
                    withPassiveVoid &&
                    (passiveBlock.getFineGridElement(static_cast<int>(e)) & VOID_BIT);
                const double floor = isVoid ? voidFloor : Emin;
                const double modulus = (E0 - floor) * std::pow(rhoPhys(e, 0), penalty) + floor;
                addElementMatrix(dof, matrix, modulus);
            }
        }
    }
}

void SolverApp::addElementMatrix(const ElementDofs& dof, const double* matrix, double modulus) {
    for (size_t k = 0; k < ELEMENT_DOFS; ++k) {
        for (size_t l = 0; l < ELEMENT_DOFS; ++l) {
            if (dof[k] > dof[l]) continue;
            K.getValue(dof[k], dof[l]) += matrix[8 * k + l] * modulus;
        }
    }
}
