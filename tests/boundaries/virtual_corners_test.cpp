// Virtual corners worked out by hand on an image of 101 by 101 pixels (right and bottom edges at
// 100): anchors by zone, sides through vanishing points or at angles, and the projective matrix
// that a single vanishing point implies.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "geometric/boundaries/corner_calculator_mixed_from_anchor_points.h"
#include "geometric/boundaries/corner_calculator_parallel.h"
#include "geometric/boundaries/corner_calculator_parallel_from_anchor_points.h"
#include "geometric/boundaries/corner_calculator_parallel_mixed_projective.h"
#include "geometric/boundaries/corner_calculator_projective.h"
#include "geometric/rectification/projective_matrix_estimator.h"

namespace {

using namespace geometric;
using Point = Geocoordinate<float>;
using Vp = Geocoordinate<double>;
using Points = std::vector<Point>;

double slope(double degrees) {
    return std::tan(degrees * 3.141592653589793 / 180.0);
}

Point at(double x, double y) {
    return Point(static_cast<float>(x), static_cast<float>(y));
}

void expect_corners(const Points& actual, const Points& expected, float tolerance = 1e-3f) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i].x, expected[i].x, tolerance) << "corner " << i;
        EXPECT_NEAR(actual[i].y, expected[i].y, tolerance) << "corner " << i;
    }
}

const Point kTL(0, 0), kTR(100, 0), kBR(100, 100), kBL(0, 100);

TEST(CornerCalculatorProjective, AnchorsByZone) {
    const CornerCalculatorProjective calculator(101, 101);
    // Horizontal points: left and right anchors at the top corners, top and bottom by zone.
    const struct {
        Vp vp;
        Point top, bottom;
    } horizontal[] = {
        {{-10, -10}, kTR, kBL},    {{150, 150}, kTR, kBL},  // zones 0 and 8
        {{101, -0.5}, kTL, kBR},   {{-50, 600}, kTL, kBR},  // 2 (x = W lies right) and 6
        {{-0.001, 100}, kTL, kBL}, {{2000, 0}, kTR, kBR},   // 3 and 5
    };
    Point left, right, top, bottom;
    for (const auto& c : horizontal) {
        ASSERT_TRUE(calculator.calculate_horizontal_virtual_reference_point(c.vp, left, right, top,
                                                                            bottom));
        EXPECT_EQ(left, kTL);
        EXPECT_EQ(right, kTR);
        EXPECT_EQ(top, c.top) << c.vp.x << ", " << c.vp.y;
        EXPECT_EQ(bottom, c.bottom) << c.vp.x << ", " << c.vp.y;
    }
    // No rule straight above or below, over the image, or between the last pixel and the edge.
    for (const Vp vp : {Vp(50, -10), Vp(0, 500), Vp(50, 50), Vp(-10, 100.5), Vp(100.5, 50)}) {
        EXPECT_FALSE(
            calculator.calculate_horizontal_virtual_reference_point(vp, left, right, top, bottom));
    }

    // Vertical points: top and bottom anchors at the left corners, left and right by zone; a
    // coordinate between the last pixel and the edge falls to the zone below the image.
    const struct {
        Vp vp;
        Point left, right;
    } vertical[] = {
        {{-10, -10}, kBL, kTR},   {{300, 300}, kBL, kTR}, {{100, -1}, kTL, kTR},  // 0, 8, 1
        {{101, -1}, kTL, kBR},    {{-1, 101}, kTL, kBR},  {{0, 101}, kBL, kBR},   // 2, 6, 7
        {{100.5, -50}, kBL, kBR},
    };
    for (const auto& c : vertical) {
        ASSERT_TRUE(
            calculator.calculate_vertical_virtual_reference_point(c.vp, left, right, top, bottom));
        EXPECT_EQ(top, kTL);
        EXPECT_EQ(bottom, kBL);
        EXPECT_EQ(left, c.left) << c.vp.x << ", " << c.vp.y;
        EXPECT_EQ(right, c.right) << c.vp.x << ", " << c.vp.y;
    }
    for (const Vp vp : {Vp(-10, 50), Vp(500, 50), Vp(50, 50)}) {
        EXPECT_FALSE(
            calculator.calculate_vertical_virtual_reference_point(vp, left, right, top, bottom));
    }
}

