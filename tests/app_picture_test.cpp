// From the physical densities to the host's buffers.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "MessageBuffer.h"
#include "support/matrices.h"
#include "support/solver_app_inspector.h"

namespace {

using test::Matrix;
using App = SolverAppInspector;

TEST(MapToMeshTest, ReplicatesEachValueOntoABlock) {
    const double source[] = {1, 2, 3, 4, 5, 6};  // two columns
    std::vector<double> target(25, -1);
    SolverApp::map2Mesh(source, 2, 3, 2, target.data());
    EXPECT_EQ(target, (std::vector<double>{1, 1, 2, 2, 3, 3, 1, 1, 2, 2, 3, 3,  //
                                           4, 4, 5, 5, 6, 6, 4, 4, 5, 5, 6, 6, -1}));
}

TEST(MapToMeshTest, WithoutCellsTouchesNothing) {
    const double source[] = {1};
    for (const int none : {0, -1}) {
        SolverApp::map2Mesh(source, none, 3, 2, nullptr);
        SolverApp::map2Mesh(source, 2, none, 2, nullptr);
        SolverApp::map2Mesh(source, 2, 3, none, nullptr);
    }
}

// Larger than a tile of the transposition in each direction, and no multiple of it.
class AppPictureTest : public testing::Test {
protected:
    static constexpr unsigned NELX = 9, NELY = 10, N = 2, M = 2;
    static constexpr unsigned WIDTH = NELX * N * M, HEIGHT = NELY * N * M;
    test::Random random;
    App app{NELX, NELY, N, M, 0.5F, 1};
    Matrix mesh{WIDTH * HEIGHT, 1};  // the smoothed densities, column by column

    AppPictureTest() {
        test::fillRandom(app.rhoPhys, random, 0.0, 1.0);
        for (unsigned i = 0; i < WIDTH * HEIGHT; ++i) {
            mesh(i, 0) = app.rhoPhys(i / HEIGHT / M * NELY * N + i % HEIGHT / M, 0);
        }
        const Matrix weights = test::coneWeights(WIDTH, HEIGHT, M);
        const Matrix sums = test::rowSums(weights);
        mesh = product(weights, mesh);
        for (unsigned i = 0; i < WIDTH * HEIGHT; ++i) mesh(i, 0) /= sums(i, 0);
        app.projectToMesh();
        app.densityFilterWithModifiedRadius();
    }

    std::vector<float> published() {
        std::vector<float> picture(WIDTH * HEIGHT + 1, 7.0F);
        char text[8] = "text";
        app.createAndPublishResult(picture.data(), sizeof text, text, nullptr);
        EXPECT_STREQ(text, "");
        EXPECT_EQ(picture.back(), 7.0F);
        return picture;
    }
};

TEST_F(AppPictureTest, IsOneLessTheSmoothedDensityRowByRow) {
    const std::vector<float> picture = published();
    for (unsigned r = 0; r < HEIGHT; ++r) {
        for (unsigned c = 0; c < WIDTH; ++c) {
            EXPECT_NEAR(picture[r * WIDTH + c], 1 - mesh(c * HEIGHT + r, 0), 1e-7);
        }
    }
}

TEST_F(AppPictureTest, IsSharpenedByASmoothStep) {
    app.projectHeaviside();
    const std::vector<float> picture = published();
    for (unsigned r = 0; r < HEIGHT; ++r) {
        for (unsigned c = 0; c < WIDTH; ++c) {
            const double v = mesh(c * HEIGHT + r, 0);
            const double sharp = 0.5 + std::tanh(6 * v - 3) / (2 * std::tanh(3.0));
            EXPECT_NEAR(picture[r * WIDTH + c], 1 - sharp, 1e-7);
        }
    }
}

TEST_F(AppPictureTest, NullPointersAreSkipped) {
    char text[8] = "text";
    app.createAndPublishResult(nullptr, sizeof text, text, nullptr);
    EXPECT_STREQ(text, "");
    app.createAndPublishResult(nullptr, 8, nullptr, nullptr);
    app.createAndPublishBlobResult(nullptr);
}

TEST(AppHeavisideTest, KeepsVoidHalfAndSolidExactly) {
    for (const double density : {0.0, 0.5, 1.0}) {
        App app(3, 2, 1, 1, 0.5F, 1);
        app.rhoPhys.fill(density);
        app.projectToMesh();
        app.densityFilterWithModifiedRadius();
        app.projectHeaviside();
        std::vector<float> picture(6);
        app.createAndPublishResult(picture.data(), 0, nullptr, nullptr);
        EXPECT_EQ(picture, std::vector<float>(6, static_cast<float>(1 - density)));
    }
}

TEST(AppBlobPictureTest, IsRowByRow) {
    SolverApp app(3, 2, 1, 1, 0.5F, 1);
    test::Settings settings = test::cantilever(3, 2);
    settings.blob = {2, 2, 0, 1, 1};
    test::send(settings, app);
    std::vector<int> mask(7, 9);
    app.createAndPublishBlobResult(mask.data());
    EXPECT_EQ(mask, (std::vector<int>{0, 0, 1, 0, 1, 0, 9}));
}

TEST(WriteTextTest, CutsToTheBufferAndTerminates) {
    for (int length = -1; length <= 8; ++length) {
        char buffer[10] = "123456789";
        writeText("wrong", length, buffer);
        if (length < 1) {
            EXPECT_STREQ(buffer, "123456789");
            continue;
        }
        const size_t cut = std::min<size_t>(5, static_cast<size_t>(length) - 1);
        EXPECT_EQ(std::string(buffer), std::string("wrong").substr(0, cut));
        EXPECT_EQ(buffer[cut + 1], "123456789"[cut + 1]);  // and nothing behind it
    }
    writeText("wrong", 8, nullptr);
}

}  // namespace
