// Pixel sampling kernels and the fixed-point colour transform: truncation, the wrap of values
// outside a byte, which bytes are written, and the exact transform values.

#include "geometric/rectification/sampling.h"

#include <gtest/gtest.h>

#include <boost/function.hpp>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "geometric/rectification/color_transform.h"

namespace {

using geometric::ColorTransform;
using geometric::InterpolationType;
using geometric::Sampling;
using Bytes = std::vector<unsigned char>;

// Samples the 4 by 4 grey block `pixels` at (1 + fx, 1 + fy).
int sample_grey(InterpolationType type, const Bytes& pixels, float fx, float fy) {
    const Sampling sampling(common::IMAGE_TYPE_GREY, 4, type);
    unsigned char out = 0;
    sampling(&pixels[5], fx, fy, &out);
    return out;
}

TEST(Sampling, KernelsAndSizesFollowTheInterpolationAndType) {
    const int kinds[] = {0, 1, 2, 2, 1};
    for (int type = 0; type <= 4; ++type) {
        const Sampling sampling(common::IMAGE_TYPE_RGB, 10, static_cast<InterpolationType>(type));
        EXPECT_EQ(sampling.kernel_kind, kinds[type]);
        EXPECT_EQ(sampling.bytes_per_pixel, 3);
        EXPECT_EQ(sampling.row_bytes, 30);
        EXPECT_FALSE(sampling.kernel.empty());
    }
    EXPECT_EQ(Sampling(common::IMAGE_TYPE_BGRA, 10, geometric::INTERPOLATION_LINEAR).row_bytes, 40);

    const Sampling empty(common::IMAGE_TYPE_GREY, 4, static_cast<InterpolationType>(5));
    const unsigned char pixel[16] = {};
    unsigned char out = 0;
    try {
        empty(pixel + 5, 0.5f, 0.5f, &out);
        FAIL() << "an empty kernel must throw";
    } catch (const boost::bad_function_call& error) {
        EXPECT_EQ(std::string(error.what()), "call to empty boost::function");
    }
}

TEST(Sampling, LinearTruncatesEachRowThenTheColumn) {
    // Rows 1 and 2 of the block hold 10, 20 and 30, 40 around the sampled pixel.
    const Bytes block = {0, 0, 0, 0, 0, 10, 20, 0, 0, 30, 40, 0, 0, 0, 0, 0};
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_LINEAR, block, 0.0f, 0.0f), 10);
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_LINEAR, block, 0.5f, 0.25f), 20);
    // The rows give 19.75 and 40.5, truncated to 19 and 40 before the column: 29, where the
    // untruncated rows would give 30.
    const Bytes fractions = {0, 0, 0, 0, 0, 10, 23, 0, 0, 30, 44, 0, 0, 0, 0, 0};
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_LINEAR, fractions, 0.75f, 0.5f), 29);
    const Bytes edge = {0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 0, 0};
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_LINEAR, edge, 0.5f, 0.5f), 127);
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_NEAREST, edge, 0.99f, 0.99f), 0);
}

TEST(Sampling, BicubicOvershootWrapsInsteadOfSaturating) {
    // Each row reads 0, 255, 255, 0: at t = 0.5 the cubic gives 286.875, truncated 286, whose low
    // byte is 30. The column of four 30s stays 30.
    const Bytes rows = {0, 255, 255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0, 255, 255, 0};
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_BICUBIC, rows, 0.5f, 0.0f), 30);
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_BICUBIC, rows, 0.5f, 0.7f), 30);
    // The same profile down the columns overshoots in the column pass.
    const Bytes columns = {0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 0};
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_BICUBIC, columns, 0.3f, 0.5f), 30);
    // At t = 0 the cubic is the sample itself; at t = 0.25 on a ramp 0, 40, 80, 120 it is exact.
    const Bytes ramp = {0, 40, 80, 120, 0, 40, 80, 120, 0, 40, 80, 120, 0, 40, 80, 120};
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_BICUBIC, ramp, 0.0f, 0.0f), 40);
    EXPECT_EQ(sample_grey(geometric::INTERPOLATION_BICUBIC, ramp, 0.25f, 0.5f), 50);
}

