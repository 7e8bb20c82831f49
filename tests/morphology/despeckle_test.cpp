#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "common/basic_image.h"
#include "geometric/operators/geo_despeckle.h"

namespace {

using geometric::GeoDespeckle;

// A bit of a packed image, by bit column over the whole stride (padding included).
bool bit(const std::vector<unsigned char>& bytes, int stride, int column, int y) {
    return (bytes[y * stride + column / 8] >> (7 - column % 8)) & 1;
}

// The pass written pixel by pixel, in place, in raster order: a set pixel outside the first and
// last row and the first and last byte of its row stays when one of its eight neighbours is set
// at the moment it is visited. The bits of one byte are decided together, from that byte as it
// was.
std::vector<unsigned char> reference_despeckle(std::vector<unsigned char> bytes, int height,
                                               int stride) {
    for (int y = 1; y < height - 1; ++y) {
        for (int byte = 1; byte < stride - 1; ++byte) {
            unsigned char kept = 0;
            for (int b = 0; b < 8; ++b) {
                const int column = byte * 8 + b;
                if (!bit(bytes, stride, column, y)) {
                    continue;
                }
                bool neighbour = false;
                for (int dy = -1; dy <= 1; ++dy) {
                    for (int dx = -1; dx <= 1; ++dx) {
                        if (dx != 0 || dy != 0) {
                            neighbour = neighbour || bit(bytes, stride, column + dx, y + dy);
                        }
                    }
                }
                kept |= static_cast<unsigned char>(neighbour ? 0x80 >> b : 0);
            }
            bytes[y * stride + byte] = kept;
        }
    }
    return bytes;
}

TEST(GeoDespeckle, InPlaceAndCopyMatchAPixelByPixelPass) {
    std::mt19937 random(2024);
    for (int width : {31, 32, 33, 64, 65, 130, 200}) {
        for (int density : {3, 15, 40}) {
            const int height = 23;
            common::BasicImage input(height, width, common::IMAGE_TYPE_BINARY, 300, 300);
            for (std::uint32_t i = 0; i < input.data_size; ++i) {
                unsigned char byte = 0;
                for (int b = 0; b < 8; ++b) {
                    byte |= static_cast<unsigned char>(
                        static_cast<int>(random() % 100) < density ? 1 << b : 0);
                }
                input.data[i] = byte;
            }
            const std::vector<unsigned char> original(input.data, input.data + input.data_size);
            const std::vector<unsigned char> expected =
                reference_despeckle(original, height, input.row_stride);

            common::BasicImage copy;
            ASSERT_TRUE(GeoDespeckle::removeIsolatedPixel(input, copy));
            EXPECT_EQ(copy.width, width);
            EXPECT_EQ(std::vector<unsigned char>(copy.data, copy.data + copy.data_size), expected)
                << "width " << width << " density " << density;
            EXPECT_EQ(std::vector<unsigned char>(input.data, input.data + input.data_size),
                      original);

            ASSERT_TRUE(GeoDespeckle::removeIsolatedPixel(input, input));
            EXPECT_EQ(std::vector<unsigned char>(input.data, input.data + input.data_size),
                      expected)
                << "in place, width " << width << " density " << density;
        }
    }
}

TEST(GeoDespeckle, FirstByteLastRowAndSingleRowAreKept) {
    common::BasicImage image(4, 40, common::IMAGE_TYPE_BINARY, 300, 300);
    image.set_pixel(3, 1, 1);   // isolated, in the first byte of its row
    image.set_pixel(20, 3, 1);  // isolated, in the last row
    image.set_pixel(20, 1, 1);  // isolated: removed
    GeoDespeckle::removeIsolatedPixel(image, image);
    EXPECT_EQ(image.get_pixel(3, 1), 1u);
    EXPECT_EQ(image.get_pixel(20, 3), 1u);
    EXPECT_EQ(image.get_pixel(20, 1), 0u);

    common::BasicImage row(1, 40, common::IMAGE_TYPE_BINARY, 300, 300);
    row.set_pixel(20, 0, 1);
    common::BasicImage out;
    GeoDespeckle::removeIsolatedPixel(row, out);
    EXPECT_EQ(out.get_pixel(20, 0), 1u);
}

}  // namespace
