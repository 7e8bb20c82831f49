#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "common/basic_image.h"
#include "geometric/binarization/binarization_enginee.h"
#include "geometric/binarization/geometricexception.h"
#include "geometric/binarization/omin_binarization.h"
#include "geometric/binarization/otsu_binarization.h"
#include "geometric/binarization/sauvola_binarization.h"
#include "geometric/binarization/sauvola_binarization_original.h"
#include "geometric/binarization/wolf_binarization_original.h"

namespace {

using geometric::OtsuBinarization;

common::BasicImage grey_image(int width, int height, std::initializer_list<int> values) {
    common::BasicImage image(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    std::copy(values.begin(), values.end(), image.data);
    return image;
}

unsigned int threshold_of(const common::BasicImage& image) {
    unsigned char threshold = 77;
    OtsuBinarization::obtain_threshold(image, threshold);
    return threshold;
}

TEST(OtsuThreshold, LargestBetweenClassVarianceWithTheLowestOfEqualValues) {
    // Three clusters of four: 10, 100, 250. Splitting after 10 gives 110^2 * 4 + 55^2 * 8 =
    // 72600, after 100 gives 65^2 * 8 + 130^2 * 4 = 101400.
    EXPECT_EQ(
        threshold_of(grey_image(4, 3, {10, 10, 10, 10, 100, 100, 100, 100, 250, 250, 250, 250})),
        100u);
    // Every split between two clusters has the same variance: the first one wins.
    EXPECT_EQ(threshold_of(grey_image(3, 2, {20, 220, 20, 220, 220, 20})), 20u);
    EXPECT_EQ(threshold_of(grey_image(2, 1, {0, 2})), 0u);
    // One grey value never raises the variance above 0.
    EXPECT_EQ(threshold_of(grey_image(2, 2, {90, 90, 90, 90})), 0u);
}

std::vector<int> bits_of(const common::BasicImage& image) {
    std::vector<int> bits;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            bits.push_back(static_cast<int>(image.get_pixel(x, y)));
        }
    }
    return bits;
}

TEST(OtsuBinarization, FrameAndPaddingFollowTheInversion) {
    // 5 by 4; threshold 20: the interior pixels above it are bright.
    const common::BasicImage page = grey_image(5, 4, {220, 220, 220, 220, 220,  //
                                                      220, 20,  220, 20,  220,  //
                                                      220, 220, 20,  220, 220,  //
                                                      220, 220, 220, 220, 220});
    common::BasicImage output;
    OtsuBinarization otsu(&page, &output);
    otsu.despeckle_enabled = false;
    ASSERT_TRUE(otsu.run_binarization());
    EXPECT_EQ(bits_of(output), std::vector<int>({1, 1, 1, 1, 1,  //
                                                 1, 1, 0, 1, 1,  //
                                                 1, 0, 1, 0, 1,  //
                                                 1, 1, 1, 1, 1}));
    EXPECT_EQ(output.data[3], 0xFF);  // the padding of the rows is set too
    EXPECT_EQ(output.data[7], 0xFF);

    otsu.invert_output = false;
    ASSERT_TRUE(otsu.run_binarization());
    EXPECT_EQ(bits_of(output), std::vector<int>({0, 0, 0, 0, 0,  //
                                                 0, 0, 1, 0, 0,  //
                                                 0, 1, 0, 1, 0,  //
                                                 0, 0, 0, 0, 0}));
    EXPECT_EQ(output.data[3], 0x00);

    // Two rows are never thresholded: after the flip every bit is set.
    const common::BasicImage flat = grey_image(3, 2, {0, 255, 0, 255, 0, 255});
    OtsuBinarization two_rows(&flat, &output);
    ASSERT_TRUE(two_rows.run_binarization());
    for (std::uint32_t i = 0; i < output.data_size; ++i) {
        EXPECT_EQ(output.data[i], 0xFF);
    }
}

TEST(OtsuBinarization, RandomPagesMatchAPlainThresholdingOfTheInterior) {
    std::mt19937 random(77);
    for (int width : {1, 15, 16, 17, 33, 64, 70}) {
        common::BasicImage page(9, width, common::IMAGE_TYPE_GREY, 300, 300);
        for (std::uint32_t i = 0; i < page.data_size; ++i) {
            page.data[i] = static_cast<unsigned char>(random() % 2 ? 30 + random() % 50
                                                                   : 150 + random() % 100);
        }
        const unsigned int threshold = threshold_of(page);
        common::BasicImage output;
        OtsuBinarization otsu(&page, &output);
        otsu.despeckle_enabled = false;
        ASSERT_TRUE(otsu.run_binarization());
        for (int y = 0; y < 9; ++y) {
            for (int x = 0; x < output.row_stride * 8; ++x) {
                const bool interior = y > 0 && y < 8 && x > 0 && x < width - 1;
                const bool bright = interior && page.data[y * width + x] > threshold;
                const int bit = (output.data[y * output.row_stride + x / 8] >> (7 - x % 8)) & 1;
                ASSERT_EQ(bit, bright ? 0 : 1) << "width " << width << " at " << x << "," << y;
            }
        }
    }
}

