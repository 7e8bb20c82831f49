// Images crossing the C interface: the record's type rules, wrapping without a copy, and the way
// back.

#include "quorimp/image_c_api_transformer.h"

#include <gtest/gtest.h>

namespace {

using quorimp::ImageCApiTransformer;

common::ImageType wrapped_type(int channels, int is_binary) {
    unsigned char pixels[64] = {};
    ImageCApi record = {4, 2, 600, 600, channels, is_binary, pixels};
    common::BasicImage image;
    ImageCApiTransformer::transform_c_api_image_to_image(record, image);
    return image.get_image_type();
}

TEST(ImageCApiTransformer, TypeFollowsTheBinaryFlagThenTheChannels) {
    EXPECT_EQ(wrapped_type(3, 1), common::IMAGE_TYPE_BINARY);
    EXPECT_EQ(wrapped_type(1, -5), common::IMAGE_TYPE_BINARY);
    EXPECT_EQ(wrapped_type(3, 0), common::IMAGE_TYPE_RGB);
    EXPECT_EQ(wrapped_type(4, 0), common::IMAGE_TYPE_BGRA);
    EXPECT_EQ(wrapped_type(1, 0), common::IMAGE_TYPE_GREY);
    EXPECT_EQ(wrapped_type(2, 0), common::IMAGE_TYPE_GREY);
    EXPECT_EQ(wrapped_type(0, 0), common::IMAGE_TYPE_GREY);
}

TEST(ImageCApiTransformer, WrapsTheCallersPixelsAt300PixelsPerInch) {
    unsigned char pixels[2 * 8] = {};
    ImageCApi record = {40, 2, 600, 600, 1, 1, pixels};
    common::BasicImage image(5, 5, common::IMAGE_TYPE_GREY, 72, 72);
    ImageCApiTransformer::transform_c_api_image_to_image(record, image);
    EXPECT_EQ(image.get_data(), pixels);
    EXPECT_EQ(image.owns_data, 0);
    EXPECT_EQ(image.get_width(), 40);
    EXPECT_EQ(image.get_height(), 2);
    EXPECT_EQ(image.get_row_stride(), 8);
    EXPECT_EQ(image.data_size, 16u);
    EXPECT_EQ(image.get_x_resolution(), 300);
    EXPECT_EQ(image.get_y_resolution(), 300);

    image.set_pixel(39, 1, 1);  // writes go straight into the caller's buffer
    EXPECT_EQ(pixels[8 + 4], 0x01);
}

TEST(ImageCApiTransformer, DescribesAnImageForTheCaller) {
    common::BasicImage grey(3, 5, common::IMAGE_TYPE_GREY, 150, 75);
    ImageCApi record = {0, 0, 0, 0, 0, 1, nullptr};
    ImageCApiTransformer::transform_image_to_c_api_image(grey, record);
    EXPECT_EQ(record.width, 5);
    EXPECT_EQ(record.height, 3);
    EXPECT_EQ(record.x_resolution, 150);
    EXPECT_EQ(record.y_resolution, 75);
    EXPECT_EQ(record.channels, 1);
    EXPECT_EQ(record.is_binary, 0);
    EXPECT_EQ(record.data, grey.data);

    common::BasicImage binary(3, 5, common::IMAGE_TYPE_BINARY, 300, 300);
    record.channels = 77;
    ImageCApiTransformer::transform_image_to_c_api_image(binary, record);
    EXPECT_EQ(record.channels, 77);
    EXPECT_EQ(record.is_binary, 1);
    EXPECT_EQ(record.data, binary.data);

    common::BasicImage bgra(3, 5, common::IMAGE_TYPE_BGRA, 300, 300);
    ImageCApiTransformer::transform_image_to_c_api_image(bgra, record);
    EXPECT_EQ(record.channels, 4);
    EXPECT_EQ(record.is_binary, 0);
    EXPECT_EQ(record.data, nullptr);
}

}  // namespace
