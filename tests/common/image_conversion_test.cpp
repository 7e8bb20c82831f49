// Pixel-format conversions of the image class, checked against values worked out by hand.

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "common/basic_image.h"

namespace {

using common::BasicImage;

BasicImage rgb_row(const std::vector<unsigned char>& bytes) {
    BasicImage image(1, static_cast<int>(bytes.size() / 3), common::IMAGE_TYPE_RGB, 150, 200);
    std::memcpy(image.data, bytes.data(), bytes.size());
    return image;
}

TEST(ImageConversion, RgbToGreyWeightedAndPlain) {
    const std::vector<unsigned char> pixels = {255, 0, 0, 10, 20, 30, 1, 1, 0, 255, 255, 255};
    BasicImage weighted = rgb_row(pixels);
    weighted.to_grey_in_place(true);
    ASSERT_EQ(weighted.get_image_type(), common::IMAGE_TYPE_GREY);
    EXPECT_EQ(weighted.row_stride, 4);
    EXPECT_EQ(weighted.x_resolution, 150);
    EXPECT_EQ(weighted.y_resolution, 200);
    EXPECT_EQ(weighted.owns_data, 1);
    // 299*255/1000 = 76.245; (2990 + 11740 + 3420)/1000 = 18.15; 886/1000; 255000/1000.
    EXPECT_EQ(weighted.data[0], 76);
    EXPECT_EQ(weighted.data[1], 18);
    EXPECT_EQ(weighted.data[2], 0);
    EXPECT_EQ(weighted.data[3], 255);

    BasicImage plain = rgb_row(pixels);
    plain.to_grey_in_place(false);
    EXPECT_EQ(plain.data[0], 85);
    EXPECT_EQ(plain.data[1], 20);
    EXPECT_EQ(plain.data[2], 0);  // 2 / 3
    EXPECT_EQ(plain.data[3], 255);

    BasicImage from;
    from.to_grey_from(rgb_row(pixels), true);
    EXPECT_EQ(std::memcmp(from.data, weighted.data, 4), 0);
    EXPECT_EQ(from.x_resolution, 150);
}

TEST(ImageConversion, RgbToGreyOfACallersImageKeepsTheCallersPixels) {
    unsigned char pixels[6] = {30, 60, 90, 0, 0, 255};
    BasicImage image(pixels, 1, 2, common::IMAGE_TYPE_RGB, 300, 300);
    image.to_grey_in_place(true);
    EXPECT_NE(image.data, pixels);
    EXPECT_EQ(image.owns_data, 1);
    EXPECT_EQ(image.data[0], 54);  // (8970 + 35220 + 10260) / 1000
    EXPECT_EQ(image.data[1], 29);  // 29070 / 1000
    EXPECT_EQ(pixels[0], 30);
}

TEST(ImageConversion, BinaryToGreyExpandsEveryBitIncludingAPartialLastByte) {
    BasicImage image(2, 11, common::IMAGE_TYPE_BINARY, 300, 300);
    image.data[0] = 0xA0;  // 1010 0000
    image.data[1] = 0x7F;  // 0111 1111: only the first three bits are pixels
    image.data[4] = 0xFF;
    image.data[5] = 0xFF;
    image.binary_to_grey_in_place();
    ASSERT_EQ(image.get_image_type(), common::IMAGE_TYPE_GREY);
    ASSERT_EQ(image.data_size, 22u);
    const unsigned char first_row[11] = {0, 255, 0, 255, 255, 255, 255, 255, 255, 0, 0};
    EXPECT_EQ(std::memcmp(image.data, first_row, 11), 0);
    for (int x = 0; x < 11; ++x) {
        EXPECT_EQ(image.data[11 + x], 0) << x;
    }
}

TEST(ImageConversion, ThresholdMarksDarkPixelsBlackAndLeavesPaddingClear) {
    BasicImage image(2, 35, common::IMAGE_TYPE_GREY, 300, 300);
    std::memset(image.data, 128, 35);       // at the threshold: black
    std::memset(image.data + 35, 129, 35);  // above: white
    image.data[35 + 2] = 0;
    image.threshold_to_binary_in_place(128);
    ASSERT_EQ(image.get_image_type(), common::IMAGE_TYPE_BINARY);
    ASSERT_EQ(image.row_stride, 8);
    const unsigned char first_row[8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xE0, 0, 0, 0};
    const unsigned char second_row[8] = {0x20, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(std::memcmp(image.data, first_row, 8), 0);
    EXPECT_EQ(std::memcmp(image.data + 8, second_row, 8), 0);
}

TEST(ImageConversion, GreyToBinaryMarksEveryNonZeroByte) {
    const unsigned char pixels[9] = {0, 1, 255, 0, 0, 0, 0, 0, 7};
    BasicImage image(1, 9, common::IMAGE_TYPE_GREY, 300, 300);
    std::memcpy(image.data, pixels, 9);
    image.grey_to_binary_in_place();
    EXPECT_EQ(image.data[0], 0x60);
    EXPECT_EQ(image.data[1], 0x80);
    EXPECT_EQ(image.data[2], 0);
}

TEST(ImageConversion, InvertFlipsPaddingToo) {
    BasicImage image(1, 3, common::IMAGE_TYPE_BINARY, 300, 300);
    image.data[0] = 0x0F;
    image.invert();
    EXPECT_EQ(image.data[0], 0xF0);
    EXPECT_EQ(image.data[3], 0xFF);
}

TEST(BrightestColour, TheThirdByteIsNotScoredAndTheFirstOfEqualsWins) {
    unsigned char colour[3] = {1, 1, 1};
    rgb_row({10, 10, 250, 11, 10, 0}).find_brightest_colour(colour);
    EXPECT_EQ(std::memcmp(colour, "\x0B\x0A\x00", 3), 0);
    rgb_row({100, 0, 0, 100, 0, 255}).find_brightest_colour(colour);
    EXPECT_EQ(colour[2], 0);
    rgb_row({0, 0, 200, 0, 0, 7}).find_brightest_colour(colour);  // no positive score: black
    EXPECT_EQ(std::memcmp(colour, "\0\0\0", 3), 0);
}

TEST(BrightestColour, ARowEndsAtAFullScaleScoreButLaterRowsAreStillScanned) {
    BasicImage image(2, 2, common::IMAGE_TYPE_RGB, 300, 300);
    // Row 0: score 256 ends the row before the brighter (255, 255, 9), score 302.
    // Row 1: score 272 beats 256.
    const unsigned char pixels[12] = {200, 233, 7, 255, 255, 9, 220, 240, 1, 0, 0, 0};
    std::memcpy(image.data, pixels, 12);
    unsigned char colour[3] = {0, 0, 0};
    image.find_brightest_colour(colour);
    EXPECT_EQ(colour[0], 220);
    EXPECT_EQ(colour[1], 240);
    EXPECT_EQ(colour[2], 1);
}

}  // namespace
