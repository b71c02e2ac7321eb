// From the physical densities to the host's buffers, where whole runs do not look closely enough.
#include "Picture.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(MapToMeshTest, WithoutCellsTouchesNothing) {
    const double source[] = {1};
    for (const int none : {0, -1}) {
        Picture::map2Mesh(source, none, 3, 2, nullptr);
        Picture::map2Mesh(source, 2, none, 2, nullptr);
        Picture::map2Mesh(source, 2, 3, none, nullptr);
    }
}

TEST(PictureTest, KeepsVoidHalfAndSolidExactly) {
    for (const double density : {0.0, 0.5, 1.0}) {
        Picture picture(DesignGrids(3, 2, 1, 1));
        picture.projectToMesh(kmat::DenseMatrix(6, 1, density));
        picture.densityFilterWithModifiedRadius();
        picture.projectHeaviside();
        std::vector<float> shown(6);
        picture.publish(shown.data());
        EXPECT_EQ(shown, std::vector<float>(6, static_cast<float>(1 - density)));
    }
}

}  // namespace
