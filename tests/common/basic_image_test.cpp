// Layout, pixel access, ownership and failures of the concrete image class. The sanitizer run
// turns a leak, a double free or a free of a caller's buffer into a failure, so the ownership
// tests mostly need to walk the paths.

#include "common/basic_image.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "support/fake_image.h"

namespace {

using common::BasicImage;
using test_support::FakeImage;
using test_support::thrown_message;

int stride(common::ImageType type, int width) {
    return BasicImage(1, width, type, 300, 300).row_stride;
}

TEST(BasicImageLayout, BinaryRowsArePaddedToWholeWordsOthersArePacked) {
    const int binary_widths[] = {1, 31, 32, 33, 64, 65};
    const int binary_strides[] = {4, 4, 4, 8, 8, 12};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(stride(common::IMAGE_TYPE_BINARY, binary_widths[i]), binary_strides[i]);
    }
    EXPECT_EQ(stride(common::IMAGE_TYPE_GREY, 33), 33);
    EXPECT_EQ(stride(common::IMAGE_TYPE_RGB, 33), 99);
    EXPECT_EQ(stride(common::IMAGE_TYPE_BGRA, 33), 132);
    EXPECT_EQ(stride(common::IMAGE_TYPE_NONE, 33), 0);
    EXPECT_EQ(stride(static_cast<common::ImageType>(9), 33), 0);

    BasicImage binary(3, 33, common::IMAGE_TYPE_BINARY, 150, 200);
    EXPECT_EQ(binary.data_size, 24u);
    EXPECT_EQ(binary.get_row(2), binary.data + 16);
    for (std::uint32_t i = 0; i < binary.data_size; ++i) {
        ASSERT_EQ(binary.data[i], 0);
    }
    BasicImage rgb(4, 40, common::IMAGE_TYPE_RGB, 300, 300);
    EXPECT_EQ(rgb.get_row(3), rgb.data + 360);
    EXPECT_EQ(BasicImage(4, 40, common::IMAGE_TYPE_BGRA, 300, 300).get_row(0), nullptr);
}

TEST(BasicImageLayout, DefaultImageIsEmptyAt300PixelsPerInch) {
    BasicImage image;
    EXPECT_EQ(image.get_image_type(), common::IMAGE_TYPE_NONE);
    EXPECT_EQ(image.get_x_resolution(), 300);
    EXPECT_EQ(image.get_y_resolution(), 300);
    EXPECT_EQ(image.get_row(0), nullptr);
    int bytes = -7;
    EXPECT_FALSE(image.get_bytes_per_pixel(bytes));
    EXPECT_FALSE(BasicImage(1, 1, common::IMAGE_TYPE_BINARY, 1, 1).get_bytes_per_pixel(bytes));
    EXPECT_EQ(bytes, -7);
    ASSERT_TRUE(BasicImage(1, 1, common::IMAGE_TYPE_BGRA, 1, 1).get_bytes_per_pixel(bytes));
    EXPECT_EQ(bytes, 4);
}

TEST(BasicImagePixels, BinaryBitsAndPackedRgb) {
    BasicImage binary(2, 40, common::IMAGE_TYPE_BINARY, 300, 300);
    binary.set_pixel(9, 1, 5);
    binary.set_pixel(39, 1, 1);
    EXPECT_EQ(binary.data[8 + 1], 0x40);
    EXPECT_EQ(binary.data[8 + 4], 0x01);
    EXPECT_EQ(binary.get_pixel(9, 1), 1u);
    binary.set_pixel(9, 1, 0);
    EXPECT_EQ(binary.data[8 + 1], 0x00);

    BasicImage rgb(2, 2, common::IMAGE_TYPE_RGB, 300, 300);
    rgb.set_pixel(1, 1, 0xAABBCCDDu);
    EXPECT_EQ(std::memcmp(rgb.data + 9, "\xBB\xCC\xDD", 3), 0);
    EXPECT_EQ(rgb.get_pixel(1, 1), 0xBBCCDDu);
}

