#pragma once

#include <memory>
#include <vector>

#include "ElementStiffnessMatrix.h"
#include "ParallelFor.h"
#include "StiffnessPattern.h"
#include "suite.h"

/// A plate's stiffness matrix, filled from given element moduli in each way that the linear algebra
/// offers.
class PlateStiffness {
public:
    PlateStiffness(const Plate& plate, std::vector<double> moduli)
        : plate(plate),
          moduli(std::move(moduli)),
          element(ElementStiffnessMatrix::createElementStiffnessMatrix(1)),
          K(stiffnessPattern(columns(), rows())),
          entries(findElementEntries(K, columns(), rows())) {}

    kmat::SparseMatrix& getMatrix() { return K; }

    kmat::SparseMatrix emptyMatrix(int capacity) const {
        return {plate.dofs(), plate.dofs(), true, capacity};
    }

    /// A fresh matrix each time: list the triplets, then compress them.
    void makeFromTriplets() {
        kmat::SparseMatrix fresh =
            emptyMatrix(plate.elements() * static_cast<int>(ELEMENT_UPPER_ENTRIES));
        const auto append = [&](unsigned, std::size_t, unsigned row, unsigned column,
                                double value) { fresh.getValue(row, column) += value; };
        for (unsigned x = 0; x < columns(); ++x) addColumn(x, append);
        fresh.build();
        K = std::move(fresh);
    }

    /// Refills the matrix, searching the place of every contribution.
    void refillBySearch(bool parallel) {
        refill(parallel, [this](unsigned, std::size_t, unsigned row, unsigned column,
                                double value) { K.getValue(row, column) += value; });
    }

    /// Refills the matrix by the remembered places.
    void refillByEntries(bool parallel) {
        double* const values = K.getValues();
        refill(parallel, [=, this](unsigned e, std::size_t pair, unsigned, unsigned, double value) {
            values[entries[e][pair]] += value;
        });
    }

private:
    unsigned columns() const { return static_cast<unsigned>(plate.width); }
    unsigned rows() const { return static_cast<unsigned>(plate.height); }

    // Even columns share no node with each other, nor do odd ones.
    template <typename Add>
    void refill(bool parallel, const Add& add) {
        K.zero();
        for (unsigned first : {0U, 1U}) {
            const std::size_t count = (columns() + 1 - first) / 2;
            const auto task = [&](std::size_t i) {
                addColumn(static_cast<unsigned>(2 * i) + first, add);
            };
            if (parallel)
                parallelFor(count, task);
            else
                for (std::size_t i = 0; i < count; ++i) task(i);
        }
    }

    template <typename Add>
    void addColumn(unsigned x, const Add& add) const {
        for (unsigned y = 0; y < rows(); ++y) {
            const unsigned e = x * rows() + y;
            const ElementDofs dof = elementDofs(x, y, rows() + 1);
            for (std::size_t i = 0; i < ELEMENT_UPPER_PAIRS.size(); ++i) {
                const auto [k, l] = ELEMENT_UPPER_PAIRS[i];
                add(e, i, dof[k], dof[l], element[ELEMENT_DOFS * k + l] * moduli[e]);
            }
        }
    }

    Plate plate;
    std::vector<double> moduli;
    std::unique_ptr<double[]> element;
    kmat::SparseMatrix K;
    std::vector<ElementEntries> entries;
};
