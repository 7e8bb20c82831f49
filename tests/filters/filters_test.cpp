#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "geometric/operators/average_filtering.h"
#include "geometric/operators/canny_edge_detector.h"
#include "geometric/operators/weighted_filtering.h"

namespace {

using common::BasicImage;
using geometric::AverageFiltering;
using geometric::CannyEdgeDetector;
using geometric::WeightedFiltering;

BasicImage random_grey(int width, int height, unsigned seed) {
    BasicImage image(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    std::mt19937 generator(seed);
    std::uniform_int_distribution<int> value(0, 255);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.get_row(y)[x] = static_cast<unsigned char>(value(generator));
        }
    }
    return image;
}

// Reflection around the edge pixel, the edge itself not repeated.
int reflect(int p, int length) {
    if (p < 0) {
        return -p;
    }
    return p >= length ? 2 * length - 2 - p : p;
}

// The box mean worked out pixel by pixel.
int expected_mean(const BasicImage& image, int x, int y, int kernel_width, int kernel_height) {
    int sum = 0;
    for (int j = 0; j < kernel_height; ++j) {
        for (int i = 0; i < kernel_width; ++i) {
            const int sx = reflect(x + i - kernel_width / 2, image.get_width());
            const int sy = reflect(y + j - kernel_height / 2, image.get_height());
            sum += image.get_row(sy)[sx];
        }
    }
    const int n = kernel_width * kernel_height;
    return (n + 2 * sum) / (2 * n);
}

TEST(BoxMean, AllVariantsMatchAPlainRecomputation) {
    struct Case {
        int width, height, kernel_width, kernel_height;
    };
    const Case cases[] = {{13, 9, 3, 3}, {17, 11, 5, 3},  {9, 13, 4, 6},
                          {7, 5, 1, 1},  {21, 150, 7, 5}, {11, 3, 21, 5}};
    unsigned seed = 3;
    for (const Case& c : cases) {
        const BasicImage input = random_grey(c.width, c.height, seed++);
        BasicImage sliding;
        BasicImage integral;
        BasicImage strips;
        AverageFiltering::use_opencv_algorithm(input, sliding, c.kernel_width, c.kernel_height);
        AverageFiltering::use_summed_area_table(input, integral, c.kernel_width, c.kernel_height);
        AverageFiltering::use_native(input, strips, c.kernel_width, c.kernel_height);
        ASSERT_EQ(sliding.get_width(), c.width);
        ASSERT_EQ(sliding.get_height(), c.height);
        EXPECT_EQ(sliding.get_x_resolution(), 300);

        // Direct summation over a mirrored buffer built here.
        const int hw = c.kernel_width / 2;
        const int hh = c.kernel_height / 2;
        const int padded_width = c.width + 2 * hw;
        const int padded_height = c.height + 2 * hh;
        std::vector<unsigned char> padded(static_cast<std::size_t>(padded_width) * padded_height);
        for (int y = 0; y < padded_height; ++y) {
            for (int x = 0; x < padded_width; ++x) {
                padded[static_cast<std::size_t>(y) * padded_width + x] =
                    input.get_row(reflect(y - hh, c.height))[reflect(x - hw, c.width)];
            }
        }
        std::vector<unsigned char> direct(static_cast<std::size_t>(c.width) * c.height, 0);
        AverageFiltering::sum_area_table(padded.data(), padded_width, padded_height, direct.data(),
                                         c.width, c.height, c.kernel_width, c.kernel_height, hw,
                                         hh);

        for (int y = 0; y < c.height; ++y) {
            for (int x = 0; x < c.width; ++x) {
                const int expected = expected_mean(input, x, y, c.kernel_width, c.kernel_height);
                ASSERT_EQ(sliding.get_row(y)[x], expected) << x << "," << y;
                ASSERT_EQ(integral.get_row(y)[x], expected) << x << "," << y;
                ASSERT_EQ(strips.get_row(y)[x], expected) << x << "," << y;
                ASSERT_EQ(direct[static_cast<std::size_t>(y) * c.width + x], expected);
            }
        }
    }
}

TEST(BoxMean, HalvesRoundUpAndFlatStaysFlat) {
    // Mirrored row: 11 | 10 11 12 | 11; pairs 21, 21, 23.
    BasicImage row(1, 3, common::IMAGE_TYPE_GREY, 300, 300);
    row.get_row(0)[0] = 10;
    row.get_row(0)[1] = 11;
    row.get_row(0)[2] = 12;
    BasicImage out;
    AverageFiltering::use_opencv_algorithm(row, out, 2, 1);
    EXPECT_EQ(out.get_row(0)[0], 11);
    EXPECT_EQ(out.get_row(0)[1], 11);
    EXPECT_EQ(out.get_row(0)[2], 12);
    unsigned char padded[] = {11, 10, 11, 12, 11};
    unsigned char direct[3] = {0, 0, 0};
    AverageFiltering::sum_area_table(padded, 5, 1, direct, 3, 1, 2, 1, 1, 0);
    EXPECT_EQ(direct[0], 11);
    EXPECT_EQ(direct[2], 12);

    BasicImage flat(9, 8, common::IMAGE_TYPE_GREY, 300, 300);
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 8; ++x) {
            flat.get_row(y)[x] = 77;
        }
    }
    AverageFiltering::use_opencv_algorithm(flat, out, 5, 7);
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 8; ++x) {
            ASSERT_EQ(out.get_row(y)[x], 77);
        }
    }
}