TEST(CornerCalculatorProjective, VirtualCornersFromVanishingPoints) {
    const CornerCalculatorProjective calculator(101, 101);
    Points corners;
    // Left of the image at mid height: top and bottom through (0, 0) and (0, 100), slopes -1/2
    // and 1/2; left and right vertical at 0 and 100.
    const Vp horizontal(-100, 50);
    ASSERT_TRUE(calculator.estimate_virtual_corners(horizontal, Vp(), true, false, corners));
    expect_corners(corners, {{0, 0}, {100, -50}, {100, 150}, {0, 100}}, 0.0f);
    // Above the image: left and right through (0, 0) and (100, 0), slopes -2 and 2; top and
    // bottom flat through the left image corners.
    const Vp vertical(50, -100);
    ASSERT_TRUE(calculator.estimate_virtual_corners(Vp(), vertical, false, true, corners));
    expect_corners(corners, {{0, 0}, {100, 0}, {150, 100}, {-50, 100}}, 0.0f);
    // Both: y = -x/2 and y = x/2 + 100 against y = -2x and y = 2x - 200.
    ASSERT_TRUE(calculator.estimate_virtual_corners(horizontal, vertical, true, true, corners));
    expect_corners(corners, {{0, 0}, {80, -40}, {200, 200}, {-40, 80}});
    // A vanishing point straight above a corner gives an exactly vertical side.
    ASSERT_TRUE(calculator.estimate_virtual_corners(Vp(), Vp(0, -100), false, true, corners));
    expect_corners(corners, {{0, 0}, {100, 0}, {200, 100}, {0, 100}}, 0.0f);

    const Points untouched = corners;
    EXPECT_FALSE(calculator.estimate_virtual_corners(horizontal, vertical, false, false, corners));
    EXPECT_FALSE(calculator.estimate_virtual_corners(Vp(50, 50), vertical, true, true, corners));
    EXPECT_EQ(corners, untouched);

    Points virtual_corners, reference;
    ASSERT_TRUE(
        calculator.estimate_cp_pairs(vertical, DIRECTION_VERTICAL, virtual_corners, reference));
    expect_corners(virtual_corners, {{0, 0}, {100, 0}, {150, 100}, {-50, 100}}, 0.0f);
    EXPECT_EQ(reference, Points({kTL, kTR, kBR, kBL}));
}

TEST(CornerCalculatorMixedFromAnchorPoints, SidesAtAnAngleAndDispatch) {
    const Vp vp(-100, 50);
    Points corners;
    // Within 0.4 degrees of 90 the sides are exactly vertical through their anchors.
    const Point left(10, 0), right(90, 100);
    CornerCalculatorMixedFromAnchorPoints::identifyHorizontalInputCorners(vp, left, right, kTL, kBL,
                                                                          corners, 90.39);
    EXPECT_EQ(corners[0].x, 10.0f);
    EXPECT_EQ(corners[3].x, 10.0f);
    EXPECT_EQ(corners[1].x, 90.0f);
    // Beyond it they lean: the bottom side y = x/2 + 100 meets y = t (x - 10).
    CornerCalculatorMixedFromAnchorPoints::identifyHorizontalInputCorners(vp, left, right, kTL, kBL,
                                                                          corners, 89.5);
    const double t = slope(89.5);
    EXPECT_NEAR(corners[3].x, (100 + 10 * t) / (t - 0.5), 1e-3);

    const Points before = corners;
    EXPECT_FALSE(CornerCalculatorMixedFromAnchorPoints::identifyInputCorners(
        vp, vp, false, false, kTL, kTR, kTL, kBL, corners, 0.0, 90.0));
    EXPECT_EQ(corners, before);
    // One horizontal point: the left and right sides take the vertical angle.
    ASSERT_TRUE(CornerCalculatorMixedFromAnchorPoints::identifyInputCorners(
        vp, Vp(), true, false, kTL, kTR, kTL, kBL, corners, 0.0, 90.0));
    expect_corners(corners, {{0, 0}, {100, -50}, {100, 150}, {0, 100}}, 0.0f);
}

