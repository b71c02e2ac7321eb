#include "StiffnessPattern.h"

#include <new>

#include "SolverSetup.h"

namespace {

// Calls visit(element, dof) for every element in element order.
template <typename Visit>
void forEachElement(unsigned nelx, unsigned nely, const Visit& visit) {
    for (unsigned x = 0; x < nelx; ++x) {
        for (unsigned y = 0; y < nely; ++y) visit(x * nely + y, elementDofs(x, y, nely + 1));
    }
}

}  // namespace

std::vector<ElementEntries> buildStiffnessPattern(kmat::SparseMatrix& K, unsigned nelx,
                                                  unsigned nely) {
    std::vector<ElementEntries> entries(size_t{nelx} * nely);
    K = kmat::SparseMatrix(K.getRows(), K.getColumns(), true,
                           clampedCapacity({nelx, nely, ELEMENT_UPPER_ENTRIES}));
    if (!entries.empty() && !K.allocateTriplets()) throw std::bad_alloc();
    forEachElement(nelx, nely, [&](unsigned, const ElementDofs& dof) {
        for (const auto& [k, l] : ELEMENT_UPPER_PAIRS) K.getValue(dof[k], dof[l]);
    });
    K.build();
    if (!K.getValues()) throw std::bad_alloc();
    forEachElement(nelx, nely, [&](unsigned element, const ElementDofs& dof) {
        int* entry = entries[element].data();
        for (const auto& [k, l] : ELEMENT_UPPER_PAIRS) {
            *entry = K.find(dof[k], dof[l]);
            if (*entry++ < 0) throw std::bad_alloc();  // the list of triplets could not hold it
        }
    });
    return entries;
}
