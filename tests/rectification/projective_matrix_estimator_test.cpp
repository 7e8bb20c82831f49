// The four-point projective solver: known mappings, seeded random pages checked by mapping the
// points through the result, and the refusal of degenerate input.

#include "geometric/rectification/projective_matrix_estimator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using geometric::Geocoordinate;
using geometric::ProjectiveMatrix;
using geometric::ProjectiveMatrixEstimator;
using Points = std::vector<Geocoordinate<float>>;

// (x, y, 1) times a row-vector matrix, divided through.
Geocoordinate<double> map_point(const double (&m)[3][3], double x, double y) {
    const double u = x * m[0][0] + y * m[1][0] + m[2][0];
    const double v = x * m[0][1] + y * m[1][1] + m[2][1];
    const double w = x * m[0][2] + y * m[1][2] + m[2][2];
    return {u / w, v / w};
}

void fill(ProjectiveMatrix& matrix, double value) {
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            matrix.forward_matrix[r][c] = value;
            matrix.inverse_matrix[r][c] = value;
        }
    }
}

bool untouched(const ProjectiveMatrix& matrix, double value) {
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (matrix.forward_matrix[r][c] != value || matrix.inverse_matrix[r][c] != value) {
                return false;
            }
        }
    }
    return true;
}

TEST(ProjectiveMatrixEstimator, ScaleAndShiftActOnRowVectors) {
    // first = 2 * second + (5, 7): the forward matrix is [[2, 0, 0], [0, 2, 0], [5, 7, 1]].
    const Points second = {{0.0f, 0.0f}, {10.0f, 0.0f}, {10.0f, 20.0f}, {0.0f, 20.0f}};
    const Points first = {{5.0f, 7.0f}, {25.0f, 7.0f}, {25.0f, 47.0f}, {5.0f, 47.0f}};
    ProjectiveMatrix matrix;
    ASSERT_TRUE(ProjectiveMatrixEstimator(100, 100).estimate_matrix_via_correponding_points(
        first, second, matrix));
    const double expected[3][3] = {{2, 0, 0}, {0, 2, 0}, {5, 7, 1}};
    const double expected_inverse[3][3] = {{0.5, 0, 0}, {0, 0.5, 0}, {-2.5, -3.5, 1}};
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            EXPECT_NEAR(matrix.forward_matrix[r][c], expected[r][c], 1e-12) << r << c;
            EXPECT_NEAR(matrix.inverse_matrix[r][c], expected_inverse[r][c], 1e-12) << r << c;
        }
    }
    EXPECT_EQ(matrix.forward_matrix[2][2], 1.0);  // the ninth coefficient is fixed, not solved

    matrix.set_unit_matrix();
    EXPECT_EQ(matrix.forward_matrix[2][0], 0.0);
    EXPECT_EQ(matrix.inverse_matrix[1][1], 1.0);
}

TEST(ProjectiveMatrixEstimator, SeededRandomPagesMapOntoTheirPhotos) {
    // The products in the system are rounded to float, so the solution is exact for a slightly
    // perturbed system: a ten-thousandth of a pixel is far below that and far above any real fault.
    constexpr double kTolerance = 1e-4;
    std::mt19937 generator(20261122u);
    std::uniform_real_distribution<float> jitter(-150.0f, 150.0f);
    for (int trial = 0; trial < 200; ++trial) {
        const float page_width = 800.0f + 10.0f * static_cast<float>(trial);
        const float page_height = 1100.0f;
        const Points page = {
            {0.0f, 0.0f}, {page_width, 0.0f}, {page_width, page_height}, {0.0f, page_height}};
        const Points photo = {{300.0f + jitter(generator), 200.0f + jitter(generator)},
                              {1300.0f + jitter(generator), 180.0f + jitter(generator)},
                              {1400.0f + jitter(generator), 1000.0f + jitter(generator)},
                              {250.0f + jitter(generator), 1050.0f + jitter(generator)}};
        ProjectiveMatrix matrix;
        ASSERT_TRUE(ProjectiveMatrixEstimator(1600, 1200)
                        .estimate_matrix_via_correponding_points(photo, page, matrix));
        for (int i = 0; i < 4; ++i) {
            const auto forward = map_point(matrix.forward_matrix, page[i].x, page[i].y);
            EXPECT_NEAR(forward.x, photo[i].x, kTolerance) << "trial " << trial << " corner " << i;
            EXPECT_NEAR(forward.y, photo[i].y, kTolerance) << "trial " << trial << " corner " << i;
            const auto back = map_point(matrix.inverse_matrix, photo[i].x, photo[i].y);
            EXPECT_NEAR(back.x, page[i].x, kTolerance) << "trial " << trial << " corner " << i;
            EXPECT_NEAR(back.y, page[i].y, kTolerance) << "trial " << trial << " corner " << i;
        }
    }
}

TEST(ProjectiveMatrixEstimator, CollinearPointsAreRefusedAndTheMatrixKept) {
    const Points square = {{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}};
    const Points on_a_line = {{0.0f, 0.0f}, {1.0f, 0.0f}, {2.0f, 0.0f}, {3.0f, 0.0f}};
    const Points on_a_diagonal = {{0.0f, 0.0f}, {1.0f, 1.0f}, {2.0f, 2.0f}, {4.0f, 4.0f}};
    const Points one_point = {{5.0f, 5.0f}, {5.0f, 5.0f}, {5.0f, 5.0f}, {5.0f, 5.0f}};
    const ProjectiveMatrixEstimator estimator(10, 10);
    for (const Points* degenerate : {&on_a_line, &on_a_diagonal, &one_point}) {
        ProjectiveMatrix matrix;
        fill(matrix, 7.0);
        EXPECT_FALSE(
            estimator.estimate_matrix_via_correponding_points(square, *degenerate, matrix));
        EXPECT_TRUE(untouched(matrix, 7.0));
    }
}

TEST(ProjectiveMatrixEstimator, OnlyFourPairsAreAccepted) {
    const Points four = {{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}};
    const Points five = {{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}, {0.5f, 0.5f}};
    const Points three(four.begin(), four.begin() + 3);
    const ProjectiveMatrixEstimator estimator(10, 10);
    ProjectiveMatrix matrix;
    fill(matrix, 7.0);
    EXPECT_FALSE(estimator.estimate_matrix_via_correponding_points(five, five, matrix));
    EXPECT_FALSE(estimator.estimate_matrix_via_correponding_points(three, three, matrix));
    EXPECT_FALSE(estimator.estimate_matrix_via_correponding_points(four, three, matrix));
    EXPECT_TRUE(untouched(matrix, 7.0));
    EXPECT_EQ(estimator.width, 10);
}

}  // namespace
