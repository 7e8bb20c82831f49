#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "geometric/primitives/geobox.h"
#include "geometric/primitives/geocoordinate.h"

namespace {

using geometric::Geobox;
using geometric::Geocoordinate;
using Points = std::vector<Geocoordinate<float>>;

TEST(Geobox, DefaultIsInvertedAndFirstResetMakesAPoint) {
    Geobox<int> box;
    EXPECT_EQ(box.width(), -1000 - 100000 + 1);
    box.reset({5, 7});
    EXPECT_EQ(box.min_x, 5);
    EXPECT_EQ(box.max_y, 7);
    EXPECT_EQ(box.width(), 1);
    EXPECT_EQ(box.height(), 1);
    EXPECT_EQ(box.area(), 1);
    box.reset({2, 9});
    box.reset({4, 8});  // inside: nothing moves
    EXPECT_EQ(box.min_x, 2);
    EXPECT_EQ(box.max_x, 5);
    EXPECT_EQ(box.min_y, 7);
    EXPECT_EQ(box.max_y, 9);
}

TEST(Geobox, DiagonalTruncates) {
    Geobox<int> box;
    box.reset({0, 0});
    box.reset({2, 2});  // 3 x 3: sqrt(18) = 4.24
    EXPECT_EQ(box.diagonal(), 4);
    box.reset({3, 2});  // 4 x 3: exactly 5
    EXPECT_EQ(box.diagonal(), 5);
}

TEST(Geobox, TouchingEdgesIntersectAndContainIsInclusive) {
    Geobox<int> left;
    left.reset({0, 0});
    left.reset({10, 10});
    Geobox<int> right;
    right.reset({10, 5});
    right.reset({20, 30});
    EXPECT_TRUE(left.intersect(right));
    EXPECT_TRUE(right.intersect(left));
    right.min_x = 11;
    EXPECT_FALSE(left.intersect(right));
    Geobox<int> below;
    below.reset({0, 11});
    below.reset({10, 12});
    EXPECT_FALSE(left.intersect(below));
    EXPECT_FALSE(below.intersect(left));

    Geobox<int> inner;
    inner.reset({0, 3});
    inner.reset({10, 10});
    EXPECT_TRUE(left.contain(inner));
    EXPECT_FALSE(inner.contain(left));

    left.move_right(4);
    EXPECT_EQ(left.min_x, 10);
    EXPECT_EQ(left.max_x, 14);
}

TEST(NearestPoint, FirstOfEqualsAndSelfExclusion) {
    const Geocoordinate<float> here(0.0f, 0.0f);
    const Points points = {{3.0f, 4.0f}, {0.0f, 0.0f}, {-4.0f, 3.0f}, {0.0f, 0.0f}, {1.0f, 1.0f}};
    float distance = -1.0f;
    int index = -1;
    here.nearest_distance(points, distance, index);
    EXPECT_EQ(distance, 0.0f);
    EXPECT_EQ(index, 1);

    // Both copies of the point itself are excluded.
    here.nearest_distance_exclude_itself(points, distance, index);
    EXPECT_EQ(index, 4);
    EXPECT_EQ(distance, static_cast<float>(std::sqrt(2.0)));

    const Points only_itself = {{0.0f, 0.0f}};
    here.nearest_distance_exclude_itself(only_itself, distance, index);
    EXPECT_EQ(distance, 1e10f);
    EXPECT_EQ(index, 0);

    const Points tie = {{3.0f, 4.0f}, {-4.0f, 3.0f}};
    here.nearest_distance(tie, distance, index);
    EXPECT_EQ(distance, 5.0f);
    EXPECT_EQ(index, 0);
}

TEST(NearestPoint, ExcludedPositionsMapBackToTheGivenList) {
    const Geocoordinate<float> here(0.0f, 0.0f);
    const Points points = {{1.0f, 0.0f}, {2.0f, 0.0f}, {3.0f, 0.0f}, {4.0f, 0.0f}, {5.0f, 0.0f}};
    std::vector<int> excluded = {2, 0, 1};
    float distance = 0.0f;
    int index = -1;
    here.nearest_distance_with_selected_points(points, distance, index, excluded);
    EXPECT_EQ(excluded, (std::vector<int>{0, 1, 2}));  // sorted in place
    EXPECT_EQ(index, 3);
    EXPECT_EQ(distance, 4.0f);

    excluded = {3, 0};
    here.nearest_distance_with_selected_points(points, distance, index, excluded);
    EXPECT_EQ(index, 1);

    excluded = {4, 3, 2, 1, 0};
    index = 77;
    here.nearest_distance_with_selected_points(points, distance, index, excluded);
    EXPECT_EQ(distance, 10000.0f);
    EXPECT_EQ(index, 77);
}

TEST(NearestPoint, SeededSearchesAgreeWithAPlainScan) {
    std::mt19937 random(20261122);
    std::uniform_int_distribution<int> coordinate(-50, 50);
    for (int round = 0; round < 200; ++round) {
        Points points(1 + random() % 12);
        for (auto& point : points) {
            point.set(static_cast<float>(coordinate(random)),
                      static_cast<float>(coordinate(random)));
        }
        const Geocoordinate<float> here = points[random() % points.size()];
        std::vector<int> excluded;
        for (int i = 0; i < static_cast<int>(points.size()); ++i) {
            if (random() % 3 == 0)
                excluded.push_back(i);
        }
        float expected = 10000.0f;
        int expected_index = -1;
        for (int i = 0; i < static_cast<int>(points.size()); ++i) {
            if (std::find(excluded.begin(), excluded.end(), i) != excluded.end())
                continue;
            const double dx = points[i].x - here.x;
            const double dy = points[i].y - here.y;
            const float d = static_cast<float>(std::sqrt(dx * dx + dy * dy));
            if (expected_index < 0 || d < expected) {
                expected = d;
                expected_index = i;
            }
        }
        float distance = 0.0f;
        int index = -1;
        here.nearest_distance_with_selected_points(points, distance, index, excluded);
        EXPECT_EQ(distance, expected);
        EXPECT_EQ(index, expected_index);
    }
}

TEST(PointLists, CompareAlongTheFirstList) {
    const Points four = {{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}};
    Points longer = four;
    longer.push_back({9.0f, 9.0f});
    EXPECT_TRUE(four == longer);
    EXPECT_FALSE(longer == four);
    Points moved = four;
    moved[2].y = 1.5f;
    EXPECT_FALSE(four == moved);
}

}  // namespace
