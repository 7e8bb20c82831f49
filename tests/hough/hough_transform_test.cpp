#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "geometric/boundaries/hough_transform.h"

namespace {

using geometric::BoundingLine;
using geometric::HoughTransform;

// Opens the steps of the search to the tests.
class HoughProbe : public HoughTransform {
public:
    HoughProbe(int width, int height) : HoughTransform(width, height) {}
    using HoughTransform::is_parallel_line_qualified;
    using HoughTransform::obtain_angle_search_range;
    using HoughTransform::obtain_best_parallel_line_index;
    using HoughTransform::peak;
    using HoughTransform::set_up_accumulator_map;
    using HoughTransform::smooth_accumulator_map;
    using HoughTransform::supporting_double_end_line;
};

// The outline of a quadrilateral, corners in order, as 8-connected pixels without repeats.
void outline(const std::vector<std::pair<double, double>>& corners, std::vector<int>& xs,
             std::vector<int>& ys) {
    std::set<std::pair<int, int>> seen;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto& from = corners[i];
        const auto& to = corners[(i + 1) % corners.size()];
        const int steps = static_cast<int>(std::ceil(
            std::max(std::abs(to.first - from.first), std::abs(to.second - from.second))));
        for (int s = 0; s <= steps; ++s) {
            const double t = static_cast<double>(s) / steps;
            const int x = static_cast<int>(std::lround(from.first + t * (to.first - from.first)));
            const int y =
                static_cast<int>(std::lround(from.second + t * (to.second - from.second)));
            if (seen.insert({x, y}).second) {
                xs.push_back(x);
                ys.push_back(y);
            }
        }
    }
}

// Where a fitted line crosses the vertical x = at (or, for a near vertical line, y = at).
double crossing(const BoundingLine& line, double at) {
    const auto& l = line.line;
    if (std::abs(l.b) > std::abs(l.a)) {
        return -(l.a * at + l.c) / l.b;
    }
    return -(l.b * at + l.c) / l.a;
}

TEST(HoughTable, SizesAnglesRangesAndEnds) {
    HoughProbe hough(400, 300);
    EXPECT_EQ(hough.theta_count, 180);
    EXPECT_FLOAT_EQ(hough.rho_offset, static_cast<float>(std::sqrt(2.0) * 200.0));
    EXPECT_EQ(hough.rho_count, 566);  // twice the rounded 282.84

    std::vector<int> lows;
    std::vector<int> highs;
    HoughProbe::obtain_angle_search_range(170, 17, lows, highs);
    EXPECT_EQ(lows, (std::vector<int>{153, 0}));
    EXPECT_EQ(highs, (std::vector<int>{179, 7}));
    lows.clear();
    highs.clear();
    HoughProbe::obtain_angle_search_range(10, 17, lows, highs);
    EXPECT_EQ(lows, (std::vector<int>{0, 173}));
    EXPECT_EQ(highs, (std::vector<int>{27, 179}));
    lows.clear();
    highs.clear();
    HoughProbe::obtain_angle_search_range(90, 37, lows, highs);
    EXPECT_EQ(lows, (std::vector<int>{53}));
    EXPECT_EQ(highs, (std::vector<int>{127}));

    // Row 283 is distance 0: the lines through the centre.
    int x0, y0, x1, y1;
    EXPECT_TRUE(hough.supporting_double_end_line(283, 90, x0, y0, x1, y1));
    EXPECT_EQ(x0, 0);
    EXPECT_EQ(x1, 400);
    EXPECT_EQ(y0, 150);
    EXPECT_EQ(y1, 150);
    EXPECT_FALSE(hough.supporting_double_end_line(283 - 100, 0, x0, y0, x1, y1));
    EXPECT_EQ(y0, 0);
    EXPECT_EQ(y1, 300);
    EXPECT_EQ(x0, 100);
    EXPECT_EQ(x1, 100);
}

