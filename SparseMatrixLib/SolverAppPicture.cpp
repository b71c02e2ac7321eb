// From the physical densities to what the host shows: the picture, or a text.

#include <algorithm>
#include <cmath>

#include "MessageBuffer.h"
#include "SolverApp.h"

void SolverApp::projectToMesh() {
    map2Mesh(rhoPhys.begin(), static_cast<int>(grids.nelx * grids.subdivision),
             static_cast<int>(grids.nely * grids.subdivision), static_cast<int>(grids.meshFactor),
             meshRho.begin());
}

void SolverApp::map2Mesh(const double* source, int nx, int ny, int factor, double* target) {
    if (nx < 1 || ny < 1 || factor < 1) return;
    const size_t height = static_cast<size_t>(ny) * factor;
    for (int i = 0; i < nx; ++i) {
        // One mesh column, then its copies.
        double* const column = target + i * factor * height;
        for (int j = 0; j < ny; ++j) {
            std::fill_n(column + static_cast<size_t>(j) * factor, factor,
                        source[static_cast<size_t>(i) * ny + j]);
        }
        for (int a = 1; a < factor; ++a) std::copy_n(column, height, column + a * height);
    }
}

void SolverApp::densityFilterWithModifiedRadius() { meshH.apply(meshRho, meshRhoFiltered); }

void SolverApp::projectHeaviside() {
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

// The text stands until the settings change: each further iteration publishes it again.
bool SolverApp::fail(std::string_view text) {
    message = text;
    return false;
}

void SolverApp::withdrawMessage() { message.clear(); }

void SolverApp::createAndPublishResult(float* output, int messageLength, char* messageBuffer,
                                       RuntimeStat* stat) {
    writeText(message, messageLength, messageBuffer);
    if (!message.empty()) return;
    if (stat) timers.publish(*stat);
    if (output) publishPicture(output);
}

void SolverApp::publishPicture(float* output) const {
    const unsigned width = grids.nelx * grids.subdivision * grids.meshFactor;
    const unsigned height = grids.nely * grids.subdivision * grids.meshFactor;
    const double* density = meshRhoFiltered.begin();
    // In square tiles, because one side of a transposition runs across the order of storage.
    constexpr unsigned tile = 16;
    for (unsigned c0 = 0; c0 < width; c0 += tile) {
        for (unsigned r0 = 0; r0 < height; r0 += tile) {
            for (size_t r = r0; r < std::min(r0 + tile, height); ++r) {
                for (size_t c = c0; c < std::min(c0 + tile, width); ++c) {
                    output[r * width + c] = static_cast<float>(1.0 - density[c * height + r]);
                }
            }
        }
    }
}

void SolverApp::createAndPublishBlobResult(int* out) const {
    if (!out) return;
    for (unsigned ix = 0; ix < grids.nelx; ++ix) {
        for (unsigned iy = 0; iy < grids.nely; ++iy) {
            out[grids.nelx * iy + ix] = blobMask(grids.coarseElement(ix, iy), 0) >= 1.0 ? 1 : 0;
        }
    }
}
