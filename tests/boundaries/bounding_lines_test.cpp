// Bounding lines: which side a line is judged to be, the index record, corners, gaps, merging,
// anchor points and the angle comparisons, with values worked out by hand.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "geometric/boundaries/bounding_line_anchor_corner_calculator.h"
#include "geometric/boundaries/bounding_line_judger.h"
#include "geometric/boundaries/bounding_lines_merger.h"
#include "geometric/boundaries/bounding_lines_operator.h"
#include "geometric/boundaries/line_angle_comparator.h"

namespace {

using namespace geometric;
using Point = Geocoordinate<float>;

BoundingLine segment(float x1, float y1, float x2, float y2,
                     BoundingLinePosition position = BOUNDING_LINE_NONE, int length = 0) {
    BoundingLine line(position, GeolineBase());
    line.first_end.set(x1, y1);
    line.second_end.set(x2, y2);
    line.segment_length = length;
    return line;
}

TEST(BoundingLine, IndicatorAndEquality) {
    // The mean x of the ends for the vertical sides, the mean y for the others.
    EXPECT_FLOAT_EQ(segment(10, 0, 13, 50, BOUNDING_LINE_LEFT).position_indicator(), 11.5f);
    const BoundingLine top = segment(10, 4, 90, 7, BOUNDING_LINE_TOP);
    EXPECT_FLOAT_EQ(top.position_indicator(), 5.5f);
    BoundingLine copy = top;
    copy.line.c = 1e-17;  // within the epsilon
    EXPECT_TRUE(copy == top);
    copy.well_formed = false;
    EXPECT_FALSE(copy == top);
}

TEST(BoundingLineJudger, SingleLinesSplitAtTheIntegerHalves) {
    // 201 by 101: the halves are 100 and 50.
    const BoundingLineJudger judger(201, 101);
    const struct {
        float x, y;
        bool horizontal;
        BoundingLinePosition expected;
    } cases[] = {{0.0f, 49.9f, true, BOUNDING_LINE_TOP},
                 {0.0f, 50.0f, true, BOUNDING_LINE_BOTTOM},
                 {99.9f, 0.0f, false, BOUNDING_LINE_LEFT},
                 {100.0f, 0.0f, false, BOUNDING_LINE_RIGHT}};
    for (const auto& c : cases) {
        std::vector<BoundingLine> lines;
        BoundingLine line = segment(c.x, c.y, 200.0f, 100.0f);
        EXPECT_TRUE(judger.formulateBoundingLine(lines, line, c.horizontal));
        EXPECT_EQ(line.position, c.expected);
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0].position, c.expected);
    }
}

TEST(BoundingLineJudger, PairsDecideByTheFirstEnds) {
    const BoundingLineJudger judger(200, 100);
    std::vector<BoundingLine> lines;
    BoundingLine first = segment(0.0f, 10.0f, 199.0f, 10.0f);
    judger.formulateBoundingLine(lines, first, true);
    // Both in the top half: the lower one becomes the bottom, the answer says they would have been
    // one side alone, and the line is appended all the same.
    BoundingLine second = segment(0.0f, 20.0f, 199.0f, 20.0f);
    EXPECT_FALSE(judger.formulateBoundingLine(lines, second, true));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].position, BOUNDING_LINE_TOP);
    EXPECT_EQ(lines[1].position, BOUNDING_LINE_BOTTOM);

    // After one horizontal line a vertical line is judged alone.
    lines.resize(1);
    BoundingLine vertical = segment(150.0f, 0.0f, 150.0f, 99.0f);
    EXPECT_TRUE(judger.formulateBoundingLine(lines, vertical, false));
    EXPECT_EQ(vertical.position, BOUNDING_LINE_RIGHT);
    // A higher second line takes the top and pushes the first to the bottom.
    lines.resize(1);
    BoundingLine higher = segment(0.0f, 5.0f, 199.0f, 5.0f);
    EXPECT_FALSE(judger.formulateBoundingLine(lines, higher, true));
    EXPECT_EQ(higher.position, BOUNDING_LINE_TOP);
    EXPECT_EQ(lines[0].position, BOUNDING_LINE_BOTTOM);
}

