// Layout, pixel access, ownership and failures of the concrete image class.

#include "common/basic_image.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/fake_image.h"

namespace {

using common::BasicImage;
using test_support::FakeImage;
using test_support::thrown_message;

int stride(common::ImageType type, int width) {
    return BasicImage(1, width, type, 300, 300).row_stride;
}

TEST(BasicImageLayout, BinaryRowsArePaddedToWholeWords) {
    EXPECT_EQ(stride(common::IMAGE_TYPE_BINARY, 1), 4);
    EXPECT_EQ(stride(common::IMAGE_TYPE_BINARY, 31), 4);
    EXPECT_EQ(stride(common::IMAGE_TYPE_BINARY, 32), 4);
    EXPECT_EQ(stride(common::IMAGE_TYPE_BINARY, 33), 8);
    EXPECT_EQ(stride(common::IMAGE_TYPE_BINARY, 64), 8);
    EXPECT_EQ(stride(common::IMAGE_TYPE_BINARY, 65), 12);
}

TEST(BasicImageLayout, OtherRowsArePacked) {
    EXPECT_EQ(stride(common::IMAGE_TYPE_GREY, 33), 33);
    EXPECT_EQ(stride(common::IMAGE_TYPE_RGB, 33), 99);
    EXPECT_EQ(stride(common::IMAGE_TYPE_BGRA, 33), 132);
    EXPECT_EQ(stride(common::IMAGE_TYPE_NONE, 33), 0);
    EXPECT_EQ(stride(static_cast<common::ImageType>(9), 33), 0);
}

TEST(BasicImageLayout, AllocatedImageIsZeroFilledAndSized) {
    BasicImage image(3, 33, common::IMAGE_TYPE_BINARY, 150, 200);
    EXPECT_EQ(image.data_size, 24u);
    EXPECT_EQ(image.owns_data, 1);
    EXPECT_EQ(image.get_x_resolution(), 150);
    EXPECT_EQ(image.get_y_resolution(), 200);
    for (std::uint32_t i = 0; i < image.data_size; ++i) {
        ASSERT_EQ(image.data[i], 0) << "byte " << i;
    }
}

TEST(BasicImageLayout, DefaultImageIsEmpty) {
    BasicImage image;
    EXPECT_EQ(image.get_image_type(), common::IMAGE_TYPE_NONE);
    EXPECT_EQ(image.get_x_resolution(), 300);
    EXPECT_EQ(image.get_y_resolution(), 300);
    EXPECT_EQ(image.data_size, 0u);
    EXPECT_EQ(image.get_row(0), nullptr);
    int bytes = -7;
    EXPECT_FALSE(image.get_bytes_per_pixel(bytes));
    EXPECT_EQ(bytes, -7);
}

TEST(BasicImageLayout, RowsStartWhereTheTypeSays) {
    BasicImage binary(4, 40, common::IMAGE_TYPE_BINARY, 300, 300);
    BasicImage grey(4, 40, common::IMAGE_TYPE_GREY, 300, 300);
    BasicImage rgb(4, 40, common::IMAGE_TYPE_RGB, 300, 300);
    BasicImage bgra(4, 40, common::IMAGE_TYPE_BGRA, 300, 300);
    EXPECT_EQ(binary.get_row(3), binary.data + 24);
    EXPECT_EQ(grey.get_row(3), grey.data + 120);
    EXPECT_EQ(rgb.get_row(3), rgb.data + 360);
    EXPECT_EQ(bgra.get_row(0), nullptr);

    int bytes = 0;
    EXPECT_FALSE(binary.get_bytes_per_pixel(bytes));
    ASSERT_TRUE(grey.get_bytes_per_pixel(bytes));
    EXPECT_EQ(bytes, 1);
    ASSERT_TRUE(rgb.get_bytes_per_pixel(bytes));
    EXPECT_EQ(bytes, 3);
    ASSERT_TRUE(bgra.get_bytes_per_pixel(bytes));
    EXPECT_EQ(bytes, 4);
}

TEST(BasicImagePixels, BinaryPixelsAreBitsMostSignificantFirst) {
    BasicImage image(2, 40, common::IMAGE_TYPE_BINARY, 300, 300);
    image.set_pixel(9, 1, 5);
    image.set_pixel(39, 1, 1);
    EXPECT_EQ(image.data[8 + 1], 0x40);
    EXPECT_EQ(image.data[8 + 4], 0x01);
    EXPECT_EQ(image.get_pixel(9, 1), 1u);
    EXPECT_EQ(image.get_pixel(8, 1), 0u);
    image.set_pixel(9, 1, 0);
    EXPECT_EQ(image.data[8 + 1], 0x00);
}

TEST(BasicImagePixels, RgbPixelsPackFirstByteHighest) {
    BasicImage image(2, 2, common::IMAGE_TYPE_RGB, 300, 300);
    image.set_pixel(1, 1, 0xAABBCCDDu);
    const unsigned char* pixel = image.data + 9;
    EXPECT_EQ(pixel[0], 0xBB);
    EXPECT_EQ(pixel[1], 0xCC);
    EXPECT_EQ(pixel[2], 0xDD);
    EXPECT_EQ(image.get_pixel(1, 1), 0xBBCCDDu);
}

TEST(BasicImagePixels, GreyStoresLowByteAndBgraIgnoresPixels) {
    BasicImage grey(1, 3, common::IMAGE_TYPE_GREY, 300, 300);
    grey.set_pixel(2, 0, 0x1234);
    EXPECT_EQ(grey.data[2], 0x34);
    EXPECT_EQ(grey.get_pixel(2, 0), 0x34u);

    BasicImage bgra(1, 1, common::IMAGE_TYPE_BGRA, 300, 300);
    bgra.set_pixel(0, 0, 0xFFFFFFFFu);
    EXPECT_EQ(std::memcmp(bgra.data, "\0\0\0\0", 4), 0);
    EXPECT_EQ(bgra.get_pixel(0, 0), 0u);
}

TEST(BasicImagePixels, ResolutionIsClampedToMinimumThenMaximum) {
    BasicImage image(1, 1, common::IMAGE_TYPE_GREY, 50, 900);
    image.force_resolution_in_range(100, 600);
    EXPECT_EQ(image.x_resolution, 100);
    EXPECT_EQ(image.y_resolution, 600);
    // An inverted range: the maximum has the last word.
    image.force_resolution_in_range(500, 200);
    EXPECT_EQ(image.x_resolution, 200);
    EXPECT_EQ(image.y_resolution, 200);
}

// --- Ownership. The sanitizer run turns a leak, a double free or a free of a caller's buffer into
// a failure, so these tests mostly need to walk the paths.

unsigned char* caller_buffer(std::size_t size, unsigned char fill) {
    auto* buffer = static_cast<unsigned char*>(std::malloc(size));
    std::memset(buffer, fill, size);
    return buffer;
}

TEST(BasicImageOwnership, WrapBorrowsWithoutCopying) {
    unsigned char* pixels = caller_buffer(2 * 8, 7);
    {
        BasicImage image(pixels, 2, 33, common::IMAGE_TYPE_BINARY, 300, 300);
        EXPECT_EQ(image.data, pixels);
        EXPECT_EQ(image.data_size, 16u);
        EXPECT_EQ(image.owns_data, 0);
    }
    EXPECT_EQ(pixels[15], 7);
    std::free(pixels);
}

TEST(BasicImageOwnership, WrapFreesAnOwnedBufferButNotABorrowedOne) {
    unsigned char* first = caller_buffer(12, 1);
    unsigned char* second = caller_buffer(12, 2);
    BasicImage image(3, 4, common::IMAGE_TYPE_GREY, 300, 300);
    image.wrap(first, 3, 4, common::IMAGE_TYPE_GREY, 300, 300);  // frees the owned buffer
    image.wrap(second, 2, 2, common::IMAGE_TYPE_RGB, 300, 300);  // leaves `first` alone
    EXPECT_EQ(image.data, second);
    EXPECT_EQ(image.row_stride, 6);
    EXPECT_EQ(first[11], 1);
    std::free(first);
    std::free(second);
}

TEST(BasicImageOwnership, ResetKeepsABufferOfTheSameSizeWithItsOwnership) {
    unsigned char* pixels = caller_buffer(24, 9);
    BasicImage image(pixels, 2, 12, common::IMAGE_TYPE_GREY, 300, 300);
    image.reset(2, 4, common::IMAGE_TYPE_RGB, 100, 100);
    EXPECT_EQ(image.data, pixels);
    EXPECT_EQ(image.owns_data, 0);
    EXPECT_EQ(image.row_stride, 12);
    EXPECT_EQ(image.x_resolution, 100);
    for (int i = 0; i < 24; ++i) {
        ASSERT_EQ(pixels[i], 0);
    }
    std::free(pixels);
}

TEST(BasicImageOwnership, ResetToAnotherSizeNeverFreesACallersBuffer) {
    unsigned char* pixels = caller_buffer(24, 9);
    {
        BasicImage image(pixels, 2, 12, common::IMAGE_TYPE_GREY, 300, 300);
        image.reset(5, 5, common::IMAGE_TYPE_GREY, 300, 300);
        EXPECT_NE(image.data, pixels);
        EXPECT_EQ(image.owns_data, 1);
        EXPECT_EQ(image.data_size, 25u);
    }
    EXPECT_EQ(pixels[23], 9);
    std::free(pixels);
}

TEST(BasicImageOwnership, CopyIsDeepAndOwnsWhateverTheSource) {
    unsigned char pixels[6] = {1, 2, 3, 4, 5, 6};
    BasicImage wrapped(pixels, 2, 3, common::IMAGE_TYPE_GREY, 200, 100);
    BasicImage copy(wrapped);
    EXPECT_NE(copy.data, pixels);
    EXPECT_EQ(copy.owns_data, 1);
    EXPECT_EQ(copy.x_resolution, 200);
    EXPECT_EQ(copy.y_resolution, 100);
    EXPECT_EQ(std::memcmp(copy.data, pixels, 6), 0);

    BasicImage empty_copy{BasicImage()};
    EXPECT_EQ(empty_copy.data, nullptr);
    EXPECT_EQ(empty_copy.data_size, 0u);
}

TEST(BasicImageOwnership, AssignmentFillsAWrappedBufferOfTheSameSize) {
    unsigned char target_pixels[6] = {0, 0, 0, 0, 0, 0};
    BasicImage target(target_pixels, 3, 2, common::IMAGE_TYPE_GREY, 300, 300);
    BasicImage source(2, 3, common::IMAGE_TYPE_GREY, 72, 72);
    source.data[5] = 42;

    target = source;
    EXPECT_EQ(target.data, target_pixels);
    EXPECT_EQ(target.owns_data, 0);
    EXPECT_EQ(target_pixels[5], 42);
    EXPECT_EQ(target.width, 3);
    EXPECT_EQ(target.x_resolution, 72);

    BasicImage larger(4, 4, common::IMAGE_TYPE_GREY, 300, 300);
    target = larger;
    EXPECT_NE(target.data, target_pixels);
    EXPECT_EQ(target.owns_data, 1);
    EXPECT_EQ(target_pixels[5], 42);

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

    target.assign(target);
    EXPECT_EQ(target.get_pixel(39, 1), 1u);
}

TEST(BasicImageOwnership, MoveTakesTheBufferAndLeavesAnEmptyImage) {
    BasicImage source(2, 2, common::IMAGE_TYPE_GREY, 300, 300);
    unsigned char* buffer = source.data;
    BasicImage moved(std::move(source));
    EXPECT_EQ(moved.data, buffer);
    EXPECT_EQ(source.data, nullptr);
    EXPECT_EQ(source.get_image_type(), common::IMAGE_TYPE_NONE);
}

TEST(BasicImageOwnership, SwapExchangesEveryField) {
    unsigned char pixels[4] = {1, 2, 3, 4};
    BasicImage wrapped(pixels, 1, 4, common::IMAGE_TYPE_GREY, 100, 200);
    BasicImage owned(3, 3, common::IMAGE_TYPE_RGB, 300, 300);
    unsigned char* owned_buffer = owned.data;
    wrapped.swap(owned);
    EXPECT_EQ(wrapped.data, owned_buffer);
    EXPECT_EQ(wrapped.owns_data, 1);
    EXPECT_EQ(wrapped.get_image_type(), common::IMAGE_TYPE_RGB);
    EXPECT_EQ(owned.data, pixels);
    EXPECT_EQ(owned.owns_data, 0);
    EXPECT_EQ(owned.y_resolution, 200);
}

// --- Copies from an image of another class.

TEST(BasicImageGenericCopy, PixelByPixelWhenTheBitOffsetsDiffer) {
    FakeImage source(2, 35, common::IMAGE_TYPE_BINARY, 3);
    source.set_pixel(0, 0, 1);
    source.set_pixel(34, 1, 1);
    BasicImage copy(source);
    EXPECT_EQ(copy.get_image_type(), common::IMAGE_TYPE_BINARY);
    EXPECT_EQ(copy.row_stride, 8);
    EXPECT_EQ(copy.x_resolution, 72);
    EXPECT_EQ(copy.y_resolution, 96);
    EXPECT_EQ(copy.data[0], 0x80);
    EXPECT_EQ(copy.data[8 + 4], 0x20);
    int set_bits = 0;
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 35; ++x) {
            set_bits += static_cast<int>(copy.get_pixel(x, y));
        }
    }
    EXPECT_EQ(set_bits, 2);
}

