// Page measures and pixel questions on binary rows.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "geometric/operators/binary_image_operator.h"
#include "geometric/operators/image_operator.h"

namespace {

using common::BasicImage;
using geometric::BinaryImageOperator;
using geometric::ImageOperator;

std::vector<unsigned char> bytes(const BasicImage& image) {
    return std::vector<unsigned char>(image.data, image.data + image.data_size);
}

TEST(ImageOperatorStatistics, BackgroundStdIsTheThirdSmallestOfSixPatches) {
    // 20 by 30 gives patches of side 7 at rows 0, 12 (= 15 - 3) and 23, columns 0 and 13. One
    // pixel of value c among 49 zeros has the deviation c * sqrt(48) / 49.
    BasicImage grey(30, 20, common::IMAGE_TYPE_GREY, 300, 300);
    const int bright[6][3] = {{3, 3, 60},   {16, 3, 10}, {3, 15, 40},
                              {16, 15, 30}, {3, 26, 20}, {16, 26, 50}};
    for (const auto& p : bright) {
        grey.data[p[1] * 20 + p[0]] = static_cast<unsigned char>(p[2]);
    }
    grey.data[9 * 20 + 10] = 255;  // outside every patch
    float smallest = -1.0f;
    EXPECT_NEAR(ImageOperator::calculate_background_std(grey, &smallest), 30 * std::sqrt(48.0) / 49,
                1e-4);
    EXPECT_NEAR(smallest, 10 * std::sqrt(48.0) / 49, 1e-4);

    // 1000 by 2000 gives a side of 10: (9, 9) is inside the top left patch, (10, 10) is not.
    BasicImage page(2000, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    for (int index : {9 * 1000 + 9, 999, 995 * 1000, 2000 * 1000 - 1}) {
        page.data[index] = 100;
    }
    page.data[10 * 1000 + 10] = 200;
    EXPECT_NEAR(ImageOperator::calculate_background_std(page, nullptr), std::sqrt(99.0), 1e-3);
}

TEST(ImageOperatorStatistics, CentralPatchHasOneExtraPixelAndColourRowsAreCopiedByWidth) {
    BasicImage page(2000, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    for (int i = 0; i < 2000 * 1000; ++i) {
        page.data[i] = static_cast<unsigned char>((i % 1000 + 3 * (i / 1000)) % 251);
    }
    BasicImage patch;
    ImageOperator::fetch_image_patch_central(page, 0.25, patch);
    ASSERT_EQ(patch.width, 501);
    ASSERT_EQ(patch.height, 1001);
    EXPECT_EQ(patch.image_type, common::IMAGE_TYPE_GREY);
    EXPECT_EQ(patch.data[1000 * 501 + 500], (250 + 500 + 3 * 1500) % 251);

    // 8 by 8 RGB at a quarter: x0 = y0 = 2, and each row of the 5 by 5 patch holds the 5 bytes
    // from byte 6 of its source row.
    BasicImage rgb(8, 8, common::IMAGE_TYPE_RGB, 300, 300);
    for (int i = 0; i < 192; ++i) {
        rgb.data[i] = static_cast<unsigned char>(i % 24 + 10 * (i / 24));
    }
    ImageOperator::fetch_image_patch_central(rgb, 0.25, patch);
    ASSERT_EQ(patch.width * patch.height, 25);
    EXPECT_EQ(patch.data[0], 6 + 20);
    EXPECT_EQ(patch.data[24], 10 + 60);

    // The whole page reaches one pixel beyond it; that pixel stays 0.
    BasicImage small(3, 4, common::IMAGE_TYPE_GREY, 300, 300);
    for (int i = 0; i < 12; ++i) {
        small.data[i] = static_cast<unsigned char>(i + 1);
    }
    ImageOperator::fetch_image_patch_central(small, 1.0, patch);
    EXPECT_EQ(bytes(patch), (std::vector<unsigned char>{1, 2,  3,  4,  0, 5, 6, 7, 8, 0,
                                                        9, 10, 11, 12, 0, 0, 0, 0, 0, 0}));
}

TEST(ImageOperatorStatistics, BinaryPagesBorderInkBackgroundCoordinatesAndMean) {
    BasicImage binary(10, 33, common::IMAGE_TYPE_BINARY, 300, 300);  // 8 bytes a row
    EXPECT_TRUE(ImageOperator::is_complete_background(binary));
    EXPECT_TRUE(ImageOperator::is_complete_background(BasicImage()));
    binary.data[5 * 8 + 4] = 0x7F;  // padding bits after column 32 of row 5
    EXPECT_FALSE(ImageOperator::is_complete_background(binary));
    EXPECT_FLOAT_EQ(ImageOperator::mean(binary), 127.0f / 80.0f);
    binary.set_pixel(16, 5, 1);
    EXPECT_FALSE(ImageOperator::image_border_contains_text(binary));
    binary.set_pixel(32, 5, 1);
    EXPECT_TRUE(ImageOperator::image_border_contains_text(binary));
    binary.set_pixel(32, 5, 0);
    binary.set_pixel(20, 9, 1);
    EXPECT_TRUE(ImageOperator::image_border_contains_text(binary));

    std::vector<int> x = {-1};
    std::vector<int> y = {-1};
    ImageOperator::obtain_object_coordinates(binary, x, y);
    EXPECT_EQ(x, (std::vector<int>{-1, 16, 20}));
    EXPECT_EQ(y, (std::vector<int>{-1, 5, 9}));
}

TEST(ImageOperatorStatistics, SubstractSaturatesAtZeroInPlace) {
    BasicImage a(1, 4, common::IMAGE_TYPE_GREY, 300, 300);
    BasicImage b(1, 4, common::IMAGE_TYPE_GREY, 300, 300);
    const unsigned char av[] = {10, 5, 200, 255};
    const unsigned char bv[] = {3, 9, 200, 0};
    std::copy(av, av + 4, a.data);
    std::copy(bv, bv + 4, b.data);
    ImageOperator::substract(a, b);
    EXPECT_EQ(bytes(b), (std::vector<unsigned char>{7, 0, 0, 255}));
}

TEST(BinaryImageOperatorPixels, BlackRunsAgreeWithAPlainBitTest) {
    std::mt19937 random(7);
    std::vector<unsigned char> row(8);
    for (int trial = 0; trial < 200; ++trial) {
        for (auto& byte : row) {
            byte = static_cast<unsigned char>(random() % 4 == 0 ? 1u << (random() % 8) : 0u);
        }
        for (int x = 0; x < 64; ++x) {
            const bool set = (row[x / 8] >> (7 - x % 8)) & 1;
            ASSERT_EQ(BinaryImageOperator::is_background_pixel(x, row.data()), !set);
            bool any = false;
            for (int length = 0; x + length <= 64; ++length) {
                ASSERT_EQ(BinaryImageOperator::check_black_run(row.data(), x, length), any);
                const int next = x + length;
                any = any || (next < 64 && ((row[next / 8] >> (7 - next % 8)) & 1));
            }
        }
    }
}

TEST(BinaryImageOperatorPixels, ContourTestsOnlyNeighboursInsideTheImage) {
    BasicImage full(3, 3, common::IMAGE_TYPE_BINARY, 300, 300);
    full.data[0] = full.data[4] = full.data[8] = 0xE0;  // the padding bit at column 3 is clear
    for (int i = 0; i < 9; ++i) {
        EXPECT_FALSE(
            BinaryImageOperator::in_the_blob_contour(full.get_row(i / 3), i % 3, i / 3, 3, 3, 4));
    }
    for (int i = 0; i < 9; ++i) {
        BasicImage image(full);
        image.set_pixel(i % 3, i / 3, 0);
        EXPECT_EQ(BinaryImageOperator::in_the_blob_contour(image.get_row(1), 1, 1, 3, 3, 4),
                  i != 4);
    }
    BasicImage low(full);
    low.set_pixel(1, 2, 0);
    EXPECT_FALSE(BinaryImageOperator::in_the_blob_contour(low.get_row(1), 1, 1, 2, 3, 4));
}

TEST(BinaryImageOperatorPixels, BackgroundAverageSamplesTheOutlineOfTheSquare) {
    // Grey 5 y + x with the centre 240, which an outline never holds.
    BasicImage grey(5, 5, common::IMAGE_TYPE_GREY, 300, 300);
    BasicImage mask(5, 5, common::IMAGE_TYPE_BINARY, 300, 300);
    for (int i = 0; i < 25; ++i) {
        grey.data[i] = static_cast<unsigned char>(i == 12 ? 240 : i);
    }
    auto average = [&](int x, int y, int half) {
        return BinaryImageOperator::calculate_background_average(mask.get_row(y), grey.get_row(y),
                                                                 x, y, 5, 5, 4, half);
    };
    EXPECT_EQ(average(2, 2, 1), (6 + 7 + 8 + 11 + 13 + 16 + 17 + 18) / 8);
    EXPECT_EQ(average(2, 2, 2), (10 + 5 + 9 + 10 + 14 + 15 + 19 + 110) / 16);
    EXPECT_EQ(average(0, 0, 1), (0 + 1 + 5 + 6) / 4);  // clipped; the pixel itself is sampled
    EXPECT_EQ(average(1, 1, 0), (6 + 11) / 2);         // one row, closed by the row below
    EXPECT_EQ(average(1, 4, 0), 21);
    mask.set_pixel(1, 1, 1);
    mask.set_pixel(3, 3, 1);
    EXPECT_EQ(average(2, 2, 1), (7 + 8 + 11 + 13 + 16 + 17) / 6);
    for (int i = 0; i < 25; ++i) {
        mask.set_pixel(i % 5, i / 5, 1);
    }
    EXPECT_EQ(average(2, 2, 1), -1);
}

}  // namespace