TEST(BoundingLineJudger, FromThreeLinesTheThirdIsAlwaysThePartner) {
    const BoundingLineJudger judger(200, 100);
    std::vector<BoundingLine> lines = {segment(0.0f, 10.0f, 199.0f, 10.0f, BOUNDING_LINE_TOP),
                                       segment(5.0f, 0.0f, 5.0f, 99.0f, BOUNDING_LINE_LEFT),
                                       segment(190.0f, 0.0f, 190.0f, 99.0f, BOUNDING_LINE_RIGHT)};
    // Paired with the right line although it is vertical: it becomes the top.
    BoundingLine next = segment(0.0f, 3.0f, 199.0f, 3.0f);
    EXPECT_TRUE(judger.formulateBoundingLine(lines, next, true));
    EXPECT_EQ(next.position, BOUNDING_LINE_BOTTOM);
    EXPECT_EQ(lines[2].position, BOUNDING_LINE_TOP);
    // With four lines the partner is still the third, not the last.
    BoundingLine fifth = segment(0.0f, 1.0f, 199.0f, 1.0f);
    EXPECT_FALSE(judger.formulateBoundingLine(lines, fifth, true));
    EXPECT_EQ(fifth.position, BOUNDING_LINE_BOTTOM);
    EXPECT_EQ(lines[3].position, BOUNDING_LINE_BOTTOM);
}

TEST(BoundingLinesOperator, PropertyOrdersEndsAndIndexesSides) {
    std::vector<BoundingLine> lines = {segment(90.0f, 20.0f, 10.0f, 21.0f, BOUNDING_LINE_TOP),
                                       segment(10.0f, 70.0f, 11.0f, 20.0f, BOUNDING_LINE_LEFT),
                                       segment(0.0f, 0.0f, 1.0f, 1.0f, BOUNDING_LINE_NONE),
                                       segment(90.0f, 20.0f, 90.0f, 70.0f, BOUNDING_LINE_RIGHT)};
    BoundingLineProperty property;
    BoundingLinesOperator::initializeBoundingLineProperty(lines, property);
    EXPECT_EQ(property.top_index, 0);
    EXPECT_EQ(property.left_index, 1);
    EXPECT_EQ(property.right_index, 3);
    EXPECT_EQ(property.bottom_index, -1);
    EXPECT_EQ(property.vertical_indices, std::vector<int>({1, 3}));
    EXPECT_FALSE(property.is_four_boundaries_complete());
    EXPECT_EQ(lines[0].first_end.x, 10.0f);  // left to right
    EXPECT_EQ(lines[1].first_end.y, 20.0f);  // top to bottom

    lines.push_back(segment(10.0f, 70.0f, 90.0f, 70.0f, BOUNDING_LINE_BOTTOM));
    BoundingLineProperty complete;
    BoundingLinesOperator::initializeBoundingLineProperty(lines, complete);
    EXPECT_TRUE(complete.is_four_boundaries_complete());
}