TEST(CornerCalculatorParallel, ParallelPagesAndTheirAnchors) {
    // 101 by 51: right edge 100, bottom edge 50.
    const CornerCalculatorParallel calculator(101, 51);
    Points corners;
    // Unused directions, and exactly 0 and 90, keep the axes.
    calculator.estimate_parallel_virtual_corners(false, false, 30.0, 60.0, corners);
    expect_corners(corners, {{0, 0}, {100, 0}, {100, 50}, {0, 50}}, 0.0f);
    calculator.estimate_parallel_virtual_corners(true, true, 0.0, 90.0, corners);
    expect_corners(corners, {{0, 0}, {100, 0}, {100, 50}, {0, 50}}, 0.0f);

    // Horizontal at 10: top through the top right corner, bottom through the bottom left one.
    double t = slope(10.0);
    calculator.estimate_parallel_virtual_corners(true, false, 10.0, 90.0, corners);
    expect_corners(corners, {at(0, -100 * t), {100, 0}, at(100, 100 * t + 50), {0, 50}});
    // The anchors: the higher top corner, the lower bottom corner, and of the left and of the
    // right corners the outer one, the later on a tie.
    Point left, right, top, bottom;
    calculator.estimate_anchor_corners(true, false, 10.0, 90.0, left, right, top, bottom);
    EXPECT_EQ(left, corners[0]);
    EXPECT_EQ(right, corners[2]);
    EXPECT_EQ(top, corners[3]);
    EXPECT_EQ(bottom, corners[2]);
    // Beyond 90: top through the top left corner, bottom through the bottom right one.
    t = slope(170.0);
    calculator.estimate_parallel_virtual_corners(true, false, 170.0, 90.0, corners);
    expect_corners(corners, {{0, 0}, at(100, 100 * t), {100, 50}, at(0, 50 - 100 * t)});

    // Vertical below 90: left through the bottom left corner, right through (0, 0).
    t = slope(80.0);
    calculator.estimate_parallel_virtual_corners(false, true, 0.0, 80.0, corners);
    expect_corners(corners, {at(-50 / t, 0), {0, 0}, at(50 / t, 50), {0, 50}});
    // Beyond 90: left through the top left corner, right through the bottom right one.
    t = slope(100.0);
    calculator.estimate_parallel_virtual_corners(false, true, 0.0, 100.0, corners);
    expect_corners(corners, {{0, 0}, at(100 - 50 / t, 0), {100, 50}, at(50 / t, 50)});
    calculator.estimate_anchor_corners(false, true, 0.0, 100.0, left, right, top, bottom);
    EXPECT_EQ(left, corners[1]);  // a tie in y: the later corner
    EXPECT_EQ(right, corners[3]);
    EXPECT_EQ(top, corners[3]);
    EXPECT_EQ(bottom, corners[1]);
}

TEST(CornerCalculatorParallelMixedProjective, OnePointAndOneAngle) {
    const CornerCalculatorParallelMixedProjective calculator(101, 101);
    Points corners;
    // A vertical point with flat horizontal sides through (0, 0) and (100, 100).
    ASSERT_TRUE(
        calculator.estimate_mixed_virtual_corners(DIRECTION_VERTICAL, Vp(50, -100), 0.0, corners));
    expect_corners(corners, {{0, 0}, {100, 0}, {150, 100}, {-50, 100}}, 0.0f);
    // Beyond 90 they run through (100, 0) and (0, 100): y = t (x - 100) and y = t x + 100 against
    // y = -2x and y = 2x - 200.
    double t = slope(170.0);
    ASSERT_TRUE(calculator.estimate_mixed_virtual_corners(DIRECTION_VERTICAL, Vp(50, -100), 170.0,
                                                          corners));
    const double x0 = 100 * t / (t + 2), x1 = (100 * t - 200) / (t - 2);
    const double x2 = 300 / (2 - t), x3 = -100 / (t + 2);
    expect_corners(corners,
                   {at(x0, -2 * x0), at(x1, 2 * x1 - 200), at(x2, 2 * x2 - 200), at(x3, -2 * x3)});

    // A horizontal point with upright sides at 90 through (0, 100) and (100, 0).
    ASSERT_TRUE(calculator.estimate_mixed_virtual_corners(DIRECTION_HORIZONTAL, Vp(-100, 50), 90.0,
                                                          corners));
    expect_corners(corners, {{0, 0}, {100, -50}, {100, 150}, {0, 100}}, 0.0f);
    // Beyond 90 through (0, 0) and (100, 100): corner 2 is where y = x/2 + 100 meets
    // y = t (x - 100) + 100.
    t = slope(100.0);
    ASSERT_TRUE(calculator.estimate_mixed_virtual_corners(DIRECTION_HORIZONTAL, Vp(-100, 50), 100.0,
                                                          corners));
    EXPECT_NEAR(corners[0].x, 0.0f, 1e-4f);
    EXPECT_NEAR(corners[2].x, 100 * t / (t - 0.5), 1e-3);

    EXPECT_FALSE(calculator.estimate_mixed_virtual_corners(DIRECTION_HORIZONTAL, Vp(50, -100), 90.0,
                                                           corners));
}

