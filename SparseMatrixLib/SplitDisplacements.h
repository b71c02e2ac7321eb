// Displacements with more digits than a double has, and the forces that hold them.
#pragma once

#include <vector>

#include "ElementDeformation.h"

/// One displacement per degree of freedom, as the sum of a coarse part and a fine rest. All coarse
/// parts are whole multiples of one power of two, and small enough multiples for every sum in a
/// nodal force of elements of modulus 1 to be exact in plain double arithmetic. Together the parts
/// carry some 95 bits of the largest displacement. This needs no type wider than double, so the
/// results have the same bits wherever doubles are IEEE 754.
class SplitDisplacements {
public:
    /// Nodal forces that residual() sums up, kept from one call to the next.
    struct Workspace {
        std::vector<double> coarseForces;
        std::vector<double> fineForces;
    };

    explicit SplitDisplacements(std::size_t ndof) : coarse(ndof), fine(ndof) {}

    void setZero();

    /// Adds one number to each displacement.
    void add(const double* corrections);

    double get(std::size_t dof) const { return coarse[dof] + fine[dof]; }

    ElementDeformation deformation(const ElementDofs& dofs) const {
        ElementDeformation sum = deformationOf(gathered(coarse, dofs));
        sum += deformationOf(gathered(fine, dofs));
        return sum;
    }

    /// Writes forces - K u, one number per degree of freedom, where K is the integer stiffness
    /// matrix of a plate whose element in column x and row y has the modulus moduli[x * nely + y].
    /// For moduli of 0 and 1, the rounding errors are those of a plain residual for displacements
    /// that are a trillion times smaller. Throws std::bad_alloc.
    void residual(unsigned nelx, unsigned nely, const std::vector<double>& moduli,
                  const std::vector<double>& forces, Workspace& workspace, double* result) const;

private:
    static ElementVector gathered(const std::vector<double>& values, const ElementDofs& dofs) {
        ElementVector local{};
        for (std::size_t i = 0; i < ELEMENT_DOFS; ++i) local[i] = values[dofs[i]];
        return local;
    }

    std::vector<double> coarse;
    std::vector<double> fine;
};
