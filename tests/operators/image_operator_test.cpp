// Page measures: noise level, central patch, border ink, background, mean, coordinates, difference.

#include "geometric/operators/image_operator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using common::BasicImage;
using geometric::ImageOperator;

// A patch of 49 pixels that are 0 but one of value c has the deviation c * sqrt(48) / 49.
double one_bright_pixel_std(int c) {
    return c * std::sqrt(48.0) / 49.0;
}

TEST(ImageOperatorBackgroundStd, ReturnsTheThirdSmallestOfTheSixPatches) {
    // 20 by 30 gives patches of side 7 at rows 0, 12 (= 15 - 3) and 23, columns 0 and 13.
    BasicImage grey(30, 20, common::IMAGE_TYPE_GREY, 300, 300);
    auto put = [&](int x, int y, int value) {
        grey.data[y * 20 + x] = static_cast<unsigned char>(value);
    };
    put(3, 3, 60);    // top left
    put(16, 3, 10);   // top right
    put(3, 15, 40);   // middle left
    put(16, 15, 30);  // middle right
    put(3, 26, 20);   // bottom left
    put(16, 26, 50);  // bottom right
    put(10, 9, 255);  // outside every patch
    float smallest = -1.0f;
    const float third = ImageOperator::calculate_background_std(grey, &smallest);
    EXPECT_NEAR(third, one_bright_pixel_std(30), 1e-4);
    EXPECT_NEAR(smallest, one_bright_pixel_std(10), 1e-4);
    EXPECT_NEAR(ImageOperator::calculate_background_std(grey, nullptr), third, 0.0);

    // The side grows with the smaller dimension only beyond 700 pixels: 1000 by 2000 gives 10, so
    // a bright pixel at (9, 9) falls inside the top left patch and one at (10, 10) does not.
    BasicImage page(2000, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    page.data[9 * 1000 + 9] = 100;
    page.data[10 * 1000 + 10] = 200;
    ImageOperator::calculate_background_std(page, &smallest);
    EXPECT_FLOAT_EQ(smallest, 0.0f);
    page.data[2000 * 1000 - 1] = 100;  // bottom right
    page.data[999] = 100;              // top right
    page.data[995 * 1000] = 100;       // middle left, whose top row is 1000 - 5
    const double expected = 100.0 * std::sqrt(99.0) / 100.0;
    EXPECT_NEAR(ImageOperator::calculate_background_std(page, nullptr), expected, 1e-3);
}

TEST(ImageOperatorPatch, CutsTheCentreWithOneExtraPixel) {
    BasicImage page(2000, 1000, common::IMAGE_TYPE_GREY, 300, 300);
    for (int y = 0; y < 2000; ++y) {
        for (int x = 0; x < 1000; ++x) {
            page.data[y * 1000 + x] = static_cast<unsigned char>((x + 3 * y) % 251);
        }
    }
    BasicImage patch;
    ImageOperator::fetch_image_patch_central(page, 0.25, patch);
    ASSERT_EQ(patch.width, 501);
    ASSERT_EQ(patch.height, 1001);
    EXPECT_EQ(patch.image_type, common::IMAGE_TYPE_GREY);
    EXPECT_EQ(patch.x_resolution, 300);
    for (int r : {0, 500, 1000}) {
        for (int c : {0, 250, 500}) {
            EXPECT_EQ(patch.data[r * 501 + c], (250 + c + 3 * (500 + r)) % 251);
        }
    }
}

TEST(ImageOperatorPatch, ColourRowsAreAddressedByPixelButCopiedByPatchWidth) {
    // 8 by 8 RGB at a quarter: x0 = y0 = 2, a 5 by 5 patch, each row the 5 bytes from byte 6.
    BasicImage rgb(8, 8, common::IMAGE_TYPE_RGB, 300, 300);
    for (int y = 0; y < 8; ++y) {
        for (int b = 0; b < 24; ++b) {
            rgb.data[y * 24 + b] = static_cast<unsigned char>(b + 10 * y);
        }
    }
    BasicImage patch;
    ImageOperator::fetch_image_patch_central(rgb, 0.25, patch);
    ASSERT_EQ(patch.width, 5);
    ASSERT_EQ(patch.height, 5);
    for (int r = 0; r < 5; ++r) {
        for (int c = 0; c < 5; ++c) {
            EXPECT_EQ(patch.data[r * 5 + c], 6 + c + 10 * (2 + r));
        }
    }
}

TEST(ImageOperatorPatch, AWholePageCopiesWhatLiesInsideTheImage) {
    BasicImage grey(3, 4, common::IMAGE_TYPE_GREY, 300, 300);
    for (int i = 0; i < 12; ++i) {
        grey.data[i] = static_cast<unsigned char>(i + 1);
    }
    BasicImage patch;
    ImageOperator::fetch_image_patch_central(grey, 1.0, patch);
    ASSERT_EQ(patch.width, 5);
    ASSERT_EQ(patch.height, 4);
    const std::vector<unsigned char> expected = {1, 2,  3,  4,  0, 5, 6, 7, 8, 0,
                                                 9, 10, 11, 12, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(std::vector<unsigned char>(patch.data, patch.data + 20), expected);
}

TEST(ImageOperatorBinary, BorderInkIgnoresPaddingAndTheInside) {
    BasicImage binary(10, 33, common::IMAGE_TYPE_BINARY, 300, 300);  // 8 bytes a row
    binary.set_pixel(16, 5, 1);
    EXPECT_FALSE(ImageOperator::image_border_contains_text(binary));
    binary.data[5 * 8 + 4] = 0x7F;  // padding bits of row 5 after column 32
    binary.data[5 * 8 + 7] = 0xFF;
    EXPECT_FALSE(ImageOperator::image_border_contains_text(binary));
    binary.set_pixel(32, 5, 1);
    EXPECT_TRUE(ImageOperator::image_border_contains_text(binary));

    for (auto [x, y] : {std::pair{0, 4}, std::pair{20, 0}, std::pair{7, 9}}) {
        BasicImage other(10, 33, common::IMAGE_TYPE_BINARY, 300, 300);
        other.set_pixel(x, y, 1);
        EXPECT_TRUE(ImageOperator::image_border_contains_text(other)) << x << "," << y;
    }
}

TEST(ImageOperatorBinary, BackgroundCoordinatesAndMean) {
    BasicImage binary(3, 33, common::IMAGE_TYPE_BINARY, 300, 300);
    EXPECT_TRUE(ImageOperator::is_complete_background(binary));
    EXPECT_TRUE(ImageOperator::is_complete_background(BasicImage()));
    binary.data[7] = 1;  // a padding byte counts
    EXPECT_FALSE(ImageOperator::is_complete_background(binary));
    EXPECT_FLOAT_EQ(ImageOperator::mean(binary), 1.0f / 24.0f);
    binary.data[7] = 0;

    binary.set_pixel(32, 0, 1);
    binary.set_pixel(0, 2, 1);
    binary.set_pixel(5, 0, 1);
    binary.set_pixel(9, 1, 1);
    std::vector<int> x = {-1};
    std::vector<int> y = {-1};
    ImageOperator::obtain_object_coordinates(binary, x, y);
    EXPECT_EQ(x, (std::vector<int>{-1, 5, 32, 9, 0}));
    EXPECT_EQ(y, (std::vector<int>{-1, 0, 0, 1, 2}));

    BasicImage grey(2, 2, common::IMAGE_TYPE_GREY, 300, 300);
    const unsigned char values[] = {0, 10, 20, 31};
    std::copy(values, values + 4, grey.data);
    EXPECT_FLOAT_EQ(ImageOperator::mean(grey), 15.25f);
}

TEST(ImageOperatorSubstract, SaturatesAtZeroInPlace) {
    BasicImage a(1, 4, common::IMAGE_TYPE_GREY, 300, 300);
    BasicImage b(1, 4, common::IMAGE_TYPE_GREY, 300, 300);
    const unsigned char av[] = {10, 5, 200, 255};
    const unsigned char bv[] = {3, 9, 200, 0};
    std::copy(av, av + 4, a.data);
    std::copy(bv, bv + 4, b.data);
    ImageOperator::substract(a, b);
    EXPECT_EQ(std::vector<unsigned char>(b.data, b.data + 4),
              (std::vector<unsigned char>{7, 0, 0, 255}));
}

}  // namespace