TEST(Sampling, ColourKernelsAndTheBytesTheyWrite) {
    // Two RGB pixels per row, three rows; channels blend independently.
    const Bytes rgb = {10, 100, 200, 30, 120, 240, 50, 140, 0, 70, 160, 40};
    unsigned char out[4] = {7, 7, 7, 7};
    const Sampling colour(common::IMAGE_TYPE_RGB, 2, geometric::INTERPOLATION_COLOR_LINEAR);
    colour(rgb.data(), 0.5f, 0.5f, out);
    EXPECT_EQ(Bytes(out, out + 4), (Bytes{40, 130, 120, 7}));

    const Bytes grey128(12, 128);
    const Sampling yuv(common::IMAGE_TYPE_RGB, 2, geometric::INTERPOLATION_COLOR_YUV);
    yuv(grey128.data(), 0.3f, 0.8f, out);
    EXPECT_EQ(Bytes(out, out + 3), Bytes(3, 128));

    // BGRA with the one-channel kernels: only the first byte of the output pixel is written.
    const Bytes bgra = {10, 1, 2, 3, 30, 1, 2, 3, 50, 1, 2, 3, 70, 1, 2, 3};
    unsigned char pixel[4] = {9, 9, 9, 9};
    Sampling(common::IMAGE_TYPE_BGRA, 2, geometric::INTERPOLATION_LINEAR)(bgra.data(), 0.5f, 0.5f,
                                                                          pixel);
    EXPECT_EQ(Bytes(pixel, pixel + 4), (Bytes{40, 9, 9, 9}));

    // A copy reads its own sizes.
    const Sampling original(common::IMAGE_TYPE_GREY, 2, geometric::INTERPOLATION_LINEAR);
    Sampling copy(common::IMAGE_TYPE_GREY, 50, geometric::INTERPOLATION_LINEAR);
    copy = original;
    const Bytes small = {0, 100, 200, 100};
    copy(small.data(), 0.0f, 0.5f, out);
    EXPECT_EQ(out[0], 100);
}

// The colour-difference kernel on a uniform patch is the inverse transform of that pixel.
TEST(Sampling, ColourDifferenceKernelIsTheInverseTransform) {
    std::mt19937 random(77u);
    const Sampling yuv(common::IMAGE_TYPE_RGB, 2, geometric::INTERPOLATION_COLOR_YUV);
    for (int round = 0; round < 200; ++round) {
        const unsigned char pixel[3] = {static_cast<unsigned char>(random()),
                                        static_cast<unsigned char>(random()),
                                        static_cast<unsigned char>(random())};
        Bytes patch;
        for (int i = 0; i < 4; ++i) {
            patch.insert(patch.end(), pixel, pixel + 3);
        }
        unsigned char sampled[3];
        yuv(patch.data(), 0.25f, 0.75f, sampled);
        common::BasicImage image(1, 1, common::IMAGE_TYPE_RGB, 300, 300);
        std::copy(pixel, pixel + 3, image.data);
        ColorTransform(ColorTransform::YUV_TO_RGB).color_transform(image);
        ASSERT_EQ(Bytes(sampled, sampled + 3), Bytes(image.data, image.data + 3));
    }
}

Bytes transformed(ColorTransform::TransformType type, const Bytes& pixels) {
    common::BasicImage image(1, static_cast<int>(pixels.size() / 3), common::IMAGE_TYPE_RGB, 300,
                             300);
    std::copy(pixels.begin(), pixels.end(), image.data);
    ColorTransform transform;
    transform.set_transform_type(type);
    transform.color_transform(image);
    return Bytes(image.data, image.data + image.data_size);
}

TEST(ColorTransform, FixedPointValuesTruncateTowardsZero) {
    // White; red (u 127.5 truncated); blue (u -20.7 truncated to -20, not -21).
    EXPECT_EQ(transformed(ColorTransform::RGB_TO_YUV, {255, 255, 255, 255, 0, 0, 0, 0, 255}),
              (Bytes{255, 128, 128, 76, 255, 85, 29, 108, 255}));
    // Back from red's form, and two that clamp at both ends.
    EXPECT_EQ(transformed(ColorTransform::YUV_TO_RGB, {76, 255, 85, 255, 255, 255, 0, 0, 0}),
              (Bytes{254, 1, 0, 255, 121, 255, 0, 135, 0}));
    // An unknown direction leaves the pixels alone.
    EXPECT_EQ(transformed(static_cast<ColorTransform::TransformType>(2), {1, 2, 3}),
              (Bytes{1, 2, 3}));
}

TEST(ColorTransform, RoundTripStaysWithinAFewUnits) {
    std::mt19937 random(5u);
    Bytes pixels(3 * 500);
    for (unsigned char& byte : pixels) {
        byte = static_cast<unsigned char>(random());
    }
    const Bytes back =
        transformed(ColorTransform::YUV_TO_RGB, transformed(ColorTransform::RGB_TO_YUV, pixels));
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        ASSERT_LE(std::abs(pixels[i] - back[i]), 3) << i;
    }
}

}  // namespace
