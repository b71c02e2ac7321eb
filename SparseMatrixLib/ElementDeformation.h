// The square element for Poisson's ratio 0.3, written so that rigid motions leave no trace.
#pragma once

#include <array>

#include "GridNumbering.h"

/// How an element deforms: five combinations of its nodal displacements, in which every translation
/// and every rotation cancels term by term. With them, the stiffness matrix of the bilinear element
/// of unit side and unit modulus is a matrix of whole numbers, times 1 / ELEMENT_STIFFNESS_DIVISOR.
/// Whole numbers matter: a rounded element matrix resists rigid motion with a stiffness of the size
/// of the rounding error, of either sign, and a slender plate feels that.
struct ElementDeformation {
    double stretchX;  ///< twice the mean strain in x
    double stretchY;  ///< twice the mean strain in y
    double shear;     ///< twice the mean shear strain
    double bendX;     ///< x displacements of opposite corners against the other two
    double bendY;     ///< y displacements of opposite corners against the other two

    ElementDeformation& operator+=(const ElementDeformation& other) {
        stretchX += other.stretchX;
        stretchY += other.stretchY;
        shear += other.shear;
        bendX += other.bendX;
        bendY += other.bendY;
        return *this;
    }
};

/// The integer element matrix is the stiffness matrix of unit modulus, times this number.
inline constexpr double ELEMENT_STIFFNESS_DIVISOR = 72.8;

/// One number for each local degree of freedom, in the order of elementDofs().
using ElementVector = std::array<double, ELEMENT_DOFS>;

constexpr ElementDeformation deformationOf(const ElementVector& u) {
    return {
        (u[2] - u[0]) + (u[4] - u[6]),
        (u[5] - u[3]) + (u[7] - u[1]),
        ((u[4] - u[2]) + (u[6] - u[0])) + ((u[3] - u[1]) + (u[5] - u[7])),
        (u[0] - u[2]) + (u[4] - u[6]),
        (u[1] - u[3]) + (u[5] - u[7]),
    };
}

/// Product of the integer element matrix and the displacements with this deformation.
constexpr ElementVector nodalForces(const ElementDeformation& d) {
    const double pullX = 20.0 * d.stretchX + 6.0 * d.stretchY;
    const double pullY = 6.0 * d.stretchX + 20.0 * d.stretchY;
    const double shear = 7.0 * d.shear;
    const double bendX = 9.0 * d.bendX;
    const double bendY = 9.0 * d.bendY;
    return {
        bendX - shear - pullX, bendY - shear - pullY,  //
        pullX - shear - bendX, shear - pullY - bendY,  //
        pullX + shear + bendX, pullY + shear + bendY,  //
        shear - pullX - bendX, pullY - shear - bendY,
    };
}

/// The displacements times the integer element matrix times the displacements: a sum of squares.
constexpr double deformationEnergy(const ElementDeformation& d) {
    const double both = d.stretchX + d.stretchY;
    return 14.0 * (d.stretchX * d.stretchX + d.stretchY * d.stretchY) + 6.0 * both * both +
           7.0 * d.shear * d.shear + 9.0 * (d.bendX * d.bendX + d.bendY * d.bendY);
}

/// The stresses at the centre of the element (x, y, shear), times ELEMENT_STIFFNESS_DIVISOR, for
/// unit modulus. Tension is positive.
constexpr std::array<double, 3> centreStresses(const ElementDeformation& d) {
    return {40.0 * d.stretchX + 12.0 * d.stretchY, 12.0 * d.stretchX + 40.0 * d.stretchY,
            14.0 * d.shear};
}

/// The integer element matrix, row by row.
inline constexpr auto INTEGER_ELEMENT_MATRIX = [] {
    std::array<double, ELEMENT_MATRIX_SIZE> matrix{};
    for (std::size_t column = 0; column < ELEMENT_DOFS; ++column) {
        ElementVector unit{};
        unit[column] = 1.0;
        const ElementVector forces = nodalForces(deformationOf(unit));
        for (std::size_t row = 0; row < ELEMENT_DOFS; ++row) {
            matrix[ELEMENT_DOFS * row + column] = forces[row];
        }
    }
    return matrix;
}();
