// Whether four corners can be a page: convexity, angles, area, extent and position, each at its
// threshold.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "common/basic_image.h"
#include "geometric/boundaries/corner_examiner.h"
#include "geometric_test/quor_projective_evaluator.h"

namespace {

using geometric::CornerExaminer;
using geometric_test::QUORProjectiveEvaluator;
using Point = geometric::Geocoordinate<float>;
using Points = std::vector<Point>;

constexpr double kPi = 3.141592653589793;

// A parallelogram with the angle `degrees` at corners 0 and 2 and 180 - `degrees` at 1 and 3.
Points parallelogram(double degrees) {
    const float dx = static_cast<float>(50.0 * std::cos(degrees * kPi / 180.0));
    const float dy = static_cast<float>(50.0 * std::sin(degrees * kPi / 180.0));
    return {{0.0f, 0.0f}, {100.0f, 0.0f}, {100.0f + dx, dy}, {dx, dy}};
}

// A kite with 30 degrees at its apex (first corner) and 110 degrees at the other three.
Points kite() {
    const double side = 100.0 * std::sin(55.0 * kPi / 180.0) / std::sin(110.0 * kPi / 180.0);
    const float x = static_cast<float>(side * std::cos(15.0 * kPi / 180.0));
    const float y = static_cast<float>(side * std::sin(15.0 * kPi / 180.0));
    return {{0.0f, 0.0f}, {x, -y}, {100.0f, 0.0f}, {x, y}};
}

TEST(CornerExaminer, AnglesAtTheirLimit) {
    EXPECT_TRUE(CornerExaminer::check_angles(parallelogram(45.5), 45.0));
    EXPECT_FALSE(CornerExaminer::check_angles(parallelogram(44.5), 45.0));
    // The same limit catches the wide angle at corner 1: 135.5 degrees.
    EXPECT_FALSE(CornerExaminer::check_angles(parallelogram(135.5), 45.0));

    // Corner 0 is not examined: a 30 degree apex there passes, the same kite turned so that the
    // apex is corner 1 fails.
    const Points apex_first = kite();
    EXPECT_TRUE(CornerExaminer::check_angles(apex_first, 45.0));
    const Points apex_second = {apex_first[3], apex_first[0], apex_first[1], apex_first[2]};
    EXPECT_FALSE(CornerExaminer::check_angles(apex_second, 45.0));
    EXPECT_TRUE(CornerExaminer::check_constrains(apex_first, 45.0));
}

TEST(CornerExaminer, Convexity) {
    const Points square = {{0, 0}, {100, 0}, {100, 100}, {0, 100}};
    EXPECT_TRUE(CornerExaminer::is_convex(square));
    EXPECT_TRUE(CornerExaminer::is_convex({{0, 0}, {0, 100}, {100, 100}, {100, 0}}));
    const Points bow_tie = {{0, 0}, {100, 0}, {0, 100}, {100, 100}};
    EXPECT_FALSE(CornerExaminer::is_convex(bow_tie));
    // Good angles do not save a crossing quadrilateral.
    EXPECT_FALSE(CornerExaminer::check_constrains(bow_tie, 1.0));
    EXPECT_FALSE(CornerExaminer::is_convex({{0, 0}, {100, 0}, {30, 30}, {0, 100}}));  // a dart
    EXPECT_FALSE(CornerExaminer::is_convex({{0, 0}, {10, 0}, {20, 0}, {30, 0}}));
    // A straight corner turns neither way and does not spoil convexity.
    EXPECT_TRUE(CornerExaminer::is_convex({{0, 0}, {50, 0}, {100, 0}, {0, 100}}));
    EXPECT_FALSE(CornerExaminer::is_convex({{0, 0}, {100, 0}, {100, 100}}));
    EXPECT_FALSE(CornerExaminer::is_convex({{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 50}}));
}

TEST(QUORProjectiveEvaluator, CameraDocumentShapes) {
    const auto accepts = [](int width, int height) {
        const common::BasicImage image(height, width, common::IMAGE_TYPE_GREY, 300, 300);
        return QUORProjectiveEvaluator::is_camera_document_image(image);
    };
    EXPECT_TRUE(accepts(10, 70));
    EXPECT_TRUE(accepts(70, 10));
    EXPECT_FALSE(accepts(10, 71));
    EXPECT_FALSE(accepts(9, 9));
}

TEST(QUORProjectiveEvaluator, CornersWithinTheImageOneSided) {
    const common::BasicImage image(50, 100, common::IMAGE_TYPE_GREY, 300, 300);
    Points corners = {{0, 0}, {99, 0}, {99, 49}, {0, 49}};
    const QUORProjectiveEvaluator evaluator(&image, &corners);
    EXPECT_TRUE(evaluator.is_corners_within_image());
    corners[3].x = -0.01f;
    EXPECT_FALSE(evaluator.is_corners_within_image());
    corners[3].x = 0.0f;
    corners[1].x = 99.01f;
    EXPECT_FALSE(evaluator.is_corners_within_image());
    corners[1].x = 99.0f;
    corners[2].y = 49.5f;
    EXPECT_FALSE(evaluator.is_corners_within_image());
    corners[2].y = 49.0f;
    // A left corner beyond the right border, or a top corner beyond the bottom, is not looked for.
    corners[0].set(150.0f, 80.0f);
    EXPECT_TRUE(evaluator.is_corners_within_image());
}

Points rectangle(float width, float height) {
    return {{0, 0}, {width - 1, 0}, {width - 1, height - 1}, {0, height - 1}};
}

TEST(QUORProjectiveEvaluator, AspectAndExtent) {
    EXPECT_FLOAT_EQ(QUORProjectiveEvaluator::calculate_aspect_ratio(rectangle(200, 100)), 2.0f);
    EXPECT_FLOAT_EQ(QUORProjectiveEvaluator::calculate_aspect_ratio(rectangle(100, 200)), 2.0f);
    // Sides of 99.4 pixel steps count as 100 pixels, of 99.6 as 101.
    EXPECT_FLOAT_EQ(QUORProjectiveEvaluator::calculate_aspect_ratio(rectangle(100.4f, 50.0f)),
                    2.0f);
    EXPECT_FLOAT_EQ(QUORProjectiveEvaluator::calculate_aspect_ratio(rectangle(100.6f, 50.0f)),
                    2.02f);
    // A trapezoid: width from the mean of top (100) and bottom (200), height from the mean of the
    // slanted sides (110.9): 151 by 112.
    const Points trapezoid = {{50, 0}, {150, 0}, {200, 99}, {0, 99}};
    EXPECT_FLOAT_EQ(QUORProjectiveEvaluator::calculate_aspect_ratio(trapezoid), 151.0f / 112.0f);

    const common::BasicImage image(500, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    Points corners = rectangle(100, 50);  // a tenth of each side
    const QUORProjectiveEvaluator evaluator(&image, &corners);
    EXPECT_FALSE(evaluator.is_largest_dimension_percentage_large(0.1));
    EXPECT_TRUE(evaluator.is_largest_dimension_percentage_large(0.0999));
    corners = rectangle(100, 51);  // the height is the larger fraction
    EXPECT_TRUE(evaluator.is_largest_dimension_percentage_large(0.1));
}

TEST(QUORProjectiveEvaluator, AreaThresholdDependsOnTheAspect) {
    const common::BasicImage image(1000, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    Points corners;
    const QUORProjectiveEvaluator evaluator(&image, &corners);

    // Aspect 1.3 is inside the band: the threshold is the one given. 259 by 199 steps cover
    // 0.0515 of the image, 253 by 194 steps 0.0491.
    corners = {{0, 0}, {259, 0}, {259, 199}, {0, 199}};
    EXPECT_TRUE(evaluator.is_quadrangle_large(0.05f));
    corners = {{0, 0}, {253, 0}, {253, 194}, {0, 194}};
    EXPECT_FALSE(evaluator.is_quadrangle_large(0.05f));

    // Outside the band the threshold drops by 0.1, so even tiny pages pass with 0.05.
    corners = rectangle(141, 71);  // 2:1, about a hundredth of the image
    EXPECT_TRUE(evaluator.is_quadrangle_large(0.05f));
    EXPECT_FALSE(evaluator.is_quadrangle_large(0.12f));
    // The band is open, with ends at the double values 1.2 and 1.4. The float ratios 1.2f and
    // 1.4f lie just inside it; 1.19 and 1.41 lie outside.
    corners = rectangle(119, 100);
    EXPECT_TRUE(evaluator.is_quadrangle_large(0.05f));
    corners = rectangle(120, 100);
    EXPECT_FALSE(evaluator.is_quadrangle_large(0.05f));
    corners = rectangle(140, 100);
    EXPECT_FALSE(evaluator.is_quadrangle_large(0.05f));
    corners = rectangle(141, 100);
    EXPECT_TRUE(evaluator.is_quadrangle_large(0.05f));
}

}  // namespace
