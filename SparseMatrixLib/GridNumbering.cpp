#include "GridNumbering.h"

#include "CheckedProduct.h"

DesignGrids::DesignGrids(unsigned nelx, unsigned nely, unsigned subdivision, unsigned meshFactor)
    : nelx(nelx),
      nely(nely),
      subdivision(subdivision),
      meshFactor(meshFactor),
      numberOfCoarseElements(checkedProduct({nelx, nely})),
      numberOfElements(checkedProduct({nelx, nely, subdivision, subdivision})),
      numberOfMeshElements(checkedProduct({numberOfElements, meshFactor, meshFactor})) {}