TEST(BoundingLinesOperator, AnglesCornersLengthsAndGaps) {
    std::vector<BoundingLine> lines = {
        BoundingLine(BOUNDING_LINE_LEFT, GeolineBase(1.0, 0.0, -10.0)),     // x = 10, 90 degrees
        BoundingLine(BOUNDING_LINE_TOP, GeolineBase(1.0, -1.0, 10.0)),      // y = x + 10, 45
        BoundingLine(BOUNDING_LINE_RIGHT, GeolineBase(-1.0, -1.0, 190.0)),  // 135 degrees
        BoundingLine(BOUNDING_LINE_BOTTOM, GeolineBase(0.0, -1.0, 70.0))};  // y = 70, 0 degrees
    BoundingLineProperty property;
    BoundingLinesOperator::initializeBoundingLineProperty(lines, property);
    EXPECT_FLOAT_EQ(BoundingLinesOperator::getHorizontalAngle(lines, property), 22.5f);
    EXPECT_FLOAT_EQ(BoundingLinesOperator::getVerticalAngle(lines, property), 112.5f);

    std::vector<Point> corners;
    BoundingLinesOperator::obtainBoundingLineControlPoints(lines, property, corners);
    EXPECT_EQ(corners, std::vector<Point>({{10, 20}, {90, 100}, {120, 70}, {10, 70}}));
    // Parallel sides have no corner: a left line y = x leaves corner 0 as it was.
    lines[0].line = GeolineBase(1.0, -1.0, 0.0);
    corners.assign(4, Point(-7.0f, -7.0f));
    BoundingLinesOperator::obtainBoundingLineControlPoints(lines, property, corners);
    EXPECT_EQ(corners, std::vector<Point>({{-7, -7}, {90, 100}, {120, 70}, {70, 70}}));

    lines[0].segment_length = 3;
    lines[2].segment_length = 40;
    EXPECT_EQ(BoundingLinesOperator::obtainSegmentLenSum(lines), 43);
    // Gaps of 5 (3-4-5), 5, 0 and 0.5 at the four corners.
    lines[0].first_end.set(10.0f, 24.0f);
    lines[0].second_end.set(10.0f, 70.5f);
    lines[1].first_end.set(13.0f, 20.0f);
    lines[1].second_end.set(90.0f, 20.0f);
    lines[2].first_end.set(93.0f, 24.0f);
    lines[2].second_end.set(90.0f, 70.0f);
    lines[3].first_end.set(10.0f, 70.0f);
    lines[3].second_end.set(90.0f, 70.0f);
    EXPECT_FLOAT_EQ(BoundingLinesOperator::obtainUnclosedDistance(lines, property), 10.5f);
}

TEST(BoundingLinesMerger, LongerSourceLinesReplaceAndNewSidesAppend) {
    std::vector<BoundingLine> target = {segment(0, 0, 1, 0, BOUNDING_LINE_TOP, 10),
                                        segment(0, 0, 0, 1, BOUNDING_LINE_LEFT, 50)};
    const std::vector<BoundingLine> source = {
        segment(0, 1, 1, 1, BOUNDING_LINE_TOP, 20), segment(0, 2, 0, 3, BOUNDING_LINE_LEFT, 40),
        segment(0, 9, 1, 9, BOUNDING_LINE_BOTTOM, 5), segment(0, 8, 1, 8, BOUNDING_LINE_BOTTOM, 7)};
    BoundingLinesMerger::merge_bounding_lines(target, source);
    ASSERT_EQ(target.size(), 4u);
    EXPECT_EQ(target[0].first_end.y, 1.0f);   // replaced by the longer source line
    EXPECT_EQ(target[1].segment_length, 50);  // the target line was longer
    // Both bottom lines were set aside before either was appended, so both arrive.
    EXPECT_EQ(target[2].segment_length, 5);
    EXPECT_EQ(target[3].segment_length, 7);
}

TEST(BoundingLineAnchorCornerCalculator, MiddleOfTheLineClampedIntoTheImage) {
    const BoundingLineAnchorCornerCalculator calculator(101, 51);
    Point point(-1.0f, -1.0f);
    // x = 10 + y / 5 at the middle row 25.
    calculator.obtainAnchorPoint(GeolineBase(1.0, -0.2, -10.0), BOUNDING_LINE_LEFT, point);
    EXPECT_EQ(point, Point(15.0f, 25.0f));
    calculator.obtainAnchorPoint(GeolineBase(1.0, 0.0, -130.0), BOUNDING_LINE_RIGHT, point);
    EXPECT_EQ(point, Point(100.0f, 25.0f));
    // y = x / 2 - 30 at the middle column 50 is -5: clamped to 0.
    calculator.obtainAnchorPoint(GeolineBase(0.5, -1.0, -30.0), BOUNDING_LINE_TOP, point);
    EXPECT_EQ(point, Point(50.0f, 0.0f));
    calculator.obtainAnchorPoint(GeolineBase(0.5, -1.0, 10.0), BOUNDING_LINE_BOTTOM, point);
    EXPECT_EQ(point, Point(50.0f, 35.0f));
}

