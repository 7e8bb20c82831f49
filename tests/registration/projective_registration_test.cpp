// The registration base: corners from four hand-made boundary lines, missing sides filled by the
// image border, the plausibility of the page size at its limits, and virtual corners from
// vanishing points and parallel angles.

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "common/basic_image.h"
#include "geometric/boundaries/bounding_lines_operator.h"
#include "geometric/registration/projective_registration.h"
#include "hybrid/projective_registration_para.h"
#include "quorimp/quorimp_records.h"

namespace {

using geometric::BoundingLine;
using geometric::GeolineBase;
using Point = geometric::Geocoordinate<float>;
using Points = std::vector<Point>;

// A registration whose verdict is set by hand, with the protected steps opened up.
class HandRegistration : public geometric::ProjectiveRegistration {
public:
    explicit HandRegistration(const common::Image* image) : ProjectiveRegistration(image) {}
    geometric::RegistrationOutputType run_registration() override { return registration_output; }

    using ProjectiveRegistration::obtain_virtual_corners;
    using ProjectiveRegistration::otain_edge_corners;
    using ProjectiveRegistration::perform_edge_corner_searching;
    using ProjectiveRegistration::transform_vp_2_vc;

    // Appends a side and indexes the sides afresh.
    void add_line(geometric::BoundingLinePosition position, double a, double b, double c) {
        boundary_lines.push_back(BoundingLine(position, GeolineBase(a, b, c)));
        boundary_property = geometric::BoundingLineProperty();
        geometric::BoundingLinesOperator::initializeBoundingLineProperty(boundary_lines,
                                                                         boundary_property);
    }

    // An axis-parallel page from x0 to x1 and y0 to y1.
    void add_box(double x0, double y0, double x1, double y1) {
        add_line(geometric::BOUNDING_LINE_LEFT, 1.0, 0.0, -x0);
        add_line(geometric::BOUNDING_LINE_TOP, 0.0, -1.0, y0);
        add_line(geometric::BOUNDING_LINE_RIGHT, 1.0, 0.0, -x1);
        add_line(geometric::BOUNDING_LINE_BOTTOM, 0.0, -1.0, y1);
    }

    void set_all_flags() {
        vanishing_points.horizontal.has_point = true;
        vanishing_points.horizontal.is_parallel = true;
        vanishing_points.vertical.has_point = true;
        vanishing_points.vertical.is_parallel = true;
    }
    bool vertical_flags() const {
        return vanishing_points.vertical.has_point || vanishing_points.vertical.is_parallel;
    }
    bool horizontal_flags() const {
        return vanishing_points.horizontal.has_point || vanishing_points.horizontal.is_parallel;
    }
};

void expect_corners(const Points& actual, const Points& expected, float tolerance = 1e-3f) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i].x, expected[i].x, tolerance) << "corner " << i;
        EXPECT_NEAR(actual[i].y, expected[i].y, tolerance) << "corner " << i;
    }
}

TEST(ProjectiveRegistration, DefaultsAndVerdicts) {
    const hybrid::ProjectiveRegistrationPara para;
    EXPECT_EQ(para.maximum_distortion_ratio, 2.5f);
    EXPECT_TRUE(para.use_edge_corners);
    EXPECT_EQ(para.maximum_image_dimension, 1500);
    EXPECT_EQ(para.angle_disparity_reference, 0.2f);
    EXPECT_EQ(para.angle_disparity_horizontal, 0.2f);
    EXPECT_EQ(para.angle_disparity_vertical, 0.4f);
    EXPECT_FALSE(para.corners_within_image);
    EXPECT_EQ(para.minimum_quadrilateral_angle, 45.0f);
    EXPECT_EQ(para.minimum_quadrilateral_area, 0.05f);
    EXPECT_EQ(para.minimum_largest_dimension_percentage, 0.1);

    const common::BasicImage image(80, 100, common::IMAGE_TYPE_GREY, 300, 300);
    HandRegistration registration(&image);
    EXPECT_EQ(registration.registration_output, geometric::REGISTRATION_FAILED);
    EXPECT_EQ(registration.vanishing_points.horizontal.angle, 0.0f);
    EXPECT_EQ(registration.vanishing_points.vertical.angle, 90.0f);
    const bool distorted[] = {false, false, false, true, true, true, true, false, false};
    for (int verdict = -2; verdict <= 6; ++verdict) {
        registration.registration_output = static_cast<geometric::RegistrationOutputType>(verdict);
        EXPECT_EQ(registration.has_distortion_detected(), distorted[verdict + 2]) << verdict;
    }
}

