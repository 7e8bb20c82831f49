#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "geometric/primitives/geoline_base.h"
#include "geometric/primitives/geoline_base_points.h"
#include "geometric/primitives/line_distance_calculator.h"

namespace {

using geometric::Geocoordinate;
using geometric::GeolineBase;
using geometric::GeolineBasePoints;
using geometric::LineDistanceCalculator;

TEST(TwoPointLine, NormalFormForSlopedVerticalAndHorizontalLines) {
    GeolineBasePoints<int> sloped;
    sloped.use_two_points({2, 3}, {6, 11});
    EXPECT_EQ(sloped.a, 2.0);
    EXPECT_EQ(sloped.b, -1.0);
    EXPECT_EQ(sloped.c, -1.0);  // 11 - 6 * 2
    ASSERT_EQ(sloped.points.size(), 2u);
    EXPECT_EQ(sloped.first_point(), Geocoordinate<int>(2, 3));
    EXPECT_EQ(sloped.second_point(), Geocoordinate<int>(6, 11));

    GeolineBasePoints<int> vertical;
    vertical.use_two_points({7, 1}, {7, 9});
    EXPECT_EQ(vertical.a, 1.0);
    EXPECT_EQ(vertical.b, 0.0);
    EXPECT_EQ(vertical.c, -7.0);
    EXPECT_TRUE(vertical.is_vertical_line());
    EXPECT_EQ(vertical.angle(), 90.0);

    GeolineBasePoints<float> horizontal;
    horizontal.use_two_points({1.0f, 4.0f}, {9.0f, 4.0f});
    EXPECT_EQ(horizontal.a, 0.0);
    EXPECT_TRUE(horizontal.is_horizontal_line());
    EXPECT_EQ(horizontal.angle(), 0.0);
}

TEST(TwoPointLine, OnlyFloatPointsHaveAVerticalTolerance) {
    GeolineBasePoints<float> within;
    within.use_two_points({1e-8f, 0.0f}, {0.0f, 50.0f});
    EXPECT_TRUE(within.is_vertical_line());
    EXPECT_EQ(within.c, -static_cast<double>(1e-8f));
    GeolineBasePoints<float> beyond;
    beyond.use_two_points({2e-7f, 0.0f}, {0.0f, 50.0f});
    EXPECT_FALSE(beyond.is_vertical_line());

    GeolineBasePoints<int> one_apart;
    one_apart.use_two_points({0, 0}, {1, 1000});
    EXPECT_FALSE(one_apart.is_vertical_line());
    EXPECT_EQ(one_apart.a, 1000.0);
}

TEST(TwoPointLine, FloatDifferenceIsTakenBeforeWidening) {
    // In float, 1e8 - 0.5 rounds back to 1e8; in double it would keep the half.
    GeolineBasePoints<float> line;
    line.use_two_points({0.0f, 1e8f}, {-1.0f, 0.5f});
    EXPECT_EQ(line.a, 1e8);
    EXPECT_EQ(line.c, 0.5 + 1e8);
}

TEST(LineAngle, DegreesFoldIntoZeroTo180) {
    GeolineBasePoints<int> down_right;
    down_right.use_two_points({0, 0}, {10, 10});  // y grows downward
    EXPECT_DOUBLE_EQ(down_right.angle(), 45.0);
    GeolineBasePoints<int> up_right;
    up_right.use_two_points({0, 10}, {10, 0});
    EXPECT_DOUBLE_EQ(up_right.angle(), 135.0);
    EXPECT_EQ(GeolineBase(1.0, 1e-17, 0.0).angle(), 90.0);

    GeolineBase tiny_slope(1e-300, -1.0, 0.0);
    EXPECT_FALSE(tiny_slope.is_horizontal_line());
    EXPECT_TRUE(GeolineBase().is_empty());
}

TEST(LineCoefficients, ToleranceAppendAndClear) {
    const GeolineBase line(1.0, -1.0, 5.0);
    EXPECT_EQ(line, GeolineBase(1.0 + 2.220446049250313e-16, -1.0, 5.0));
    EXPECT_NE(line, GeolineBase(1.0, -1.0, 5.0 + 1e-15));

    std::vector<double> out = {9.0};
    line.obtain_coefficients(out);
    EXPECT_EQ(out, (std::vector<double>{9.0, 1.0, -1.0, 5.0}));
    GeolineBase copy;
    copy.set_coef(line.obtain_coefficients());
    EXPECT_EQ(copy.c, 5.0);

    GeolineBasePoints<int> with_points;
    with_points.use_two_points({0, 0}, {4, 4});
    const std::size_t capacity = with_points.points.capacity();
    with_points.clear();
    EXPECT_TRUE(with_points.points.empty());
    EXPECT_EQ(with_points.points.capacity(), capacity);
    EXPECT_TRUE(with_points.is_empty());
    EXPECT_TRUE(GeolineBasePoints<int>(line).points.empty());
}

TEST(LinePoints, AngleAndPointAveragesAndLength) {
    GeolineBasePoints<float> line;
    line.use_angle_and_point(45.0, {2.0f, 3.0f});
    EXPECT_EQ(line.a, std::tan(45.0 * 3.141592653589793 / 180.0));
    EXPECT_EQ(line.c, 3.0 - 2.0 * line.a);
    EXPECT_EQ(line.points.size(), 1u);

    GeolineBasePoints<int> polyline;
    polyline.points = {{0, 0}, {3, 4}, {3, 5}, {-1, 6}};
    EXPECT_EQ(polyline.average_x_coordinate(), 1);  // 5 / 4 truncated
    EXPECT_EQ(polyline.average_y_coordinate(), 3);  // 15 / 4 truncated
    EXPECT_DOUBLE_EQ(polyline.length(), 5.0 + 1.0 + std::sqrt(17.0));
    polyline.points.resize(1);
    EXPECT_EQ(polyline.length(), 0.0);
}

TEST(SegmentToLine, SumIsTruncatedAfterEachPoint) {
    const GeolineBase horizontal(0.0, -1.0, 0.0);  // y = 0
    GeolineBasePoints<int> segment;
    // Distances 0.0 would be trivial; use a line at y = 0.6 so that each point is 0.6 away.
    const GeolineBase offset(0.0, -1.0, 0.6);
    segment.points = {{0, 1}, {5, 1}, {9, 1}};
    // 0.4 three times: each partial sum truncates to 0.
    EXPECT_EQ(segment.distance_between_linesegment_and_line(offset), 0.0);
    segment.points = {{0, 2}, {1, 3}, {2, 5}};
    // 2 -> 2, 2 + 3 -> 5, 5 + 5 -> 10: 10 / 3.
    EXPECT_DOUBLE_EQ(segment.distance_between_linesegment_and_line(horizontal), 10.0 / 3.0);
    segment.points = {{0, 2}, {1, 3}};
    // 1.4 -> 1, 1 + 2.4 -> 3: 3 / 2, where a plain mean would give 1.9.
    EXPECT_EQ(segment.distance_between_linesegment_and_line(offset), 1.5);
}

TEST(LineDistances, ParallelAndInterceptMethods) {
    const GeolineBase first(0.5, -1.0, 10.0);
    const GeolineBase second(0.5, -1.0, 4.0);
    EXPECT_DOUBLE_EQ(LineDistanceCalculator::parallel_line_distance(first, second),
                     6.0 / std::sqrt(1.25));

    bool sign = false;
    // Cut with x = 0: positions 10 and 4.
    EXPECT_EQ(LineDistanceCalculator::nearly_parallel_line_distance_intersection_method(
                  first, second, sign, geometric::DIRECTION_HORIZONTAL),
              6.0f);
    EXPECT_FALSE(sign);
    EXPECT_EQ(LineDistanceCalculator::nearly_parallel_line_distance_intersection_method(
                  second, first, sign, geometric::DIRECTION_HORIZONTAL),
              6.0f);
    EXPECT_TRUE(sign);

    // Vertical lines x = 3 and x = 7, cut with y = 0.
    const GeolineBase left(1.0, 0.0, -3.0);
    const GeolineBase right(1.0, 0.0, -7.0);
    EXPECT_EQ(LineDistanceCalculator::nearly_parallel_line_distance_intersection_method(
                  left, right, sign, geometric::DIRECTION_VERTICAL),
              4.0f);
    EXPECT_TRUE(sign);
}

}  // namespace
