// Integer downsampling: hand-checked halvings, halving in place, and the four reductions against
// a plain block mean on seeded random images of odd sizes; the rate rule at its limits.

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "geometric/operators/image_downsampling_rate_calculator.h"
#include "geometric/operators/image_integer_down_sampling.h"

namespace {

using common::BasicImage;
using geometric::ImageIntegerDownSampling;

BasicImage grey(int width, int height, const std::vector<unsigned char>& pixels) {
    BasicImage image(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    std::memcpy(image.data, pixels.data(), pixels.size());
    return image;
}

BasicImage random_grey(int width, int height, std::mt19937& generator) {
    BasicImage image(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    std::uniform_int_distribution<int> value(0, 255);
    for (std::uint32_t i = 0; i < image.data_size; ++i) {
        image.data[i] = static_cast<unsigned char>(value(generator));
    }
    return image;
}

// The block mean, written out plainly.
std::vector<unsigned char> block_means(const BasicImage& image, int n) {
    std::vector<unsigned char> means;
    for (int y = 0; y + n <= image.height; y += n) {
        for (int x = 0; x + n <= image.width; x += n) {
            int sum = 0;
            for (int dy = 0; dy < n; ++dy) {
                for (int dx = 0; dx < n; ++dx) {
                    sum += image.data[(y + dy) * image.width + x + dx];
                }
            }
            means.push_back(static_cast<unsigned char>(sum / (n * n)));
        }
    }
    return means;
}

std::vector<unsigned char> pixels_of(const BasicImage& image) {
    return std::vector<unsigned char>(image.data, image.data + image.width * image.height);
}

TEST(ImageIntegerDownSampling, HalvingTruncatesAndDropsOddEdges) {
    // 5 by 3: the last column and the last row take no part.
    const BasicImage image = grey(5, 3,
                                  {255, 255, 1, 2, 99,  //
                                   255, 254, 3, 5, 99,  //
                                   99, 99, 99, 99, 99});
    BasicImage half;
    ImageIntegerDownSampling::DownSampling2(image, half);
    EXPECT_EQ(half.width, 2);
    EXPECT_EQ(half.height, 1);
    EXPECT_EQ(half.row_stride, 2);
    EXPECT_EQ(half.image_type, common::IMAGE_TYPE_GREY);
    EXPECT_EQ(half.x_resolution, 300);
    EXPECT_EQ(pixels_of(half), std::vector<unsigned char>({254, 2}));  // 1019 / 4, 11 / 4
}

TEST(ImageIntegerDownSampling, HalvingKeepsAnExistingBuffer) {
    std::mt19937 generator(4242u);
    BasicImage image = random_grey(13, 9, generator);
    image.x_resolution = 200;
    image.y_resolution = 150;
    const std::vector<unsigned char> expected = block_means(image, 2);
    const unsigned char* buffer = image.data;

    ImageIntegerDownSampling::DownSampling2(image);  // in place
    EXPECT_EQ(image.data, buffer);
    EXPECT_EQ(image.width, 6);
    EXPECT_EQ(image.height, 4);
    EXPECT_EQ(image.data_size, 24u);
    EXPECT_EQ(image.x_resolution, 200);
    EXPECT_EQ(pixels_of(image), expected);

    // A separate output that already holds a larger buffer keeps it and its resolutions.
    const BasicImage source = random_grey(8, 6, generator);
    BasicImage output(10, 10, common::IMAGE_TYPE_GREY, 72, 72);
    const unsigned char* kept = output.data;
    ImageIntegerDownSampling::DownSampling2(source, output);
    EXPECT_EQ(output.data, kept);
    EXPECT_EQ(output.x_resolution, 72);
    EXPECT_EQ(pixels_of(output), block_means(source, 2));
}

TEST(ImageIntegerDownSampling, FourReductionsAgreeWithThePlainMean) {
    std::mt19937 generator(20240611u);
    const int sizes[][2] = {{1, 1}, {3, 2}, {8, 5}, {17, 23}, {37, 29}, {101, 67}, {64, 64}};
    for (const auto& size : sizes) {
        const BasicImage image = random_grey(size[0], size[1], generator);
        for (int n : {1, 2, 3, 4, 9, 12}) {
            const std::vector<unsigned char> expected = block_means(image, n);
            BasicImage combined, plain, table;
            ImageIntegerDownSampling::DownSamplingCombined(image, combined, n);
            ImageIntegerDownSampling::DownSamplingN(image, plain, n);
            ImageIntegerDownSampling::DownSamplingSummedAreaTable(image, table, n);
            for (const BasicImage* reduced : {&combined, &plain, &table}) {
                EXPECT_EQ(reduced->width, size[0] / n);
                EXPECT_EQ(reduced->height, size[1] / n);
                EXPECT_EQ(reduced->y_resolution, 300);
                EXPECT_EQ(pixels_of(*reduced), expected)
                    << size[0] << " by " << size[1] << ", factor " << n;
            }
            if (n == 2) {
                BasicImage halved;
                ImageIntegerDownSampling::DownSampling2(image, halved);
                EXPECT_EQ(pixels_of(halved), expected);
            }
        }
    }
}

TEST(ImageIntegerDownSampling, ImageSmallerThanTheFactor) {
    const BasicImage image = grey(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    BasicImage reduced(5, 5, common::IMAGE_TYPE_GREY, 300, 300);
    ImageIntegerDownSampling::DownSamplingSummedAreaTable(image, reduced, 4);
    EXPECT_EQ(reduced.width, 0);
    EXPECT_EQ(reduced.height, 0);
    // All 255: the mean of a full block does not overflow a byte.
    const BasicImage white = grey(4, 4, std::vector<unsigned char>(16, 255));
    ImageIntegerDownSampling::DownSamplingCombined(white, reduced, 4);
    EXPECT_EQ(pixels_of(reduced), std::vector<unsigned char>({255}));
}

TEST(ImageDownsamplingRateCalculator, RateCountsHalvings) {
    const auto rate = [](int width, int height, int limit) {
        const BasicImage image(height, width, common::IMAGE_TYPE_GREY, 300, 300);
        return geometric::ImageDownsamplingRateCalculator::calculate_downsampling_rate(image,
                                                                                       limit);
    };
    EXPECT_EQ(rate(1000, 10, 1000), 1);  // at the limit
    EXPECT_EQ(rate(1001, 10, 1000), 2);
    EXPECT_EQ(rate(10, 2000, 1000), 2);  // 2000 halves to exactly the limit
    EXPECT_EQ(rate(10, 2002, 1000), 3);  // 1001 is still above it
    EXPECT_EQ(rate(3000, 20, 1000), 3);
    EXPECT_EQ(rate(20, 5000, 1000), 4);  // 5000, 2500, 1250, 625
    EXPECT_EQ(rate(1, 1, 0), 2);
}

}  // namespace