TEST(BasicImagePixels, ResolutionIsClampedToMinimumThenMaximum) {
    BasicImage image(1, 1, common::IMAGE_TYPE_GREY, 50, 900);
    image.force_resolution_in_range(100, 600);
    EXPECT_EQ(image.x_resolution, 100);
    EXPECT_EQ(image.y_resolution, 600);
    image.force_resolution_in_range(500, 200);  // inverted: the maximum has the last word
    EXPECT_EQ(image.x_resolution, 200);
}

unsigned char* caller_buffer(std::size_t size, unsigned char fill) {
    auto* buffer = static_cast<unsigned char*>(std::malloc(size));
    std::memset(buffer, fill, size);
    return buffer;
}

TEST(BasicImageOwnership, WrapBorrowsAndFreesOnlyWhatItOwned) {
    unsigned char* first = caller_buffer(16, 1);
    unsigned char* second = caller_buffer(16, 2);
    {
        BasicImage image(3, 4, common::IMAGE_TYPE_GREY, 300, 300);
        image.wrap(first, 2, 33, common::IMAGE_TYPE_BINARY, 300, 300);  // frees the owned buffer
        EXPECT_EQ(image.data, first);
        EXPECT_EQ(image.data_size, 16u);
        EXPECT_EQ(image.owns_data, 0);
        image.wrap(second, 2, 2, common::IMAGE_TYPE_BGRA, 300, 300);  // leaves `first` alone
    }
    EXPECT_EQ(first[15], 1);
    EXPECT_EQ(second[15], 2);
    std::free(first);
    std::free(second);
}

TEST(BasicImageOwnership, ResetKeepsACallersBufferOfTheSameSizeAndNeverFreesIt) {
    unsigned char* pixels = caller_buffer(24, 9);
    BasicImage image(pixels, 2, 12, common::IMAGE_TYPE_GREY, 300, 300);
    image.reset(2, 4, common::IMAGE_TYPE_RGB, 100, 100);
    EXPECT_EQ(image.data, pixels);
    EXPECT_EQ(image.owns_data, 0);
    EXPECT_EQ(image.row_stride, 12);
    EXPECT_EQ(image.x_resolution, 100);
    EXPECT_EQ(pixels[23], 0);

    image.reset(5, 5, common::IMAGE_TYPE_GREY, 300, 300);
    EXPECT_NE(image.data, pixels);
    EXPECT_EQ(image.owns_data, 1);
    EXPECT_EQ(image.data_size, 25u);
    std::free(pixels);
}

TEST(BasicImageOwnership, CopiesOwnWhateverTheSource) {
    unsigned char pixels[6] = {1, 2, 3, 4, 5, 6};
    BasicImage wrapped(pixels, 2, 3, common::IMAGE_TYPE_GREY, 200, 100);
    BasicImage copy(wrapped);
    EXPECT_NE(copy.data, pixels);
    EXPECT_EQ(copy.owns_data, 1);
    EXPECT_EQ(copy.y_resolution, 100);
    EXPECT_EQ(std::memcmp(copy.data, pixels, 6), 0);
    const BasicImage empty;
    EXPECT_EQ(BasicImage(empty).data, nullptr);
}

TEST(BasicImageOwnership, AssignmentFillsAWrappedBufferOfTheSameSize) {
    unsigned char target_pixels[6] = {};
    BasicImage target(target_pixels, 3, 2, common::IMAGE_TYPE_GREY, 300, 300);
    BasicImage source(2, 3, common::IMAGE_TYPE_GREY, 72, 72);
    source.data[5] = 42;
    target = source;
    EXPECT_EQ(target.data, target_pixels);
    EXPECT_EQ(target.owns_data, 0);
    EXPECT_EQ(target_pixels[5], 42);
    EXPECT_EQ(target.width, 3);
    EXPECT_EQ(target.x_resolution, 72);

    target = BasicImage(4, 4, common::IMAGE_TYPE_GREY, 300, 300);
    EXPECT_NE(target.data, target_pixels);
    EXPECT_EQ(target.owns_data, 1);
    target = BasicImage();
    EXPECT_EQ(target.data, nullptr);
    EXPECT_EQ(target.data_size, 0u);
}