TEST(HoughVotes, VotingSmoothingAndTheFirstOfEqualPeaks) {
    HoughProbe hough(40, 30);
    hough.smooth_accumulator = 0;
    std::vector<unsigned int> votes;
    hough.set_up_accumulator_map(votes, {5, 5}, {7, 7});
    ASSERT_EQ(votes.size(), static_cast<std::size_t>(hough.rho_count * hough.theta_count));
    for (int t = 0; t < hough.theta_count; ++t) {
        const float x = 5 - 20.0f;
        const float y = 7 - 15.0f;
        const int row = static_cast<int>(y * hough.sin_table[t] + x * hough.cos_table[t] +
                                         hough.rho_offset + 0.5);
        ASSERT_EQ(votes[static_cast<std::size_t>(row) * hough.theta_count + t], 2u) << t;
    }

    // In place, downwards: the second row reads the first one already smoothed.
    std::vector<unsigned int> column(static_cast<std::size_t>(hough.rho_count * hough.theta_count),
                                     0u);
    column[0 * hough.theta_count + 3] = 9;
    column[1 * hough.theta_count + 3] = 9;
    column[2 * hough.theta_count + 3] = 0;
    hough.smooth_accumulator_map(column);
    EXPECT_EQ(column[1 * hough.theta_count + 3], 6u);  // (9 + 9 + 0) / 3
    EXPECT_EQ(column[2 * hough.theta_count + 3], 2u);  // (6 + 0 + 0) / 3

    std::vector<unsigned int> ties(column.size(), 0u);
    ties[7 * hough.theta_count + 50] = 4;
    ties[7 * hough.theta_count + 20] = 4;
    ties[9 * hough.theta_count + 10] = 4;
    int rho = -1;
    int theta = -1;
    unsigned int value = 0;
    hough.peak(ties, rho, theta, value);
    EXPECT_EQ(rho, 7);
    EXPECT_EQ(theta, 20);
    EXPECT_EQ(value, 4u);
    hough.peak(ties, {40}, {60}, rho, theta, value);
    EXPECT_EQ(rho, 7);
    EXPECT_EQ(theta, 50);
}

TEST(HoughParallels, QualificationAndChoice) {
    HoughProbe hough(400, 300);
    const HoughTransform::DoubleEndLine reference{{0, 100}, {400, 100}};
    float distance = 0.0f;
    bool side = false;
    EXPECT_TRUE(HoughProbe::is_parallel_line_qualified(reference, {{0, 250}, {400, 230}}, distance,
                                                       side, 17, 75.0f));
    EXPECT_FLOAT_EQ(distance, 140.0f);
    EXPECT_FALSE(side);  // below: -y + 100 is negative
    EXPECT_FALSE(HoughProbe::is_parallel_line_qualified(reference, {{0, 150}, {400, 160}}, distance,
                                                        side, 17, 75.0f));
    EXPECT_FALSE(HoughProbe::is_parallel_line_qualified(reference, {{0, 0}, {400, 300}}, distance,
                                                        side, 17, 75.0f));  // 36.9 degrees

    EXPECT_EQ(hough.obtain_best_parallel_line_index({5}, {1.0f}, {8}), 8);
    EXPECT_EQ(hough.obtain_best_parallel_line_index({5, 5, 5}, {2.0f, 2.0f, 2.0f}, {3, 4, 6}), 3);
    // Votes weigh 0.7, distance 0.3: the better voted but nearer line wins.
    EXPECT_EQ(hough.obtain_best_parallel_line_index({10, 20}, {200.0f, 100.0f}, {0, 1}), 1);
}

// The sides, keyed by position: left, top, right, bottom.
std::vector<const BoundingLine*> by_position(const std::vector<BoundingLine>& lines) {
    std::vector<const BoundingLine*> sides(4, nullptr);
    for (const BoundingLine& line : lines) {
        const int position = static_cast<int>(line.position);
        EXPECT_GE(position, 0);
        EXPECT_LE(position, 3);
        if (position >= 0 && position <= 3) {
            EXPECT_EQ(sides[static_cast<std::size_t>(position)], nullptr);
            sides[static_cast<std::size_t>(position)] = &line;
        }
    }
    return sides;
}

