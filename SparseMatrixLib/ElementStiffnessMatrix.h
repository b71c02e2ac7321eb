#pragma once

/// Stiffness of one square, bilinear, four-node plane-stress element of unit side, unit thickness,
/// unit Young's modulus and Poisson's ratio 0.3. Its eight degrees of freedom are the x and y
/// displacements of its four nodes in the order of elementDofs() in GridNumbering.h.
class ElementStiffnessMatrix {
public:
    ElementStiffnessMatrix() = delete;

    /// Makes the matrices of an element that is split into subdivisions x subdivisions sub-squares.
    ///
    /// Returns a new array of subdivisions^2 blocks of 64 doubles, each an 8 x 8 matrix, row by row
    /// (and symmetric), which the caller releases with delete[]. With 1 the block is the element
    /// matrix, integrated exactly. With n > 1 block i * n + j belongs to the sub-square in row i
    /// (y) and column j (x), acts on the degrees of freedom of the whole element and is integrated
    /// by one point in the middle of the sub-square: so the blocks sum to the element matrix only
    /// approximately. With 0 or less the array is left unset. Throws std::bad_alloc.
    static double* createElementStiffnessMatrix(int subdivisions);
};