TEST(BasicImageGenericCopy, ForeignTypeGivesNoBuffer) {
    FakeImage source(3, 3, static_cast<common::ImageType>(7));
    BasicImage copy(source);
    EXPECT_EQ(copy.data, nullptr);
    EXPECT_EQ(copy.data_size, 0u);
    EXPECT_EQ(copy.height, 3);
}

TEST(BasicImageGenericCopy, BgraIsCopiedFromTheBuffer) {
    BasicImage bgra(2, 2, common::IMAGE_TYPE_BGRA, 300, 300);
    for (std::uint32_t i = 0; i < bgra.data_size; ++i) {
        bgra.data[i] = static_cast<unsigned char>(i + 1);
    }
    BasicImage copy(static_cast<const common::Image&>(bgra));
    ASSERT_EQ(copy.data_size, 16u);
    EXPECT_EQ(std::memcmp(copy.data, bgra.data, 16), 0);
}

// --- Failures are constant strings, word for word.

TEST(BasicImageFailures, AllocationFailuresNameTheOperation) {
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
}

TEST(BasicImageFailures, SwapAndResolutionOnOtherClasses) {
    BasicImage basic(1, 1, common::IMAGE_TYPE_GREY, 300, 300);
    FakeImage fake(1, 1, common::IMAGE_TYPE_GREY);
    EXPECT_EQ(thrown_message([&] { basic.swap(fake); }),
              "The images you want to swap must be both of type BasicImage.");
    EXPECT_EQ(thrown_message([&] { fake.swap(basic); }),
              "Function Swap can not works on image of type different from BasicImage.");
    EXPECT_EQ(thrown_message([&] { fake.force_resolution_in_range(1, 2); }),
              "force_resolution_in_range not implemented for generic type");
}

}  // namespace
