// From the physical densities to the host's buffers, where whole runs do not look closely enough.
#include <gtest/gtest.h>

#include <vector>

#include "support/solver_app_inspector.h"

namespace {

TEST(MapToMeshTest, WithoutCellsTouchesNothing) {
    const double source[] = {1};
    for (const int none : {0, -1}) {
        SolverApp::map2Mesh(source, none, 3, 2, nullptr);
        SolverApp::map2Mesh(source, 2, none, 2, nullptr);
        SolverApp::map2Mesh(source, 2, 3, none, nullptr);
    }
}

TEST(AppHeavisideTest, KeepsVoidHalfAndSolidExactly) {
    for (const double density : {0.0, 0.5, 1.0}) {
        SolverAppInspector app(3, 2, 1, 1, 0.5F, 1);
        app.rhoPhys.fill(density);
        app.projectToMesh();
        app.densityFilterWithModifiedRadius();
        app.projectHeaviside();
        std::vector<float> picture(6);
        app.createAndPublishResult(picture.data(), 0, nullptr, nullptr);
        EXPECT_EQ(picture, std::vector<float>(6, static_cast<float>(1 - density)));
    }
}

}  // namespace
