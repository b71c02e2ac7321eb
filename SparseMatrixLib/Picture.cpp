#include "Picture.h"

#include <algorithm>
#include <cmath>

Picture::Picture(const DesignGrids& grids)
    : meshRmin(grids.meshFactor),
      meshRho(kmat::undefinedVector(grids.numberOfMeshElements)),
      meshRhoFiltered(kmat::undefinedVector(grids.numberOfMeshElements)),
      grids(grids),
      width(grids.nelx * grids.subdivision * grids.meshFactor),
      height(grids.nely * grids.subdivision * grids.meshFactor) {
    meshH = ConeFilter(width, height, meshRmin);
}

void Picture::projectToMesh(const kmat::DenseMatrix& rhoPhys) {
    map2Mesh(rhoPhys.begin(), static_cast<int>(grids.nelx * grids.subdivision),
             static_cast<int>(grids.nely * grids.subdivision), static_cast<int>(grids.meshFactor),
             meshRho.begin());
}

void Picture::map2Mesh(const double* source, int nx, int ny, int factor, double* target) {
    if (nx < 1 || ny < 1 || factor < 1) return;
    const std::size_t height = static_cast<std::size_t>(ny) * factor;
    for (int i = 0; i < nx; ++i) {
        // One mesh column, then its copies.
        double* const column = target + i * factor * height;
        for (int j = 0; j < ny; ++j) {
            std::fill_n(column + static_cast<std::size_t>(j) * factor, factor,
                        source[static_cast<std::size_t>(i) * ny + j]);
        }
        for (int a = 1; a < factor; ++a) std::copy_n(column, height, column + a * height);
    }
}

void Picture::densityFilterWithModifiedRadius() { meshH.apply(meshRho, meshRhoFiltered); }

void Picture::projectHeaviside() {
    constexpr double beta = 6.0;
    constexpr double eta = 0.5;
    constexpr double tanhBetaEta = 0.9950547536867305;
    // Solid and void regions are long runs of one value, whose tanh is worth taking only once.
    double density = std::nan("");
    double projected = density;
    for (double& v : meshRhoFiltered) {
        if (v != density) {
            density = v;
            projected = (std::tanh(beta * (v - eta)) + tanhBetaEta) / (2.0 * tanhBetaEta);
        }
        v = projected;
    }
}

void Picture::publish(float* output) const {
    const double* density = meshRhoFiltered.begin();
    // In square tiles, because one side of a transposition runs across the order of storage.
    constexpr unsigned tile = 16;
    for (unsigned c0 = 0; c0 < width; c0 += tile) {
        for (unsigned r0 = 0; r0 < height; r0 += tile) {
            for (std::size_t r = r0; r < std::min(r0 + tile, height); ++r) {
                for (std::size_t c = c0; c < std::min(c0 + tile, width); ++c) {
                    output[r * width + c] = static_cast<float>(1.0 - density[c * height + r]);
                }
            }
        }
    }
}