TEST(OtsuBinarization, DespecklingRunsInPlaceOnTheInvertedOutput) {
    // A lone dark pixel in a bright interior is removed; the frame stays.
    common::BasicImage page(6, 20, common::IMAGE_TYPE_GREY, 300, 300);
    std::fill(page.data, page.data + page.data_size, 200);
    page.data[3 * 20 + 10] = 10;
    common::BasicImage output;
    OtsuBinarization otsu(&page, &output);
    ASSERT_TRUE(otsu.run_binarization());
    EXPECT_EQ(output.get_pixel(10, 3), 0u);
    EXPECT_EQ(output.get_pixel(0, 3), 1u);
    otsu.despeckle_enabled = false;
    ASSERT_TRUE(otsu.run_binarization());
    EXPECT_EQ(output.get_pixel(10, 3), 1u);
}

TEST(BinarizationFrame, BinaryInputIsReturnedBitForBit) {
    common::BasicImage binary(5, 37, common::IMAGE_TYPE_BINARY, 200, 100);
    for (std::uint32_t i = 0; i < binary.data_size; ++i) {
        binary.data[i] = static_cast<unsigned char>(i * 37 + 11);  // isolated pixels, padding
    }
    common::BasicImage output;
    OtsuBinarization otsu(&binary, &output);
    ASSERT_TRUE(otsu.run_binarization());
    EXPECT_EQ(output.image_type, common::IMAGE_TYPE_BINARY);
    EXPECT_EQ(output.width, 37);
    EXPECT_EQ(output.x_resolution, 200);
    ASSERT_EQ(output.data_size, binary.data_size);
    EXPECT_EQ(std::memcmp(output.data, binary.data, binary.data_size), 0);
}

TEST(BinarizationFrame, WorkingCopyRunsAndRefusals) {
    common::BasicImage rgb(4, 4, common::IMAGE_TYPE_RGB, 300, 300);
    for (int i = 0; i < 16; ++i) {
        rgb.data[3 * i] = 10;
        rgb.data[3 * i + 1] = static_cast<unsigned char>(i < 8 ? 20 : 240);
        rgb.data[3 * i + 2] = 200;
    }
    common::BasicImage output;
    OtsuBinarization otsu(&rgb, &output);
    common::BasicImage* grey = nullptr;
    otsu.obtain_grayscale_img(&grey);
    EXPECT_EQ(grey, &rgb);  // before any run: the input itself

    ASSERT_TRUE(otsu.run_binarization());
    const std::vector<unsigned char> first(output.data, output.data + output.data_size);
    otsu.obtain_grayscale_img(&grey);
    ASSERT_NE(grey, &rgb);
    EXPECT_EQ(grey->image_type, common::IMAGE_TYPE_GREY);
    EXPECT_EQ(grey->data[0], (299 * 10 + 587 * 20 + 114 * 200) / 1000);
    EXPECT_EQ(rgb.image_type, common::IMAGE_TYPE_RGB);  // the input is never changed
    ASSERT_TRUE(otsu.run_binarization());
    EXPECT_EQ(std::vector<unsigned char>(output.data, output.data + output.data_size), first);

    // An empty image reaches the method, which has nothing to do.
    for (const auto& size : {std::make_pair(0, 5), std::make_pair(5, 0), std::make_pair(0, 0)}) {
        const common::BasicImage empty(size.first, size.second, common::IMAGE_TYPE_GREY, 300, 300);
        OtsuBinarization nothing(&empty, &output);
        EXPECT_TRUE(nothing.run_binarization());
        EXPECT_EQ(output.height, size.first);
    }

    // BGRA has no grey conversion: false, and the output stays cleared.
    common::BasicImage bgra(4, 4, common::IMAGE_TYPE_BGRA, 300, 300);
    OtsuBinarization refused(&bgra, &output);
    EXPECT_FALSE(refused.run_binarization());
    EXPECT_EQ(std::count(output.data, output.data + output.data_size, 0),
              static_cast<long>(output.data_size));

    std::string message;
    try {
        OtsuBinarization no_output(&rgb, nullptr);
    } catch (const geometric::Geometricexception& error) {
        message = error.what();
    }
    EXPECT_EQ(message, "the output image is empty");
}

TEST(BinarizationEnginee, BuildsTheMethodOfItsNumber) {
    const common::BasicImage page = grey_image(2, 2, {1, 2, 3, 4});
    common::BasicImage output;
    using geometric::BinarizationEnginee;
    EXPECT_NE(dynamic_cast<geometric::SauvolaBinarization*>(
                  BinarizationEnginee(&page, &output, BinarizationSauvola).binarization),
              nullptr);
    EXPECT_NE(dynamic_cast<geometric::SauvolaBinarizationOriginal*>(
                  BinarizationEnginee(&page, &output, BinarizationSauvolaOriginal).binarization),
              nullptr);
    EXPECT_NE(dynamic_cast<geometric::WolfBinarizationOriginal*>(
                  BinarizationEnginee(&page, &output, BinarizationWolfOriginal).binarization),
              nullptr);
    EXPECT_NE(dynamic_cast<geometric::OminBinarization*>(
                  BinarizationEnginee(&page, &output, BinarizationOmin).binarization),
              nullptr);
    EXPECT_EQ(BinarizationEnginee(&page, &output, static_cast<BinarizationMethod>(5)).binarization,
              nullptr);

    BinarizationEnginee otsu(&page, &output, BinarizationOtsu);
    ASSERT_NE(dynamic_cast<OtsuBinarization*>(otsu.binarization), nullptr);
    EXPECT_EQ(otsu.perfomr_binarization(), 0);
    const common::BasicImage bgra(2, 2, common::IMAGE_TYPE_BGRA, 300, 300);
    BinarizationEnginee refused(&bgra, &output, BinarizationOtsu);
    EXPECT_EQ(refused.perfomr_binarization(), -1);
}

}  // namespace