TEST(WeightedFilter, InnerPixelsWeightedFrameCopiedAndTheFiveByFiveDoesNothing) {
    const BasicImage input = random_grey(11, 7, 42);
    BasicImage out;
    WeightedFiltering::perform_filtering_3_by_3(input, out, 4);
    for (int y = 0; y < 7; ++y) {
        for (int x = 0; x < 11; ++x) {
            int expected = input.get_row(y)[x];
            if (x > 0 && y > 0 && x < 10 && y < 6) {
                int sum = 0;
                for (int j = -1; j <= 1; ++j) {
                    for (int i = -1; i <= 1; ++i) {
                        sum += input.get_row(y + j)[x + i];
                    }
                }
                expected = (sum + 3 * input.get_row(y)[x]) / 12;
            }
            ASSERT_EQ(out.get_row(y)[x], expected) << x << "," << y;
        }
    }
    BasicImage untouched = random_grey(5, 5, 1);
    const BasicImage before(untouched);
    WeightedFiltering::perform_filtering_5_by_5(input, untouched, 4);
    EXPECT_EQ(untouched.get_width(), 5);
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(untouched.get_row(y)[x], before.get_row(y)[x]);
        }
    }
}

// A dark left part and a bright right part from column `step` on; transposed when asked.
BasicImage step_image(int width, int height, int step, int bright, bool transposed) {
    BasicImage image(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int along = transposed ? y : x;
            image.get_row(y)[x] = static_cast<unsigned char>(along >= step ? bright : 0);
        }
    }
    return image;
}

TEST(Canny, StepEdgeLandsOnTheBrightSideInsideTheTreatedArea) {
    for (bool transposed : {false, true}) {
        const int width = transposed ? 16 : 20;
        const int height = transposed ? 20 : 16;
        const BasicImage input = step_image(width, height, 10, 200, transposed);
        BasicImage edges;
        CannyEdgeDetector::perform_edge_detect(50, 100, input, edges);
        ASSERT_EQ(edges.get_width(), width);
        ASSERT_EQ(edges.get_height(), height);
        EXPECT_EQ(edges.get_row_stride(), width);
        EXPECT_EQ(edges.owns_data, 1);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const int along = transposed ? y : x;
                const int across = transposed ? x : y;
                const int limit = transposed ? width : height;
                const bool edge = along == 10 && across >= 1 && across <= limit - 3;
                ASSERT_EQ(edges.get_row(y)[x], edge ? 255 : 0) << x << "," << y;
            }
        }
    }
}

TEST(Canny, WeakEdgesNeedASeed) {
    // A step of 100 gives a magnitude of 100.
    const BasicImage input = step_image(20, 90, 10, 100, false);
    BasicImage edges;
    CannyEdgeDetector::perform_edge_detect(50, 150, input, edges);
    for (int y = 0; y < 90; ++y) {
        for (int x = 0; x < 20; ++x) {
            ASSERT_EQ(edges.get_row(y)[x], 0);
        }
    }
    // With a reachable high threshold the whole column is found, longer than one trace's depth.
    CannyEdgeDetector::perform_edge_detect(50, 100, input, edges);
    int count = 0;
    for (int y = 0; y < 90; ++y) {
        count += edges.get_row(y)[10] == 255;
    }
    EXPECT_EQ(count, 87);
}

TEST(Canny, RandomImagesKeepEdgesOffTheUntreatedRowsAndColumns) {
    for (unsigned seed : {11u, 12u}) {
        const BasicImage noise = random_grey(23, 17, seed);
        BasicImage smooth;
        AverageFiltering::use_opencv_algorithm(noise, smooth, 3, 3);
        BasicImage edges;
        CannyEdgeDetector::perform_edge_detect(5, 15, smooth, edges);
        int count = 0;
        for (int y = 0; y < 17; ++y) {
            for (int x = 0; x < 23; ++x) {
                const int value = edges.get_row(y)[x];
                ASSERT_TRUE(value == 0 || value == 255);
                if (value == 255) {
                    ++count;
                    EXPECT_TRUE(x >= 1 && x <= 20 && y >= 1 && y <= 14) << x << "," << y;
                }
            }
        }
        EXPECT_GT(count, 0);
    }
}

TEST(Canny, FlatAndTinyImagesGiveNoEdges) {
    BasicImage flat(6, 7, common::IMAGE_TYPE_GREY, 300, 300);
    BasicImage edges;
    CannyEdgeDetector::perform_edge_detect(1, 2, flat, edges);
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 7; ++x) {
            ASSERT_EQ(edges.get_row(y)[x], 0);
        }
    }
    const BasicImage tiny = random_grey(2, 2, 5);
    CannyEdgeDetector::perform_edge_detect(1, 2, tiny, edges);
    EXPECT_EQ(edges.get_width(), 2);
    EXPECT_EQ(edges.get_row(1)[1], 0);
}

}  // namespace
