// Corner records, their conversions, and the size of a rectified page.

#include <gtest/gtest.h>

#include <vector>

#include "geometric/rectification/control_points.h"
#include "geometric/rectification/control_points_transformer.h"
#include "quorimp/quorimp.h"

namespace {

using geometric::Geocoordinate;
using Points = std::vector<Geocoordinate<float>>;
using Transformer = geometric::ControlPointsTransformer<float>;

ControlPointCorners record_of(int x0, int y0, int x1, int y1, int x2, int y2, int x3, int y3) {
    return ControlPointCorners{{x0, x1, x2, x3}, {y0, y1, y2, y3}};
}

TEST(ControlPoints, InitializedCornersAreTheImageRectangle) {
    Points corners(7);
    geometric::intialize_control_points(corners, 640, 480);
    ASSERT_EQ(corners.size(), 4u);
    EXPECT_EQ(corners[0], Geocoordinate<float>(0.0f, 0.0f));
    EXPECT_EQ(corners[1], Geocoordinate<float>(639.0f, 0.0f));
    EXPECT_EQ(corners[2], Geocoordinate<float>(639.0f, 479.0f));
    EXPECT_EQ(corners[3], Geocoordinate<float>(0.0f, 479.0f));
}

TEST(ControlPoints, RecordsAreAllXThenAllYAndCompareExactly) {
    ControlPointCorners record = record_of(1, 2, 3, 4, 5, 6, 7, 8);
    Points corners;
    Transformer::transform(record, corners);
    ASSERT_EQ(corners.size(), 4u);
    EXPECT_EQ(corners[1], Geocoordinate<float>(3.0f, 4.0f));
    EXPECT_EQ(corners[3], Geocoordinate<float>(7.0f, 8.0f));

    ControlPointCorners other = record;
    EXPECT_TRUE(geometric::operator==(record, other));
    other.y[3] = 9;
    EXPECT_FALSE(geometric::operator==(record, other));
    geometric::clean_control_points(other);
    EXPECT_TRUE(geometric::operator==(other, record_of(0, 0, 0, 0, 0, 0, 0, 0)));
}

TEST(ControlPointsTransformer, PointsRoundHalfUpIntoTheRecord) {
    const Points corners = {{10.5f, -0.5f}, {-0.6f, 2.49f}, {-1.5f, 7.0f}, {1e6f, -2.5f}};
    ControlPointCorners record = record_of(9, 9, 9, 9, 9, 9, 9, 9);
    Transformer::transform(corners, record);
    EXPECT_EQ(record.x[0], 11);
    EXPECT_EQ(record.y[0], 0);
    EXPECT_EQ(record.x[1], -1);
    EXPECT_EQ(record.y[1], 2);
    EXPECT_EQ(record.x[2], -1);
    EXPECT_EQ(record.y[2], 7);
    EXPECT_EQ(record.x[3], 1000000);
    EXPECT_EQ(record.y[3], -2);

    const ControlPointCorners before = record;
    Transformer::transform(Points(3, Geocoordinate<float>(5.0f)), record);
    EXPECT_TRUE(geometric::operator==(record, before));
}

TEST(ControlPointsTransformer, EqualityAndResetAgainstTheRecord) {
    const ControlPointCorners zeros = record_of(0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_FALSE(Transformer::is_control_points_equal(zeros, Points()));
    EXPECT_FALSE(Transformer::is_control_points_equal(zeros, Points(2)));
    EXPECT_TRUE(Transformer::is_control_points_equal(zeros, Points(4)));

    const ControlPointCorners record = record_of(1, 2, 3, 4, 5, 6, 7, 8);
    Points corners = {{1.0f, 2.0f}, {3.0f, 4.0f}, {5.0f, 6.0f}, {7.0f, 8.0001f}};
    bool equal = true;
    Transformer::reset_control_points(record, corners, equal);
    EXPECT_FALSE(equal);
    EXPECT_EQ(corners[3], Geocoordinate<float>(7.0f, 8.0f));
    Transformer::reset_control_points(record, corners, equal);
    EXPECT_TRUE(equal);
}

struct Size {
    int width;
    int height;
};

Size page_size(const ControlPointCorners& corners) {
    Size size{-1, -1};
    EXPECT_EQ(obtain_output_image_dimension(&corners, &size.width, &size.height), 0);
    return size;
}

TEST(OutputDimension, ImageRectangleGivesTheImageSize) {
    Points corners;
    geometric::intialize_control_points(corners, 640, 480);
    ControlPointCorners record;
    Transformer::transform(corners, record);
    const Size size = page_size(record);
    EXPECT_EQ(size.width, 640);
    EXPECT_EQ(size.height, 480);

    const Size collapsed = page_size(record_of(0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(collapsed.width, 1);
    EXPECT_EQ(collapsed.height, 1);
}

TEST(OutputDimension, MeanOfOppositeSidesPlusOneTruncatedAfterAddingAHalf) {
    // top 5 (3-4-5), bottom sqrt(13) = 3.6056: (5 + 3.6056) / 2 + 1 + 0.5 = 5.80 -> 5.
    // right 10, left 12: 11 + 1 + 0.5 = 12.5 -> 12.
    Size size = page_size(record_of(0, 0, 3, 4, 3, 14, 0, 12));
    EXPECT_EQ(size.width, 5);
    EXPECT_EQ(size.height, 12);

    // top 4, bottom 5: 4.5 + 1 + 0.5 = 6.0 -> 6; right 6, left 3: 4.5 + 1.5 = 6.0 -> 6.
    size = page_size(record_of(0, 0, 4, 0, 4, 6, 0, 3));
    EXPECT_EQ(size.width, 6);
    EXPECT_EQ(size.height, 6);
}

TEST(OutputDimension, SampleCornersGiveThePageSize) {
    // Corners of a photographed letter page: sides 563.15 and 627.50 across (mean 595.32),
    // 794.39 and 738.79 down (mean 766.59).
    const Size size = page_size(record_of(955, 146, 1518, 159, 1471, 952, 848, 877));
    EXPECT_EQ(size.width, 596);
    EXPECT_EQ(size.height, 768);
}

}  // namespace