TEST(ProjectiveRegistration, EdgeCornersFromFourLinesAndFilledBorders) {
    const common::BasicImage image(800, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    HandRegistration registration(&image);
    EXPECT_FALSE(registration.perform_edge_corner_searching());

    registration.add_box(100, 50, 900, 750);
    ASSERT_TRUE(registration.perform_edge_corner_searching());
    expect_corners(registration.corners, {{100, 50}, {900, 50}, {900, 750}, {100, 750}}, 0.0f);

    // Three sides found: the right one stands at the last column. It is indexed, not listed.
    HandRegistration three(&image);
    three.add_line(geometric::BOUNDING_LINE_LEFT, 1.0, 0.0, -100.0);
    three.add_line(geometric::BOUNDING_LINE_TOP, 0.0, -1.0, 50.0);
    three.add_line(geometric::BOUNDING_LINE_BOTTOM, 0.0, -1.0, 750.0);
    ASSERT_TRUE(three.perform_edge_corner_searching());
    expect_corners(three.corners, {{100, 50}, {999, 50}, {999, 750}, {100, 750}}, 0.0f);
    EXPECT_EQ(three.boundary_property.right_index, 3);
    EXPECT_EQ(three.boundary_property.vertical_indices.size(), 1u);
    // A single top line: the border makes the other three, appended left, right, bottom.
    HandRegistration one(&image);
    one.add_line(geometric::BOUNDING_LINE_TOP, 0.0, -1.0, 20.0);
    ASSERT_TRUE(one.perform_edge_corner_searching());
    expect_corners(one.corners, {{0, 20}, {999, 20}, {999, 799}, {0, 799}}, 0.0f);
    EXPECT_EQ(one.boundary_property.bottom_index, 3);
}

TEST(ProjectiveRegistration, EdgeCornersNeedAFlagAndPlausibleSize) {
    const common::BasicImage image(800, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    HandRegistration no_flag(&image);
    no_flag.add_box(100, 50, 900, 750);
    // The corners are found but no flag vouches for them.
    EXPECT_FALSE(no_flag.obtain_corners());
    EXPECT_TRUE(no_flag.corners.empty());

    // Width judges the vertical direction. With the default ratio 2.5 a page of 2500 columns in
    // an image of 1000 is the largest kept, and 267 columns (1000 / 267 / 1.5 = 2.497) the
    // smallest.
    struct WidthCase {
        double right;
        bool kept;
    };
    const WidthCase widths[] = {{2499, true}, {2500, false}, {366, true},
                                {365, false}, {399, true},   {299, false}};
    for (const WidthCase& c : widths) {
        HandRegistration registration(&image);
        registration.add_box(100 - (c.right > 1000 ? 100 : 0), 50, c.right, 750);
        registration.set_all_flags();
        ASSERT_TRUE(registration.obtain_corners()) << c.right;
        EXPECT_EQ(registration.page_height, 701);
        EXPECT_EQ(registration.vertical_flags(), c.kept) << registration.page_width;
        EXPECT_TRUE(registration.horizontal_flags());
    }

    // Height judges the horizontal direction: 200 rows in an image of 800 is 4 / 1.5 = 2.67.
    HandRegistration short_page(&image);
    short_page.add_box(100, 50, 900, 249);
    short_page.vanishing_points.horizontal.has_point = true;
    EXPECT_FALSE(short_page.obtain_corners());
    EXPECT_FALSE(short_page.horizontal_flags());
    EXPECT_TRUE(short_page.corners.empty());
}

TEST(ProjectiveRegistration, EdgeCornersJudgeTheShape) {
    const common::BasicImage image(800, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    // Trapezoids between y = 100 and y = 600 with the left side y = -2 x + 1000: a right side
    // y = 2 x - 1000 makes a top of 100 and a bottom of 600, a ratio of 6, above twice the
    // distortion ratio: the vertical direction goes. Moved out by 25 the sides are 125 and 625,
    // exactly 5: kept. Half a pixel less, 124.5 and 624.5: dropped.
    for (const double c : {-1000.0, -1050.0, -1049.0}) {
        HandRegistration trapezoid(&image);
        trapezoid.add_line(geometric::BOUNDING_LINE_LEFT, -2.0, -1.0, 1000.0);
        trapezoid.add_line(geometric::BOUNDING_LINE_TOP, 0.0, -1.0, 100.0);
        trapezoid.add_line(geometric::BOUNDING_LINE_RIGHT, 2.0, -1.0, c);
        trapezoid.add_line(geometric::BOUNDING_LINE_BOTTOM, 0.0, -1.0, 600.0);
        trapezoid.set_all_flags();
        ASSERT_TRUE(trapezoid.otain_edge_corners());
        EXPECT_EQ(trapezoid.vertical_flags(), c == -1050.0) << c;
        EXPECT_TRUE(trapezoid.horizontal_flags());
    }

    // Corner 1 at 38 degrees fails the fixed 40 degree limit of edge corners.
    HandRegistration sharp(&image);
    sharp.add_line(geometric::BOUNDING_LINE_LEFT, 1.0, 0.0, -100.0);
    sharp.add_line(geometric::BOUNDING_LINE_TOP, 0.0, -1.0, 100.0);
    // Through (600, 100) at 38 degrees to the top side, leaning back over the page.
    const double slope = -0.7812856265067174;  // tan(142 degrees)
    sharp.add_line(geometric::BOUNDING_LINE_RIGHT, slope, -1.0, 100.0 - 600.0 * slope);
    sharp.add_line(geometric::BOUNDING_LINE_BOTTOM, 0.0, -1.0, 300.0);
    sharp.set_all_flags();
    EXPECT_FALSE(sharp.otain_edge_corners());
    sharp.boundary_lines[2].line = GeolineBase(-1.2, -1.0, 100.0 + 600.0 * 1.2);  // 50 degrees
    EXPECT_TRUE(sharp.otain_edge_corners());
}

TEST(ProjectiveRegistration, VirtualCornersFromVanishingPoints) {
    // 101 by 101: the right and bottom edges at 100.
    const common::BasicImage image(101, 101, common::IMAGE_TYPE_GREY, 300, 300);
    HandRegistration registration(&image);
    registration.para.use_edge_corners = false;
    registration.registration_output = geometric::REGISTRATION_TWO_VANISHING_POINTS;
    registration.vanishing_points.horizontal.has_point = true;
    registration.vanishing_points.horizontal.point.set(-100.0, 50.0);
    registration.vanishing_points.vertical.has_point = true;
    registration.vanishing_points.vertical.point.set(50.0, -100.0);
    // Sides y = -x / 2 and y = x / 2 + 100 against y = -2 x and y = 2 x - 200.
    ASSERT_TRUE(registration.obtain_corners());
    expect_corners(registration.corners, {{0, 0}, {80, -40}, {200, 200}, {-40, 80}});
    EXPECT_EQ(registration.page_width, 180);
    EXPECT_EQ(registration.page_height, 180);
    EXPECT_TRUE(registration.vanishing_points.vertical.has_point);

    // The mixed verdict uses the vertical point with the horizontal angle by default.
    registration.registration_output = geometric::REGISTRATION_MIXED;
    registration.vanishing_points.horizontal.has_point = false;
    registration.vanishing_points.horizontal.is_parallel = true;
    ASSERT_TRUE(registration.obtain_corners());
    expect_corners(registration.corners, {{0, 0}, {100, 0}, {150, 100}, {-50, 100}}, 0.0f);

    // A vanishing point over the image gives no corners, and obtain_corners empties them.
    registration.registration_output = geometric::REGISTRATION_TWO_VANISHING_POINTS;
    registration.vanishing_points.horizontal.has_point = true;
    registration.vanishing_points.horizontal.point.set(50.0, 50.0);
    EXPECT_FALSE(registration.obtain_corners());
    EXPECT_TRUE(registration.corners.empty());
}

TEST(ProjectiveRegistration, VirtualCornersDropImplausibleDirections) {
    const common::BasicImage image(101, 101, common::IMAGE_TYPE_GREY, 300, 300);
    // A horizontal point at (-30, 50) opens the page to a right side of 433 rows: a page height
    // of 268 against 101 rows, above 2.5 times.
    HandRegistration alone(&image);
    alone.registration_output = geometric::REGISTRATION_ONE_VANISHING_POINT;
    alone.vanishing_points.horizontal.has_point = true;
    alone.vanishing_points.horizontal.point.set(-30.0, 50.0);
    EXPECT_FALSE(alone.obtain_virtual_corners());  // its only flag dropped: nothing is left
    EXPECT_EQ(alone.page_height, 268);
    EXPECT_FALSE(alone.vanishing_points.horizontal.has_point);

    // With parallel vertical lines beside it, the page is rebuilt from those alone: upright
    // sides at 90 degrees and flat ones, the whole image.
    HandRegistration mixed(&image);
    mixed.registration_output = geometric::REGISTRATION_MIXED;
    mixed.vanishing_points.horizontal.has_point = true;
    mixed.vanishing_points.horizontal.point.set(-30.0, 50.0);
    mixed.vanishing_points.vertical.is_parallel = true;
    ASSERT_TRUE(mixed.obtain_virtual_corners());
    expect_corners(mixed.corners, {{0, 0}, {100, 0}, {100, 100}, {0, 100}}, 0.0f);
    EXPECT_TRUE(mixed.vanishing_points.vertical.is_parallel);

    // A direction with both flags set is one direction but two flags: dropping it leaves one.
    HandRegistration two_flags(&image);
    two_flags.registration_output = geometric::REGISTRATION_ONE_VANISHING_POINT;
    two_flags.vanishing_points.horizontal.has_point = true;
    two_flags.vanishing_points.horizontal.is_parallel = true;
    two_flags.vanishing_points.horizontal.point.set(-30.0, 50.0);
    ASSERT_TRUE(two_flags.obtain_virtual_corners());
    expect_corners(two_flags.corners, {{0, 0}, {100, 0}, {100, 100}, {0, 100}}, 0.0f);
}

TEST(ProjectiveRegistration, VirtualCornersFromParallelAngles) {
    const common::BasicImage image(51, 101, common::IMAGE_TYPE_GREY, 300, 300);
    HandRegistration registration(&image);
    registration.vanishing_points.horizontal.is_parallel = true;
    registration.vanishing_points.horizontal.angle = 170.0f;
    registration.vanishing_points.vertical.is_parallel = true;
    registration.vanishing_points.vertical.angle = 90.0f;

    // No verdict, or a straight page, builds nothing from parallel lines.
    EXPECT_FALSE(registration.transform_vp_2_vc());
    registration.registration_output = geometric::REGISTRATION_NO_DISTORTION;
    EXPECT_FALSE(registration.transform_vp_2_vc());

    registration.registration_output = geometric::REGISTRATION_PARALLEL_ROTATED;
    ASSERT_TRUE(registration.transform_vp_2_vc());
    // Top through (0, 0) and bottom through (100, 50) at the float angle 170.
    const double t = std::tan(static_cast<double>(170.0f) * 3.141592653589793 / 180.0);
    expect_corners(registration.corners, {{0, 0},
                                          {100, static_cast<float>(100 * t)},
                                          {100, 50},
                                          {0, static_cast<float>(50 - 100 * t)}});
    registration.para.use_edge_corners = false;
    EXPECT_TRUE(registration.obtain_corners());
}

TEST(VanishingPointCApi, LayoutOfTheCRecord) {
    EXPECT_EQ(offsetof(VanishingPointCApi, horizontal_x), 8u);
    EXPECT_EQ(offsetof(VanishingPointCApi, horizontal_angle), 28u);
    EXPECT_EQ(offsetof(VanishingPointCApi, vertical_x), 40u);
    EXPECT_EQ(sizeof(VanishingPointCApi), 64u);
}

}  // namespace