TEST(HoughPage, FourSidesOfAnUprightPage) {
    std::vector<int> xs;
    std::vector<int> ys;
    outline({{60, 40}, {340, 40}, {340, 260}, {60, 260}}, xs, ys);
    HoughTransform hough(400, 300);
    std::vector<BoundingLine> lines;
    std::vector<BoundingLine> alternatives;
    bool horizontal = false;
    ASSERT_TRUE(hough.get_bounding_lines(xs, ys, lines, alternatives, horizontal));
    EXPECT_TRUE(horizontal);  // the longer sides are the strongest
    EXPECT_TRUE(alternatives.empty());
    ASSERT_EQ(lines.size(), 4u);
    const std::vector<const BoundingLine*> sides = by_position(lines);
    ASSERT_TRUE(sides[0] && sides[1] && sides[2] && sides[3]);

    // Each side is fitted to the area between the outline and the edge of its band, 20 pixels
    // deep: the lines lie half that band inside the outline.
    EXPECT_NEAR(crossing(*sides[1], 200.0), 50.5, 1e-6);
    EXPECT_NEAR(crossing(*sides[3], 200.0), 250.0, 1e-6);
    EXPECT_NEAR(crossing(*sides[0], 150.0), 70.5, 1e-3);
    EXPECT_NEAR(crossing(*sides[2], 150.0), 330.0, 1e-3);
    EXPECT_NEAR(sides[0]->line.angle(), 90.0, 0.01);
    // Boxes of that area: 279 by 20 and 20 by 219.
    EXPECT_EQ(sides[1]->segment_length, 279);
    EXPECT_EQ(sides[0]->segment_length, 219);
    EXPECT_EQ(sides[1]->first_end, geometric::Geocoordinate<float>(61.0f, 41.0f));
    EXPECT_EQ(sides[1]->second_end, geometric::Geocoordinate<float>(339.0f, 60.0f));
    for (const BoundingLine* side : sides) {
        EXPECT_TRUE(side->well_formed);
    }

    // The same page, asked for sides summing to nearly the whole image perimeter.
    HoughTransform strict(400, 300);
    strict.minimum_perimeter_fraction = 0.99f;
    std::vector<BoundingLine> strict_lines;
    EXPECT_FALSE(strict.get_bounding_lines(xs, ys, strict_lines, alternatives, horizontal));
    EXPECT_EQ(strict_lines.size(), 4u);
    ASSERT_EQ(alternatives.size(), 4u);
    const std::vector<const BoundingLine*> offered = by_position(alternatives);
    EXPECT_EQ(offered[1]->line, sides[1]->line);
    EXPECT_EQ(offered[2]->line, sides[2]->line);
}

TEST(HoughPage, TiltedPageAndTooFewPoints) {
    // Top and bottom fall 20 pixels over 260, the sides lean 12 pixels over 200.
    const std::vector<std::pair<double, double>> corners{
        {70, 50}, {330, 70}, {318, 270}, {58, 250}};
    std::vector<int> xs;
    std::vector<int> ys;
    outline(corners, xs, ys);
    HoughTransform hough(400, 300);
    std::vector<BoundingLine> lines;
    std::vector<BoundingLine> alternatives;
    bool horizontal = false;
    ASSERT_TRUE(hough.get_bounding_lines(xs, ys, lines, alternatives, horizontal));
    EXPECT_TRUE(horizontal);
    const std::vector<const BoundingLine*> sides = by_position(lines);
    ASSERT_TRUE(sides[0] && sides[1] && sides[2] && sides[3]);
    // Each side within its band, inside the page, and roughly along the outline.
    const double top_at_200 = 50.0 + 20.0 * 130.0 / 260.0;
    const double bottom_at_200 = 250.0 + 20.0 * 142.0 / 260.0;
    const double left_at_150 = 70.0 - 12.0 * 100.0 / 200.0;
    const double right_at_150 = 330.0 - 12.0 * 100.0 / 200.0;
    EXPECT_GT(crossing(*sides[1], 200.0), top_at_200);
    EXPECT_LT(crossing(*sides[1], 200.0), top_at_200 + 20.0);
    EXPECT_LT(crossing(*sides[3], 200.0), bottom_at_200);
    EXPECT_GT(crossing(*sides[3], 200.0), bottom_at_200 - 20.0);
    EXPECT_GT(crossing(*sides[0], 150.0), left_at_150);
    EXPECT_LT(crossing(*sides[0], 150.0), left_at_150 + 20.0);
    EXPECT_LT(crossing(*sides[2], 150.0), right_at_150);
    EXPECT_GT(crossing(*sides[2], 150.0), right_at_150 - 20.0);
    for (int position : {1, 3}) {
        const double angle = sides[static_cast<std::size_t>(position)]->line.angle();
        EXPECT_LT(std::min(angle, 180.0 - angle), 5.0);
    }
    for (int position : {0, 2}) {
        EXPECT_NEAR(sides[static_cast<std::size_t>(position)]->line.angle(), 90.0, 5.0);
    }

    std::vector<int> few_x(xs.begin(), xs.begin() + 9);
    std::vector<int> few_y(ys.begin(), ys.begin() + 9);
    std::vector<BoundingLine> none;
    bool untouched = true;
    EXPECT_FALSE(hough.get_bounding_lines(few_x, few_y, none, alternatives, untouched));
    EXPECT_TRUE(untouched);
    EXPECT_TRUE(none.empty());
}

}  // namespace
