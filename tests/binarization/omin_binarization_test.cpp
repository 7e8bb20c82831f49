// The multi-scale binarization: its pyramid, its scale bands and what it keeps of a page.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "geometric/binarization/binarization_enginee.h"
#include "geometric/binarization/image_pyramid.h"
#include "geometric/binarization/omin_binarization.h"

namespace {

using common::BasicImage;
using geometric::ImagePyramid;
using geometric::OminBinarization;

struct Box {
    int x, y, width, height;
};

BasicImage page_with_boxes(int width, int height, unsigned char background,
                           const std::vector<Box>& boxes, unsigned char ink = 30) {
    BasicImage page(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    std::memset(page.data, background, page.data_size);
    for (const Box& box : boxes) {
        for (int y = box.y; y < box.y + box.height; ++y) {
            std::memset(page.data + static_cast<std::size_t>(width) * y + box.x, ink,
                        static_cast<std::size_t>(box.width));
        }
    }
    return page;
}

bool bit(const BasicImage& binary, int x, int y) {
    return binary.get_pixel(x, y) != 0;
}

int count_bits(const BasicImage& binary) {
    int count = 0;
    for (int y = 0; y < binary.height; ++y) {
        for (int x = 0; x < binary.width; ++x) {
            count += bit(binary, x, y) ? 1 : 0;
        }
    }
    return count;
}

TEST(ImagePyramid, LevelsBringTheLongerSideNearTheLimitAndNotBelowTheMinimum) {
    EXPECT_EQ(ImagePyramid(750, 650, 2000, 3000).level_count, 2);  // 3000 / 4 = 750 stays
    EXPECT_EQ(ImagePyramid(750, 650, 2400, 1000).level_count, 1);  // 2400 / 4 = 600 is too small
    EXPECT_EQ(ImagePyramid(750, 650, 750, 10).level_count, 0);
    EXPECT_EQ(ImagePyramid(750, 650, 100000, 10).level_count, 6);
    EXPECT_TRUE(ImagePyramid(750, 650, 2000, 3000).levels.empty());

    BasicImage page(9, 1601, common::IMAGE_TYPE_GREY, 300, 300);
    for (std::uint32_t i = 0; i < page.data_size; ++i) {
        page.data[i] = static_cast<unsigned char>(i * 37);
    }
    const ImagePyramid pyramid(page, 750, 650);  // 1601 / 4 = 400: one level
    ASSERT_EQ(pyramid.level_count, 1);
    ASSERT_EQ(pyramid.levels.size(), 1u);
    const BasicImage& level = *pyramid.levels[0];
    ASSERT_EQ(level.width, 800);
    ASSERT_EQ(level.height, 4);
    EXPECT_EQ(level.get_pixel(5, 3), (page.get_pixel(10, 6) + page.get_pixel(11, 6) +
                                      page.get_pixel(10, 7) + page.get_pixel(11, 7)) >>
                                         2);
}

TEST(OminPara, ScaleBandsOverlapWithASinglePrecisionShareAndAccumulate) {
    geometric::OminPara para;
    para.set_up_scale_definitions(17);
    ASSERT_EQ(para.scale_definitions.size(), 3u);
    EXPECT_EQ(para.scale_definitions[0].minimum_area, 2.0);
    EXPECT_EQ(para.scale_definitions[0].maximum_area, 289.0);
    EXPECT_EQ(para.scale_definitions[1].minimum_area, 0.25 * (0.9 - 0.1f) * 289.0);
    EXPECT_NE(para.scale_definitions[1].minimum_area, 0.25 * 0.8 * 289.0);
    EXPECT_EQ(para.scale_definitions[1].maximum_area, 1156.0);
    EXPECT_EQ(para.scale_definitions[2].minimum_area, 0.25 * (0.9 - (0.1f + 0.1f)) * 1156.0);
    EXPECT_EQ(para.scale_definitions[2].maximum_area, 1e16);

    para.minimum_scale = 3;
    para.set_up_scale_definitions(5);  // one band, appended behind the others
    ASSERT_EQ(para.scale_definitions.size(), 4u);
    EXPECT_EQ(para.scale_definitions[3].minimum_area, 2.0);
    EXPECT_EQ(para.scale_definitions[3].maximum_area, 1e16);
}

TEST(OminBinarization, SmallPagesStartAtFullSizeAndBlankPagesComeOutEmpty) {
    for (const auto& [width, first_scale] : {std::pair{1000, 0}, std::pair{1001, 1}}) {
        const BasicImage page = page_with_boxes(width, 800, 150, {});
        BasicImage output;
        OminBinarization omin(&page, &output);
        ASSERT_TRUE(omin.run_binarization());
        EXPECT_EQ(omin.para.minimum_scale, first_scale) << width;
        EXPECT_EQ(output.width, width);
        EXPECT_EQ(output.image_type, common::IMAGE_TYPE_BINARY);
        EXPECT_EQ(count_bits(output), 0) << width;
    }
}

TEST(OminBinarization, PixelsWithoutAScaleStayBackgroundWhateverTheirValue) {
    // Alone in a flat page the black pixel leaves its surroundings flat, so they get no threshold
    // and no scale; judged by the threshold of 1 that such pixels get, it would be foreground.
    for (int width : {1000, 1001}) {
        BasicImage page = page_with_boxes(width, 800, 150, {{401, 301, 1, 1}}, 0);
        BasicImage output;
        OminBinarization omin(&page, &output);
        omin.despeckle_enabled = false;
        omin.run_binarization();
        EXPECT_EQ(count_bits(output), 0) << width;
    }
}

// Text-like boxes and one block too large for the first scale, whose inside is flat there and is
// only found at the next scale. Without a pyramid level (1200 pixels) and with one (1700).
TEST(OminBinarization, KeepsBoxesOfEverySizeExactly) {
    const std::vector<Box> boxes = {{100, 100, 12, 16}, {140, 100, 8, 16},  {180, 104, 14, 12},
                                    {300, 400, 64, 64}, {600, 200, 40, 20}, {700, 500, 6, 22}};
    for (int width : {1200, 1700}) {
        const BasicImage page = page_with_boxes(width, 900, 220, boxes);
        BasicImage output;
        OminBinarization omin(&page, &output);
        omin.run_binarization();
        EXPECT_EQ(omin.para.minimum_scale, 1);
        int expected = 0;
        int wrong = 0;
        for (int y = 0; y < page.height; ++y) {
            for (int x = 0; x < page.width; ++x) {
                const bool ink = page.get_pixel(x, y) == 30;
                expected += ink ? 1 : 0;
                wrong += ink != bit(output, x, y) ? 1 : 0;
            }
        }
        EXPECT_EQ(wrong, 0) << width;
        EXPECT_EQ(count_bits(output), expected) << width;

        // The flat inside of the block alone, at the first scale only, stays background.
        OminBinarization first_scale_only(&page, &output);
        first_scale_only.para.maximum_scale = 1;
        first_scale_only.run_binarization();
        EXPECT_FALSE(bit(output, 332, 432)) << width;
        EXPECT_TRUE(bit(output, 106, 108)) << width;
    }
}

// With one scale on a small page and no pixel of value 0, the output is the local threshold
// itself: p < trunc(m * k * 0.0078 * s + (1 - k) * m) for pixels at most 200 whose mean / deviation
// over the 35 by 35 box stays below 20, re-computed here from plain window sums.
TEST(OminBinarization, OneScaleIsTheLocalThresholdOfEveryInnerPixel) {
    const int width = 90;
    const int height = 70;
    BasicImage page(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    std::mt19937 random(11);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int base = (x / 6 + y / 9) % 3 == 0 ? 60 : 190;
            const int noise = static_cast<int>(random() % 41) - 20;
            page.data[width * y + x] = static_cast<unsigned char>(std::max(1, base + noise));
        }
    }
    BasicImage output;
    OminBinarization omin(&page, &output);
    omin.despeckle_enabled = false;
    omin.para.maximum_scale = 0;
    omin.para.k = 0.15f;
    omin.run_binarization();
    ASSERT_EQ(omin.para.minimum_scale, 0);

    const double k = 0.15f;
    int wrong = 0;
    int set = 0;
    for (int y = 1; y + 1 < height; ++y) {
        for (int x = 1; x + 1 < width; ++x) {
            double sum = 0.0;
            double squares = 0.0;
            int count = 0;
            for (int v = std::max(0, y - 17); v < std::min(height, y + 18); ++v) {
                for (int u = std::max(0, x - 17); u < std::min(width, x + 18); ++u) {
                    const double value = page.data[width * v + u];
                    sum += value;
                    squares += value * value;
                    ++count;
                }
            }
            const double m = sum / count;
            const double s = std::sqrt(squares / count - m * m);
            const int p = page.data[width * y + x];
            int threshold = 1;
            if (p <= 200 && m / (s + 1e-10) < 20.0) {
                threshold = static_cast<int>(m * k * 0.0078 * s + (1 - k) * m);
            }
            set += p < threshold ? 1 : 0;
            wrong += (p < threshold) != bit(output, x, y) ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(set, 1000);
}

TEST(OminBinarization, AnUnsureCharacterEstimateReachesFurtherScales) {
    const BasicImage page = page_with_boxes(1001, 800, 220, {{100, 100, 12, 16}});
    BasicImage output;
    OminBinarization weak(&page, &output);
    EXPECT_EQ(weak.obtain_rough_character_size(), 35);
    EXPECT_EQ(weak.estimated_character.output,
              OminBinarization::EstimatedCharacter::CHARACTER_FROM_HEIGHT);
    weak.estimated_character = OminBinarization::EstimatedCharacter(
        OminBinarization::EstimatedCharacter::CHARACTER_WEAK, 19);
    weak.run_binarization();
    EXPECT_EQ(weak.obtain_rough_character_size(), 25);
    EXPECT_EQ(weak.para.maximum_scale, 5);
    weak.run_binarization();  // the limits grow again
    EXPECT_EQ(weak.para.maximum_scale, 7);
    EXPECT_TRUE(bit(output, 105, 110));

    OminBinarization unknown(&page, &output);
    unknown.para.estimate_character_size = true;  // no estimator: the estimate stays as it was
    unknown.estimated_character.output = OminBinarization::EstimatedCharacter::CHARACTER_NOT_FOUND;
    unknown.run_binarization();
    EXPECT_EQ(unknown.para.maximum_scale, 5);
    EXPECT_EQ(unknown.obtain_rough_character_size(), 35);
}

TEST(OminBinarization, IsMethodOneOfTheEnginee) {
    const BasicImage page = page_with_boxes(1001, 800, 220, {{100, 100, 12, 16}, {500, 500, 8, 8}});
    BasicImage direct_output;
    OminBinarization direct(&page, &direct_output);
    direct.run_binarization();
    BasicImage output;
    geometric::BinarizationEnginee enginee(&page, &output, BinarizationOmin);
    ASSERT_EQ(enginee.perfomr_binarization(), 0);
    ASSERT_EQ(output.data_size, direct_output.data_size);
    EXPECT_EQ(std::memcmp(output.data, direct_output.data, output.data_size), 0);
    EXPECT_EQ(count_bits(output), 12 * 16 + 8 * 8);
}

}  // namespace
