#pragma once

#include <vector>

#include "ConeFilter.h"
#include "PassiveBlock.h"
#include "dense_matrix.h"

/// The blob: a region of the coarse grid that stays empty. As long as there are elements to join,
/// it keeps its size. Each step moves some elements of its boundary from where material is useful
/// to where it is least useful. Vectors have one value per coarse element, counted column by
/// column.
struct Blob {
    /// The region that an interface encloses: the blob, or the disc with the blob's area.
    enum class Shape { BLOB, CIRCLE };

    /// An empty blob. `radius` is the radius of the sensitivity filter in coarse elements.
    /// Throws std::bad_alloc.
    Blob(unsigned nelx, unsigned nely, double radius);

    /// Builds the filter that smooths the masks.
    void setFilterMatBlob();

    /// Replaces the blob by the host's, measures it, and forgets the steps so far. `blobData` holds
    /// a count and then that many pairs (x, y); elements outside the grid are ignored. Null, or a
    /// count below 1, means no blob. Allocates nothing.
    void restart(const short* blobData, const PassiveBlock& passive);

    /// Applies the sensitivity filter to blobSensitivity, with the blob's complement in the role of
    /// the density.
    void filterBlobSensitivities();

    /// Smooths the mask of the blob or of the disc.
    void filterBlobDensities(Shape shape);
    /// Marks the elements at the boundary of the blob, without passive ones, or at that of the
    /// disc.
    void findBlobInterface(Shape shape, const PassiveBlock& passive);

    /// Adapts the number of elements that may move per step to the course of the compliance.
    void updateBlobMoveLimit(double objective);
    /// Chooses the elements that leave the blob and those that join it.
    void prepareInterfaceRedistribution();
    /// Moves the chosen elements.
    void updateBlob();
    /// prepareInterfaceRedistribution(), then updateBlob().
    void redistributeBlob();

    /// Polar moment of inertia and squared radius of the disc of the blob's area.
    void equivalentCircleMoI();
    /// Size of the interface of that disc, in elements.
    void interfaceSizeOfEquivalentCircle(const PassiveBlock& passive);

    /// Writes the mask row by row, nelx * nely ints of 0 or 1. Null is skipped.
    void createAndPublishBlobResult(int* out) const;

    unsigned nelx;
    unsigned nely;
    int hasBlob = 0;                     ///< 1 when the host gave a blob
    kmat::DenseMatrix blobMask;          ///< 1.0 in the blob, else 0.0
    kmat::DenseMatrix blobSensitivity;   ///< what material would save in each element
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

private:
    kmat::DenseMatrix maskShare;  ///< work space of the filter of the masks
};
