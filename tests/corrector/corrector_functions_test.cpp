// The corrector family through the C interface.

#include <gtest/gtest.h>

#include <vector>

#include "corrector/corrector_test_support.h"
#include "hybrid/hybrid_registration.h"
#include "quorimp/quorimp.h"

namespace {

using common::BasicImage;
using corrector_test::bytes_of;
using corrector_test::noise_image;
using hybrid::HybridRegistration;

ImageCApi record_of(BasicImage& image) {
    int channels = 1;
    image.get_bytes_per_pixel(channels);
    ImageCApi record = {image.width, image.height,
                        0,           0,
                        channels,    image.image_type == common::IMAGE_TYPE_BINARY ? 1 : 0,
                        image.data};
    return record;
}

class Corrector : public ::testing::Test {
protected:
    Corrector() : handle(corrector_create()) {}
    ~Corrector() override { destroy_corrector(handle); }
    HybridRegistration& object() { return *static_cast<HybridRegistration*>(handle); }
    void* handle;
};

TEST_F(Corrector, SettersClampAtTheirEdges) {
    destroy_corrector(nullptr);  // a no-op
    ASSERT_NE(handle, nullptr);
    for (auto [k, stored] : {std::pair{1.0f, 1.0f}, std::pair{1.5f, 0.99f}, std::pair{-0.2f, 0.01f},
                             std::pair{0.0f, 0.0f}}) {
        set_binarization_k(handle, k);
        EXPECT_EQ(object().binarization_k, stored) << k;
    }
    for (auto [method, stored] :
         {std::pair{5, 1}, std::pair{-1, 0}, std::pair{1, 1}, std::pair{2, 1}, std::pair{0, 0}}) {
        set_binarization_method(handle, method);
        EXPECT_EQ(object().binarization_method, stored) << method;
    }
    for (auto [window, stored] : {std::pair{0, 3}, std::pair{1, 1}, std::pair{-9, 3}}) {
        set_binarization_window(handle, window);
        EXPECT_EQ(object().binarization_window, stored) << window;
    }
    set_minimum_aoi_area(handle, 0.001f);
    EXPECT_EQ(object().minimum_quadrilateral_area, 0.05f);
    set_minimum_aoi_area(handle, 0.0011f);
    EXPECT_EQ(object().minimum_quadrilateral_area, 0.0011f);
    for (auto [method, stored] :
         {std::pair{7, hybrid::HYBRID_EDGE_AND_FEATURE}, std::pair{-3, hybrid::HYBRID_EDGE_ONLY},
          std::pair{1, hybrid::HYBRID_EDGE_AND_FEATURE}, std::pair{0, hybrid::HYBRID_EDGE_ONLY}}) {
        set_registration_method(handle, method);
        EXPECT_EQ(object().hybrid_method, stored) << method;
    }
    set_corner_type(handle, 2);
    EXPECT_FALSE(object().use_edge_corners);
    set_corner_type(handle, 1);
    EXPECT_TRUE(object().use_edge_corners);
    EXPECT_FALSE(object().corners_within_image);
    set_within_the_image(handle);
    EXPECT_TRUE(object().corners_within_image);
    set_minimum_quadrilateral_angle(handle, 30.5f);
    set_minimum_largest_dimension_percentage_threshold(handle, 0.3f);
    set_angle_disparity(handle, 0.7f, 1.5f);
    EXPECT_EQ(object().minimum_quadrilateral_angle, 30.5f);
    EXPECT_EQ(object().minimum_largest_dimension_percentage, static_cast<double>(0.3f));
    EXPECT_EQ(object().angle_disparity_horizontal, 0.7f);
    EXPECT_EQ(object().angle_disparity_vertical, 1.5f);
    unsigned char colour[3] = {9, 8, 7};
    set_filling_color(handle, colour);
    set_filling_color(handle, nullptr);
    EXPECT_EQ(object().filling_color, colour);
}

TEST_F(Corrector, GivenCornersOnAFreshHandleCorrectWithTheAutomaticFill) {
    BasicImage page = noise_image(50, 40, common::IMAGE_TYPE_RGB, 6);
    BasicImage untouched(page);
    ImageCApi input = record_of(page);
    const ControlPointCorners corners = {{-3, 45, 47, 1}, {2, -1, 38, 36}};

    VanishingPointCApi point;
    obtain_vanishing_point(handle, &point);
    EXPECT_EQ(point.horizontal_found + point.horizontal_parallel + point.vertical_found, 0);
    EXPECT_EQ(point.horizontal_angle, 0.0f);
    EXPECT_EQ(point.vertical_angle, 90.0f);

    int width = 0;
    int height = 0;
    obtain_corrected_img_dimension_given_corners(handle, &corners, &width, &height);
    int expected_width = 0;
    int expected_height = 0;
    obtain_output_image_dimension(&corners, &expected_width, &expected_height);
    EXPECT_EQ(width, expected_width);
    EXPECT_EQ(height, expected_height);

    // Fresh handle, fresh corrector: corners were never there before, so the fill is automatic,
    // as in perform_projective_correction.
    destroy_corrector(handle);
    handle = corrector_create();
    BasicImage output(height, width, common::IMAGE_TYPE_RGB, 300, 300);
    ImageCApi output_record = record_of(output);
    EXPECT_EQ(obtain_corrected_image_given_corners(handle, &input, &corners, &output_record), 0);
    BasicImage expected(height, width, common::IMAGE_TYPE_RGB, 300, 300);
    ImageCApi expected_record = record_of(expected);
    perform_projective_correction(&corners, &input, &expected_record);
    EXPECT_EQ(bytes_of(output), bytes_of(expected));
    EXPECT_EQ(bytes_of(page), bytes_of(untouched));

    ControlPointCorners out;
    obtain_four_corners(handle, &out);
    EXPECT_EQ(std::vector<int>(out.x, out.x + 4), std::vector<int>(corners.x, corners.x + 4));
    obtain_downsampled_corrected_img_dimension(handle, &width, &height);
    EXPECT_EQ(width, 50);  // no search: the size of the image
    EXPECT_EQ(height, 40);

    // Other corners replace these: the fill now comes from the image under them.
    const ControlPointCorners moved = {{-3, 45, 46, 1}, {2, -1, 38, 36}};
    reset_four_corners(handle, &moved);
    obtain_corrected_img_dimension(handle, &width, &height);
    BasicImage refilled(height, width, common::IMAGE_TYPE_RGB, 300, 300);
    ImageCApi refilled_record = record_of(refilled);
    obtain_corrected_image(handle, &refilled_record);
    const unsigned char* brightest = nullptr;
    unsigned int best = 0;
    for (int i : {2, 3}) {  // corners 0 and 1 lie outside
        const unsigned char* pixel = page.data + 3 * (50 * moved.y[i] + moved.x[i]);
        const unsigned int score = (598u * pixel[0] + 587u * pixel[1]) / 1000u;
        if (score > best) {
            best = score;
            brightest = pixel;
        }
    }
    EXPECT_EQ(bytes_of(refilled),
              bytes_of(corrector_test::corrected(page, {{-3, 2}, {45, -1}, {46, 38}, {1, 36}}, 0,
                                                 brightest, 3)));

    BasicImage small(4, 4, common::IMAGE_TYPE_GREY, 300, 300);
    small.data[5] = 77;
    ImageCApi small_record = record_of(small);
    EXPECT_EQ(obtain_downsampled_corrected_image(handle, &small_record), 0);
    EXPECT_EQ(bytes_of(small)[5], 77) << "nothing written without a search";

    // With a working copy halved (as a search would make it), the reduced page comes from it.
    object().maximum_image_dimension = 25;
    ASSERT_EQ(object().preprocessing(), 1);
    ASSERT_EQ(object().downsampling_rate, 2);
    obtain_downsampled_corrected_img_dimension(handle, &width, &height);
    BasicImage reduced(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    ImageCApi reduced_record = record_of(reduced);
    obtain_downsampled_corrected_image(handle, &reduced_record);
    EXPECT_EQ(bytes_of(reduced),
              bytes_of(corrector_test::corrected(
                  *object().working_image, {{-1.5f, 1}, {22.5f, -0.5f}, {23, 19}, {0.5f, 18}}, 1)));
}

TEST_F(Corrector, BinarizesWithTheChosenMethodIntoTheCallersBuffer) {
    BasicImage page = noise_image(420, 400, common::IMAGE_TYPE_GREY, 7, 120);
    for (int y = 100; y < 130; ++y) {
        for (int x = 50; x < 300; x += 9) {
            page.data[420 * y + x] = page.data[420 * y + x + 1] = 20;
        }
    }
    ImageCApi input = record_of(page);
    for (int method : {0, 1}) {
        set_binarization_method(handle, method);
        set_binarization_k(handle, 0.25f);
        BasicImage output(400, 420, common::IMAGE_TYPE_BINARY, 300, 300);
        ImageCApi output_record = record_of(output);
        EXPECT_EQ(obtain_binarized_corrected_image(handle, &input, &output_record), 0);
        BasicImage expected;
        object().obtain_binarized_corrected_image(page, expected);
        EXPECT_EQ(bytes_of(output), bytes_of(expected)) << method;
        EXPECT_EQ(output.get_pixel(50, 115), 1u) << method;
    }
}

}  // namespace