TEST(BasicImageOwnership, AssignCopiesAnyImageIntoAKeptBuffer) {
    BasicImage source(2, 40, common::IMAGE_TYPE_BINARY, 150, 150);
    source.set_pixel(39, 1, 1);
    BasicImage target(4, 4, common::IMAGE_TYPE_GREY, 300, 300);  // 16 bytes, like the source
    unsigned char* kept = target.data;
    target.assign(source);
    EXPECT_EQ(target.data, kept);
    EXPECT_EQ(target.get_image_type(), common::IMAGE_TYPE_BINARY);
    EXPECT_EQ(target.row_stride, 8);
    EXPECT_EQ(target.x_resolution, 150);
    EXPECT_EQ(target.get_pixel(39, 1), 1u);
    EXPECT_EQ(target.get_pixel(38, 1), 0u);
}

TEST(BasicImageGenericCopy, PixelByPixelWhenTheBitOffsetsDiffer) {
    FakeImage source(2, 35, common::IMAGE_TYPE_BINARY, 3);
    source.set_pixel(0, 0, 1);
    source.set_pixel(34, 1, 1);
    BasicImage copy(source);
    EXPECT_EQ(copy.row_stride, 8);
    EXPECT_EQ(copy.x_resolution, 72);
    EXPECT_EQ(copy.y_resolution, 96);
    const unsigned char expected[16] = {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x20, 0, 0, 0};
    EXPECT_EQ(std::memcmp(copy.data, expected, 16), 0);

    BasicImage foreign{FakeImage(3, 3, static_cast<common::ImageType>(7))};
    EXPECT_EQ(foreign.data, nullptr);
    EXPECT_EQ(foreign.height, 3);
}

TEST(BasicImageFailures, MessagesNameTheOperation) {
    // 70000 by 70000 grey bytes do not fit the 32-bit size of a buffer.
    EXPECT_EQ(thrown_message([] { BasicImage(70000, 70000, common::IMAGE_TYPE_GREY, 300, 300); }),
              "error while constructing image, could not allocate enough memory");

    BasicImage image(2, 2, common::IMAGE_TYPE_GREY, 300, 300);
    unsigned char* before = image.data;
    EXPECT_EQ(thrown_message([&] { image.reset(70000, 70000, common::IMAGE_TYPE_GREY, 1, 1); }),
              "error while reseting image, could not allocate enough memory");
    EXPECT_EQ(image.data, before);  // a failed reset leaves the image as it was
    EXPECT_EQ(image.width, 2);

    struct HugeImage : FakeImage {
        explicit HugeImage(common::ImageType type) : FakeImage(0, 0, type) {}
        int get_height() const override { return 70000; }
        int get_width() const override { return 70000; }
    };
    EXPECT_EQ(thrown_message([] { BasicImage copy{HugeImage(common::IMAGE_TYPE_GREY)}; }),
              "error while copy-constructing image, could not allocate enough memory");
    EXPECT_EQ(thrown_message([&] { image.assign(HugeImage(common::IMAGE_TYPE_GREY)); }),
              "error while reseting image, could not allocate enough memory");
    EXPECT_EQ(thrown_message([&] { image.to_grey_from(HugeImage(common::IMAGE_TYPE_RGB), true); }),
              "error while allocating image, could not allocate enough memory");

    FakeImage fake(1, 1, common::IMAGE_TYPE_GREY);
    EXPECT_EQ(thrown_message([&] { image.swap(fake); }),
              "The images you want to swap must be both of type BasicImage.");
    EXPECT_EQ(thrown_message([&] { fake.swap(image); }),
              "Function Swap can not works on image of type different from BasicImage.");
    EXPECT_EQ(thrown_message([&] { fake.force_resolution_in_range(1, 2); }),
              "force_resolution_in_range not implemented for generic type");
}

}  // namespace