TEST(CornerCalculatorParallelFromAnchorPoints, SidesThroughAnchors) {
    const Point left(10, 5), right(90, 5), top(50, 20), bottom(50, 80);
    Points corners;
    ASSERT_TRUE(CornerCalculatorParallelFromAnchorPoints::identifyInputCorners(
        true, false, 0.0, 90.0, left, right, top, bottom, corners));
    expect_corners(corners, {{10, 20}, {90, 20}, {90, 80}, {10, 80}}, 0.0f);
    // Both directions, the horizontal one flat: left and right at 80 degrees through theirs.
    const double u = slope(80.0);
    ASSERT_TRUE(CornerCalculatorParallelFromAnchorPoints::identifyInputCorners(
        true, true, 0.0, 80.0, left, right, top, bottom, corners));
    expect_corners(corners, {at(10 + 15 / u, 20), at(90 + 15 / u, 20), at(90 + 75 / u, 80),
                             at(10 + 75 / u, 80)});
    const Points before = corners;
    EXPECT_FALSE(CornerCalculatorParallelFromAnchorPoints::identifyInputCorners(
        false, false, 0.0, 90.0, left, right, top, bottom, corners));
    EXPECT_EQ(corners, before);
}

// (x, y, 1) times a row-vector matrix, divided through.
Vp map_point(const double (&m)[3][3], double x, double y) {
    const double u = x * m[0][0] + y * m[1][0] + m[2][0];
    const double v = x * m[0][1] + y * m[1][1] + m[2][1];
    const double w = x * m[0][2] + y * m[1][2] + m[2][2];
    return {u / w, v / w};
}

TEST(ProjectiveMatrixEstimator, MatrixFromOneVanishingPoint) {
    const ProjectiveMatrixEstimator estimator(101, 101);
    ProjectiveMatrix matrix;
    matrix.forward_matrix[0][0] = 7.0;
    // Coordinates from 0 to the width itself are refused and leave the matrix alone.
    for (double x : {0.0, 50.0, 101.0}) {
        EXPECT_FALSE(
            estimator.estimate_projective_matrix(Vp(x, -500), DIRECTION_HORIZONTAL, matrix));
    }
    EXPECT_FALSE(estimator.estimate_projective_matrix(Vp(-500, 3), DIRECTION_VERTICAL, matrix));
    EXPECT_EQ(matrix.forward_matrix[0][0], 7.0);
    // Outside, but in no zone with anchors: the matrix becomes the identity.
    EXPECT_FALSE(
        estimator.estimate_projective_matrix(Vp(-10, 100.5), DIRECTION_HORIZONTAL, matrix));
    EXPECT_EQ(matrix.forward_matrix[0][0], 1.0);

    // The image maps onto the virtual page of (-100, 50); its centre lands where the diagonals
    // of the trapezoid (0, 0), (100, -50), (100, 150), (0, 100) cross, at (100 / 3, 50).
    ASSERT_TRUE(estimator.estimate_projective_matrix(Vp(-100, 50), DIRECTION_HORIZONTAL, matrix));
    const Points image = {kTL, kTR, kBR, kBL};
    const Points page = {{0, 0}, {100, -50}, {100, 150}, {0, 100}};
    for (int i = 0; i < 4; ++i) {
        const Vp mapped = map_point(matrix.forward_matrix, image[i].x, image[i].y);
        EXPECT_NEAR(mapped.x, page[i].x, 1e-9) << i;
        EXPECT_NEAR(mapped.y, page[i].y, 1e-9) << i;
    }
    Vp centre = map_point(matrix.forward_matrix, 50, 50);
    EXPECT_NEAR(centre.x, 100.0 / 3.0, 1e-9);
    EXPECT_NEAR(centre.y, 50.0, 1e-9);
    EXPECT_NEAR(map_point(matrix.inverse_matrix, centre.x, centre.y).x, 50.0, 1e-9);

    // Just beyond the width is accepted. A vertical point above the page: the trapezoid
    // (0, 0), (100, 0), (150, 100), (-50, 100) has its diagonals cross at (50, 100 / 3).
    EXPECT_TRUE(estimator.estimate_projective_matrix(Vp(101.5, 50), DIRECTION_HORIZONTAL, matrix));
    ASSERT_TRUE(estimator.estimate_projective_matrix(Vp(50, -100), DIRECTION_VERTICAL, matrix));
    centre = map_point(matrix.forward_matrix, 50, 50);
    EXPECT_NEAR(centre.x, 50.0, 1e-9);
    EXPECT_NEAR(centre.y, 100.0 / 3.0, 1e-9);
}

}  // namespace
