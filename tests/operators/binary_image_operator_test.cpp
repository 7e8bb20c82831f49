// Pixel questions on packed binary rows.

#include "geometric/operators/binary_image_operator.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "common/basic_image.h"

namespace {

using common::BasicImage;
using geometric::BinaryImageOperator;

bool bit(const std::vector<unsigned char>& row, int x) {
    return (row[x / 8] >> (7 - x % 8)) & 1;
}

TEST(BinaryImageOperatorRun, AgreesWithAPlainBitTestEverywhere) {
    std::mt19937 random(7);
    for (int trial = 0; trial < 200; ++trial) {
        std::vector<unsigned char> row(8);
        for (auto& byte : row) {
            // Sparse rows, so that short stretches are often clear.
            byte = static_cast<unsigned char>(random() % 4 == 0 ? 1u << (random() % 8) : 0u);
        }
        for (int x = 0; x < 64; ++x) {
            for (int length = 0; x + length <= 64; ++length) {
                bool any = false;
                for (int i = x; i < x + length; ++i) {
                    any = any || bit(row, i);
                }
                ASSERT_EQ(BinaryImageOperator::check_black_run(row.data(), x, length), any)
                    << "x " << x << " length " << length;
            }
            ASSERT_EQ(BinaryImageOperator::is_background_pixel(x, row.data()), !bit(row, x));
        }
    }
}

TEST(BinaryImageOperatorContour, TestsOnlyTheNeighboursInsideTheImage) {
    BasicImage full(3, 3, common::IMAGE_TYPE_BINARY, 300, 300);
    for (int y = 0; y < 3; ++y) {
        full.data[y * 4] = 0xE0;
    }
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 3; ++x) {
            EXPECT_FALSE(BinaryImageOperator::in_the_blob_contour(full.get_row(y), x, y, 3, 3, 4));
        }
    }
    // The padding bit just right of the image is clear but not a neighbour.
    EXPECT_FALSE(BinaryImageOperator::in_the_blob_contour(full.get_row(1), 2, 1, 3, 3, 4));

    const int neighbours[8][2] = {{-1, 0}, {1, 0}, {0, -1}, {-1, -1},
                                  {1, -1}, {0, 1}, {-1, 1}, {1, 1}};
    for (const auto& offset : neighbours) {
        BasicImage image(full);
        image.set_pixel(1 + offset[0], 1 + offset[1], 0);
        EXPECT_TRUE(BinaryImageOperator::in_the_blob_contour(image.get_row(1), 1, 1, 3, 3, 4));
    }
    BasicImage corner(full);
    corner.set_pixel(1, 1, 0);
    EXPECT_TRUE(BinaryImageOperator::in_the_blob_contour(corner.get_row(0), 0, 0, 3, 3, 4));
    BasicImage low(full);
    low.set_pixel(1, 2, 0);
    EXPECT_TRUE(BinaryImageOperator::in_the_blob_contour(low.get_row(1), 1, 1, 3, 3, 4));
    EXPECT_FALSE(BinaryImageOperator::in_the_blob_contour(low.get_row(1), 1, 1, 2, 3, 4))
        << "a clear pixel below the given height is not a neighbour";
}

class BackgroundAverage : public ::testing::Test {
protected:
    // Grey value 5 y + x, the centre 240; the binary mask is clear unless set by a test.
    BackgroundAverage()
        : grey(5, 5, common::IMAGE_TYPE_GREY, 300, 300),
          mask(5, 5, common::IMAGE_TYPE_BINARY, 300, 300) {
        for (int i = 0; i < 25; ++i) {
            grey.data[i] = static_cast<unsigned char>(i);
        }
        grey.data[12] = 240;
    }
    int average(int x, int y, int half) {
        return BinaryImageOperator::calculate_background_average(mask.get_row(y), grey.get_row(y),
                                                                 x, y, 5, 5, 4, half);
    }
    BasicImage grey;
    BasicImage mask;
};

TEST_F(BackgroundAverage, SamplesTheOutlineOfTheSquareOnly) {
    EXPECT_EQ(average(2, 2, 1), (6 + 7 + 8 + 11 + 13 + 16 + 17 + 18) / 8);
    EXPECT_EQ(average(2, 2, 2),
              (0 + 1 + 2 + 3 + 4 + 5 + 9 + 10 + 14 + 15 + 19 + 20 + 21 + 22 + 23 + 24) / 16);
    // Clipped at the corner: rows 0 and 1, columns 0 and 1, the pixel itself included.
    EXPECT_EQ(average(0, 0, 1), (0 + 1 + 5 + 6) / 4);
    // With half 0 the square has one row, and the row below it closes the outline.
    EXPECT_EQ(average(1, 1, 0), (6 + 11) / 2);
    EXPECT_EQ(average(1, 4, 0), 21);
}

TEST_F(BackgroundAverage, CountsOnlyBackgroundPixelsAndGivesMinusOneWithoutAny) {
    mask.set_pixel(1, 1, 1);
    mask.set_pixel(3, 3, 1);
    EXPECT_EQ(average(2, 2, 1), (7 + 8 + 11 + 13 + 16 + 17) / 6);
    for (int y = 1; y < 4; ++y) {
        for (int x = 1; x < 4; ++x) {
            mask.set_pixel(x, y, 1);
        }
    }
    EXPECT_EQ(average(2, 2, 1), -1);
}

}  // namespace
