#include "geometric/rectification/color_transform.h"

#include <cstddef>

namespace geometric {

namespace {

inline unsigned char clamp_byte(int value) {
    return static_cast<unsigned char>(value < 0 ? 0 : (value > 255 ? 255 : value));
}

std::size_t pixel_count(const common::BasicImage& image) {
    if (image.data == nullptr || image.width <= 0 || image.height <= 0) {
        return 0;
    }
    return static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
}

}  // namespace

void ColorTransform::color_transform(common::BasicImage& image) const {
    switch (transform_type) {
        case RGB_TO_YUV:
            trans_RGB2YUV(image);
            break;
        case YUV_TO_RGB:
            trans_YUV2RGB(image);
            break;
        default:
            break;
    }
}

void ColorTransform::trans_RGB2YUV(common::BasicImage& image) const {
    unsigned char* pixel = image.data;
    const std::size_t count = pixel_count(image);
    for (std::size_t i = 0; i < count; ++i, pixel += 3) {
        const int b0 = pixel[0];
        const int b1 = pixel[1];
        const int b2 = pixel[2];
        // The luma is shifted as an unsigned value; the colour differences divide with truncation
        // towards zero. All three stay within a byte, so nothing is clamped.
        const unsigned int luma =
            (19595u * static_cast<unsigned int>(b0) + 38470u * static_cast<unsigned int>(b1) +
             7471u * static_cast<unsigned int>(b2)) >>
            16;
        const int first_difference = (32768 * b0 - 27440 * b1 - 5328 * b2) / 65536 + 128;
        const int second_difference = (32768 * b2 - 11056 * b0 - 21712 * b1) / 65536 + 128;
        pixel[0] = static_cast<unsigned char>(luma);
        pixel[1] = static_cast<unsigned char>(first_difference);
        pixel[2] = static_cast<unsigned char>(second_difference);
    }
}

void ColorTransform::trans_YUV2RGB(common::BasicImage& image) const {
    unsigned char* pixel = image.data;
    const std::size_t count = pixel_count(image);
    for (std::size_t i = 0; i < count; ++i, pixel += 3) {
        const int luma = pixel[0];
        const int first_difference = pixel[1];
        const int second_difference = pixel[2];
        // 8877440 is 128 * (22553 + 46802): the offsets of both differences in one constant.
        pixel[0] = clamp_byte(luma + (first_difference - 128) * 91881 / 65536);
        pixel[1] = clamp_byte(
            luma - (second_difference * 22553 - 8877440 + first_difference * 46802) / 65536);
        pixel[2] = clamp_byte(luma + (second_difference - 128) * 116130 / 65536);
    }
}

}  // namespace geometric
