// The object behind a corrector handle: its working copy, its verdicts, its corners and the fill
// of its corrections.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <tuple>
#include <utility>
#include <vector>

#include "corrector/corrector_test_support.h"
#include "geometric/binarization/omin_binarization.h"
#include "geometric/binarization/sauvola_binarization.h"
#include "hybrid/hybrid_registration.h"
#include "support/fake_image.h"

namespace {

using common::BasicImage;
using corrector_test::bytes_of;
using corrector_test::HandSearch;
using corrector_test::noise_image;
using corrector_test::Points;
using hybrid::HybridRegistration;

ControlPointCorners record(std::initializer_list<int> xy) {
    ControlPointCorners corners;
    const int* values = xy.begin();
    for (int i = 0; i < 4; ++i) {
        corners.x[i] = values[2 * i];
        corners.y[i] = values[2 * i + 1];
    }
    return corners;
}

TEST(HybridPreprocessing, BuildsAGreyWorkingCopyOnceAndRefusesWhatIsNoPage) {
    BasicImage rgb = noise_image(300, 200, common::IMAGE_TYPE_RGB, 1);
    HybridRegistration colour(&rgb);
    EXPECT_EQ(colour.preprocessing(), 1);
    ASSERT_NE(colour.working_image, nullptr);
    EXPECT_EQ(colour.working_image->image_type, common::IMAGE_TYPE_GREY);
    EXPECT_EQ(colour.downsampling_rate, 1);
    const unsigned char* pixel = rgb.data + 3 * (300 * 7 + 5);
    EXPECT_EQ(colour.working_image->get_pixel(5, 7),
              (299u * pixel[0] + 587u * pixel[1] + 114u * pixel[2]) / 1000u);
    EXPECT_EQ(colour.preprocessing(), 2);

    BasicImage binary(20, 40, common::IMAGE_TYPE_BINARY, 300, 300);
    binary.set_pixel(3, 4, 1);
    HybridRegistration bits(&binary);
    EXPECT_EQ(bits.preprocessing(), 1);
    EXPECT_EQ(bits.working_image->get_pixel(3, 4), 0u);
    EXPECT_EQ(bits.working_image->get_pixel(4, 4), 255u);

    BasicImage bgra(20, 20, common::IMAGE_TYPE_BGRA, 300, 300);
    HybridRegistration refused(&bgra);
    EXPECT_EQ(test_support::thrown_message([&] { refused.preprocessing(); }),
              "BGRA to grey level conversion nog implemented yet in common");

    for (auto [width, height, answer] : {std::tuple{10, 70, 1}, std::tuple{10, 71, -1},
                                         std::tuple{9, 9, -1}, std::tuple{0, 0, -1}}) {
        BasicImage page(height, width, common::IMAGE_TYPE_GREY, 300, 300);
        HybridRegistration registration(&page);
        EXPECT_EQ(registration.preprocessing(), answer) << width << " x " << height;
        EXPECT_EQ(registration.working_image != nullptr, answer == 1);
    }
}

TEST(HybridPreprocessing, TheRateCountsHalvingsOfTheHeightThenOfTheWidth) {
    BasicImage tall = noise_image(900, 6000, common::IMAGE_TYPE_GREY, 2);
    HybridRegistration registration(&tall);
    ASSERT_EQ(registration.preprocessing(), 1);
    EXPECT_EQ(registration.downsampling_rate, 3);
    ASSERT_EQ(registration.working_image->height, 2000);
    ASSERT_EQ(registration.working_image->width, 300);
    unsigned int sum = 0;
    for (int y = 30; y < 33; ++y) {
        for (int x = 60; x < 63; ++x) {
            sum += tall.get_pixel(x, y);
        }
    }
    EXPECT_EQ(registration.working_image->get_pixel(20, 10), sum / 9);

    for (auto [width, height, rate] : {std::tuple{1000, 3001, 2}, std::tuple{1500, 1500, 1},
                                       std::tuple{8000, 1200, 4}, std::tuple{3100, 3100, 3}}) {
        BasicImage header;  // no pixels are needed to count
        header.width = width;
        header.height = height;
        HybridRegistration counted(&header);
        EXPECT_TRUE(counted.obtain_downsampling_rate());
        EXPECT_EQ(counted.downsampling_rate, rate) << width << " x " << height;
    }
}

class HybridOnPage : public ::testing::Test {
protected:
    HybridOnPage() : page(1000, 1000, common::IMAGE_TYPE_GREY, 300, 300), registration(&page) {}
    void set(Points corners) { registration.corners = std::move(corners); }
    BasicImage page;
    HybridRegistration registration;
};

TEST_F(HybridOnPage, CornerJudgmentGivesTheCodeOfTheFirstFailedTest) {
    set({{0, 0}, {999, 0}, {999, 999}, {0, 999}});
    EXPECT_EQ(registration.check_projective_output(), 1);
    set({{-2, 100}, {900, 100}, {900, 900}, {100, 900}});
    EXPECT_EQ(registration.check_projective_output(), 1);
    registration.corners_within_image = true;
    EXPECT_EQ(registration.check_projective_output(), -3);
    set({{100, 100}, {500, 100}, {100, 500}, {500, 500}});  // crossed
    EXPECT_EQ(registration.check_projective_output(), -5);
    set({{100, 100}, {328, 100}, {328, 275}, {100, 275}});  // 1.3 : 1, 0.04 of the image
    EXPECT_EQ(registration.check_projective_output(), -4);
    set({{100, 100}, {400, 100}, {400, 250}, {100, 250}});
    EXPECT_EQ(registration.check_projective_output(), 1);
    registration.minimum_largest_dimension_percentage = 0.5;
    EXPECT_EQ(registration.check_projective_output(), -6);
}

TEST_F(HybridOnPage, VerdictsBecomeCodesAndTheCornerTestOnlyWhenAskedFor) {
    set({{100, 100}, {500, 100}, {100, 500}, {500, 500}});  // fails the test with -5
    for (bool check : {false, true}) {
        EXPECT_EQ(registration.return_hybrid_result(-2, check), 0);
        EXPECT_EQ(registration.return_hybrid_result(-1, check), -1);
        EXPECT_EQ(registration.return_hybrid_result(0, check), -1);
    }
    for (int type : {1, 3, 4, 5, 6}) {
        EXPECT_EQ(registration.return_hybrid_result(type, false), 1) << type;
        EXPECT_EQ(registration.return_hybrid_result(type, true), -5) << type;
    }
    EXPECT_EQ(registration.return_hybrid_result(2, false), 2);
    EXPECT_EQ(registration.return_hybrid_result(2, true), -5);
    registration.set_corner_type(false);
    EXPECT_EQ(registration.return_hybrid_result(2, true), 2);
    EXPECT_EQ(registration.return_hybrid_result(4, true), 1);
    registration.set_corner_type(true);
    set({{0, 0}, {999, 0}, {999, 999}, {0, 999}});
    EXPECT_EQ(registration.return_hybrid_result(2, true), 2);
    EXPECT_EQ(registration.return_hybrid_result(5, true), 1);
}

TEST_F(HybridOnPage, CornersComeFromTheSearchTimesTheRateOrFromTheWholeImage) {
    registration.obtain_internal_corners();
    EXPECT_EQ(registration.corners, (Points{{0, 0}, {999, 0}, {999, 999}, {0, 999}}));

    HybridRegistration searched(&page);
    searched.downsampling_rate = 2;
    auto* search = new HandSearch(&page);
    searched.edge_registration = search;
    search->corners = {{1.25f, 2}, {400, 3}, {401, 300}, {2, 299.5f}};
    search->vanishing_points.horizontal.point = {-100.5, 20};
    search->vanishing_points.horizontal.has_point = true;
    search->vanishing_points.vertical.angle = 89.5f;
    ControlPointCorners out;
    searched.obtain_four_corners(out);
    EXPECT_EQ(searched.corners, (Points{{2.5f, 4}, {800, 6}, {802, 600}, {4, 599}}));
    EXPECT_EQ(std::vector<int>(out.x, out.x + 4), (std::vector<int>{3, 800, 802, 4}));
    search->corners.clear();
    searched.obtain_internal_corners();  // the first corners stay
    EXPECT_EQ(searched.corners[0].x, 2.5f);

    geometric::VanishingPointHorVerInfo info;
    searched.obtain_vanishing_points(info);
    EXPECT_EQ(info.horizontal.point.x, -201.0);
    EXPECT_EQ(info.horizontal.point.y, 40.0);
    EXPECT_TRUE(info.horizontal.has_point);
    EXPECT_EQ(info.vertical.angle, 89.5f);

    info.horizontal.point = {3, 4};
    registration.downsampling_rate = 3;
    registration.obtain_vanishing_points(info);  // no search: only the scaling
    EXPECT_EQ(info.horizontal.point.x, 9.0);
}

TEST_F(HybridOnPage, ResetCornersAreMarkedOnlyWhenTheyReplaceOthers) {
    registration.reset_four_corners(record({1, 2, 30, 2, 30, 40, 1, 40}));
    EXPECT_FALSE(registration.corners_were_reset);
    EXPECT_EQ(registration.corners[2].y, 40.0f);
    registration.reset_four_corners(record({1, 2, 31, 2, 30, 40, 1, 40}));
    EXPECT_TRUE(registration.corners_were_reset);
    EXPECT_EQ(registration.corners[1].x, 31.0f);
    registration.reset_four_corners(record({1, 2, 31, 2, 30, 40, 1, 40}));
    EXPECT_FALSE(registration.corners_were_reset);

    int width = 0;
    int height = 0;
    registration.obtain_corrected_img_dimension(width, height);
    EXPECT_EQ(width, 31);
    EXPECT_EQ(height, 39);
    registration.obtain_corrected_downsampled_img_dimension(width, height);
    EXPECT_EQ(width, 1000);  // no working copy: the input's size
    ASSERT_EQ(registration.preprocessing(), 1);
    registration.downsampling_rate = 2;  // as if the working copy were halved
    registration.reset_four_corners(record({0, 0, 200, 0, 200, 100, 0, 100}));
    registration.obtain_corrected_downsampled_img_dimension(width, height);
    EXPECT_EQ(width, 101);
    EXPECT_EQ(height, 51);
}

// A page whose top left corner lies outside the image, so that the correction needs a fill.
TEST(HybridCorrection, FillIsTheCallersColourElseFromResetCornersElseAutomatic) {
    const BasicImage rgb = noise_image(40, 30, common::IMAGE_TYPE_RGB, 3);
    const ControlPointCorners first = record({-6, -4, 38, 1, 37, 28, 2, 27});
    const ControlPointCorners second = record({-6, -4, 38, 2, 36, 28, 3, 27});
    const Points second_points = {{-6, -4}, {38, 2}, {36, 28}, {3, 27}};

    BasicImage input(rgb);
    HybridRegistration registration(&input);
    registration.reset_four_corners(first);
    BasicImage automatic;
    registration.perform_correction(automatic);
    EXPECT_EQ(bytes_of(automatic),
              bytes_of(corrector_test::corrected(rgb, registration.corners, 1)));

    registration.reset_four_corners(second);
    BasicImage from_corners;
    registration.perform_correction(from_corners);
    // The brightest of the three corners inside, by (598 b0 + 587 b1) / 1000, the first of
    // equals.
    const unsigned char* brightest = nullptr;
    unsigned int best = 0;
    for (int i = 1; i < 4; ++i) {
        const unsigned char* pixel = rgb.data + 3 * (40 * second.y[i] + second.x[i]);
        const unsigned int score = (598u * pixel[0] + 587u * pixel[1]) / 1000u;
        if (score > best) {
            best = score;
            brightest = pixel;
        }
    }
    EXPECT_EQ(bytes_of(from_corners),
              bytes_of(corrector_test::corrected(rgb, second_points, 0, brightest, 3)));
    EXPECT_NE(bytes_of(from_corners), bytes_of(corrector_test::corrected(rgb, second_points, 1)));

    unsigned char colour[3] = {1, 2, 3};
    registration.set_filling_color(colour);
    BasicImage coloured;
    registration.perform_correction(coloured);
    EXPECT_EQ(bytes_of(coloured),
              bytes_of(corrector_test::corrected(rgb, second_points, 0, colour, 3)));

    const BasicImage grey = noise_image(40, 30, common::IMAGE_TYPE_GREY, 4);
    BasicImage grey_input(grey);
    HybridRegistration grey_registration(&grey_input);
    grey_registration.reset_four_corners(first);
    grey_registration.reset_four_corners(second);
    BasicImage grey_output;
    grey_registration.perform_correction(grey_output);
    const unsigned char largest =
        std::max({grey.data[40 * 2 + 38], grey.data[40 * 28 + 36], grey.data[40 * 27 + 3]});
    EXPECT_EQ(bytes_of(grey_output),
              bytes_of(corrector_test::corrected(grey, second_points, 0, &largest, 1)));
}

TEST(HybridCorrection, DownsampledCorrectionAndBinarizationUseTheirOwnSettings) {
    BasicImage page = noise_image(600, 400, common::IMAGE_TYPE_GREY, 5, 100);
    HybridRegistration registration(&page);
    BasicImage output;
    EXPECT_FALSE(registration.perform_correction_on_downsampled_gray_image(output));
    registration.maximum_image_dimension = 300;
    ASSERT_EQ(registration.preprocessing(), 1);
    ASSERT_EQ(registration.downsampling_rate, 2);
    registration.reset_four_corners(record({20, 10, 580, 30, 560, 390, 10, 380}));
    EXPECT_TRUE(registration.perform_correction_on_downsampled_gray_image(output));
    EXPECT_EQ(bytes_of(output),
              bytes_of(corrector_test::corrected(*registration.working_image,
                                                 {{10, 5}, {290, 15}, {280, 195}, {5, 190}}, 1)));

    registration.binarization_window = 21;
    registration.binarization_k = 0.3f;
    BasicImage expected;
    geometric::SauvolaBinarization sauvola(&page, &expected);
    sauvola.para.window_size = 21;
    sauvola.para.k = 0.3f;
    sauvola.run_binarization();
    ASSERT_TRUE(registration.obtain_binarized_corrected_image(page, output));
    EXPECT_EQ(bytes_of(output), bytes_of(expected));

    registration.binarization_method = 7;
    geometric::OminBinarization omin(&page, &expected);
    omin.para.k = 0.3f;
    omin.run_binarization();
    ASSERT_TRUE(registration.obtain_binarized_corrected_image(page, output));
    EXPECT_EQ(bytes_of(output), bytes_of(expected));
}

}  // namespace
