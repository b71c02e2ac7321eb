#pragma once

#include <vector>

#include "ConeFilter.h"
#include "PassiveBlock.h"
#include "dense_matrix.h"

/// The blob: a region of the coarse grid that stays empty and, as long as there are elements to
/// join, keeps its size, while each step moves some elements of its boundary from where material is
/// useful to where it is least so. This is what only the blob needs; its mask and the sensitivities
/// of its elements belong to the optimiser and are handed in. Vectors have one value per coarse
/// element.
struct Blob {
    /// Throws std::bad_alloc.
    Blob(unsigned nelx, unsigned nely);

    /// Builds the filter that smooths the masks.
    void setFilterMatBlob();

    /// Forgets the steps so far, and measures a new blob of `cells` elements.
    void restart(double cells, const kmat::DenseMatrix& blobMask, const PassiveBlock& passive);

    /// Sensitivity filter on the coarse grid, with the blob's complement in the role of the density.
    void filterBlobSensitivities(const kmat::DenseMatrix& blobMask,
                                 kmat::DenseMatrix& blobSensitivity);

    /// Smooths the blob's mask (mode 0) or the circle's (mode 2).
    void filterBlobDensities(int mode, const kmat::DenseMatrix& blobMask);
    /// Marks the elements at the boundary of the blob, passive ones left out (mode 0), or at that of
    /// the circle (mode 1).
    void findBlobInterface(int mode, const kmat::DenseMatrix& blobMask,
                           const PassiveBlock& passive);

    /// Adapts how many elements may move per step to how the compliance goes.
    void updateBlobMoveLimit(double objective);
    /// Chooses the elements that leave the blob and those that join it.
    void prepareInterfaceRedistribution(const kmat::DenseMatrix& blobMask,
                                        const kmat::DenseMatrix& blobSensitivity);
    /// Moves the chosen elements.
    void updateBlob(kmat::DenseMatrix& blobMask);

    /// Polar moment of inertia and squared radius of the disc of the blob's area.
    void equivalentCircleMoI();
    /// Size of the interface of that disc, in elements.
    void interfaceSizeOfEquivalentCircle(const kmat::DenseMatrix& blobMask,
                                         const PassiveBlock& passive);

    unsigned nelx;
    unsigned nely;
    double rminBlob = 1.2F;              ///< radius of blobH in coarse elements
    double circleInterfaceSize = 0.0;    ///< interface of a disc of the blob's area, in elements
    double objectivePrevious = 0.0;      ///< compliance at the last adaptation, 1e10 before
    double objectivePrevious2 = 0.0;     ///< and at the one before
    double blobCellCount = 0.0;          ///< area of the blob as the host gave it
    double blobInterfaceSize = 0.0;      ///< elements at the blob's boundary
    double circleMoI = 0.0;              ///< polar moment of inertia of the disc
    double circleRadiusSquared = 0.0;    ///< its squared radius
    double blobMoveLimit = 0.0;          ///< elements that may leave or join per step, even
    double blobMoveLimitMax = 0.0;       ///< upper bound of it
    double blobMoveLimitFraction = 0.0;  ///< unrounded, while the limit is below 10
    double blobMoveLimitLarge = 0.0;     ///< before rounding, while it is 10 or more
    double blobMoveCount = 0.0;          ///< how many leave, and join if so many can
    double blobPreparedCount = 0.0;      ///< how many the last preparation chose to leave
    int blobCounter = 0;                 ///< reset with the settings; nothing reads it
    int blobConverged = 0;               ///< 1 when the last redistribution moved nothing
    int blobConvergedPrevious = 0;       ///< the same of the step before
    int blobStage = 0;                   ///< blob steps since the last change of settings
    int blobIteration = 0;               ///< plain iterations since the last blob step
    std::vector<unsigned> blobLeaving;
    std::vector<unsigned> blobJoining;
    kmat::DenseMatrix circleMask;
    kmat::DenseMatrix blobInterface;
    kmat::DenseMatrix circleInterface;
    kmat::DenseMatrix blobMaskFiltered;
    kmat::DenseMatrix circleMaskFiltered;
    ConeFilter Hcoarse;  ///< of the sensitivities
    ConeFilter blobH;    ///< of the masks
    kmat::DenseMatrix blobSensitivityFiltered;
};