GeolineBase at_degrees(double degrees) {
    return GeolineBase(std::tan(degrees * 3.141592653589793 / 180.0), -1.0, 0.0);
}

TEST(LineAngleComparator, DisparitiesFoldAtNinety) {
    // 10 and 170 are 20 apart.
    EXPECT_TRUE(LineAngleComparator::is_small_disparity(10.0, 170.0, 20.0));
    EXPECT_FALSE(LineAngleComparator::is_small_disparity(10.0, 170.0, 19.99));
    EXPECT_FALSE(LineAngleComparator::is_large_disparity(10.0, 170.0, 20.0));
    EXPECT_TRUE(LineAngleComparator::is_large_disparity(10.0, 170.0, 19.99));
    EXPECT_TRUE(LineAngleComparator::is_large_disparity(GeolineBase(0.0, -1.0, 0.0),
                                                        GeolineBase(1.0, 0.0, 0.0), 89.0));

    bool same_side = false;
    EXPECT_EQ(LineAngleComparator::calculate_vertical_disparity_difference(92, 95, same_side), 3);
    EXPECT_TRUE(same_side);
    EXPECT_EQ(LineAngleComparator::calculate_vertical_disparity_difference(92, 87, same_side), 1);
    EXPECT_FALSE(same_side);
    // A lean of exactly 0 counts as the same side.
    EXPECT_EQ(LineAngleComparator::calculate_vertical_disparity_difference(90, 80, same_side), 10);
    EXPECT_TRUE(same_side);

    const std::vector<GeolineBase> two = {GeolineBase(0.0, -1.0, 0.0), GeolineBase(1.0, 0.0, 0.0)};
    EXPECT_NEAR(LineAngleComparator::calculate_angle_standard_derivation(two), std::sqrt(4050.0),
                1e-12);
    EXPECT_EQ(LineAngleComparator::calculate_angle_standard_derivation({two[1]}), 0.0);
}

TEST(LineAngleComparator, NearnessToTheAxesAndAngleRanges) {
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(at_degrees(178.0), 2.5, 0));
    EXPECT_FALSE(LineAngleComparator::is_near_coordinate_axes(at_degrees(178.0), 1.5, 0));
    EXPECT_FALSE(LineAngleComparator::is_near_coordinate_axes(at_degrees(88.0), 2.5, 0));
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(at_degrees(88.0), 2.5, 1));
    const GeolineBase vertical(1.0, 0.0, -4.0);
    EXPECT_FALSE(LineAngleComparator::is_near_coordinate_axes(vertical, 0.0, 1));  // strictly
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(vertical, 0.001, 1));

    // Direction 1: a plain range in either order, ends included.
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(100.0, 80.0, 90.0, 1));
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(80.0, 100.0, 100.0, 1));
    EXPECT_FALSE(LineAngleComparator::is_near_coordinate_axes(80.0, 100.0, 100.5, 1));
    // Otherwise from the second to the first, wrapping round 180 when the first is above 90 and
    // the second is not.
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(5.0, 0.0, 3.0, 0));
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(175.0, 5.0, 178.0, 0));
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(175.0, 5.0, 2.0, 0));
    EXPECT_FALSE(LineAngleComparator::is_near_coordinate_axes(175.0, 5.0, 90.0, 0));
    EXPECT_FALSE(LineAngleComparator::is_near_coordinate_axes(5.0, 175.0, 3.0, 0));
    EXPECT_TRUE(LineAngleComparator::is_near_coordinate_axes(170.0, 120.0, 150.0, 0));
}

}  // namespace
