#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "geometric/binarization/image.h"
#include "geometric/binarization/local_statistics.h"
#include "geometric/binarization/sauvola_binarization_original.h"
#include "geometric/binarization/wolf_binarization_original.h"

namespace {

common::BasicImage random_page(int width, int height, unsigned int seed) {
    common::BasicImage page(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    std::mt19937 random(seed);
    for (std::uint32_t i = 0; i < page.data_size; ++i) {
        const int x = static_cast<int>(i) % width;
        page.data[i] = static_cast<unsigned char>(
            (x / 4) % 3 == 0 ? 30 + random() % 40 : 120 + (x * 100) / width + random() % 30);
    }
    return page;
}

// Mean and deviation of the box [x - W/2, x - W/2 + W) by [y - H/2, y - H/2 + H), cut at the
// border, summed pixel by pixel.
void box_statistics(const common::BasicImage& g, int x, int y, int W, int H, double& mean,
                    double& deviation) {
    double sum = 0, square = 0, count = 0;
    for (int r = std::max(0, y - H / 2); r < std::min(g.height, y - H / 2 + H); ++r) {
        for (int c = std::max(0, x - W / 2); c < std::min(g.width, x - W / 2 + W); ++c) {
            const double v = g.get_pixel(c, r);
            sum += v, square += v * v, count += 1;
        }
    }
    mean = sum / count;
    deviation = std::sqrt(square / count - mean * mean);
}

TEST(LocalStatistics, MatchesBoxSumsCutAtTheBorder) {
    const common::BasicImage page = random_page(23, 17, 5);
    geometric::Image<double> mean;
    geometric::Image<double> deviation(3, 3);
    geometric::calculate_local_mean_and_std(page, 7, 4, mean, deviation);
    ASSERT_EQ(mean.width, 23);
    ASSERT_EQ(deviation.height, 17);
    for (int y = 0; y < 17; ++y) {
        for (int x = 0; x < 23; ++x) {
            double m, s;
            box_statistics(page, x, y, 7, 4, m, s);
            ASSERT_EQ(mean.at(x, y), m) << x << "," << y;
            ASSERT_EQ(deviation.at(x, y), s) << x << "," << y;
        }
    }
}

// The threshold of (x, y) is computed at the nearest pixel where the whole window fits.
template <typename Threshold>
void expect_border_reuse(const common::BasicImage& page, const common::BasicImage& output, int W,
                         int H, Threshold threshold, const geometric::Image<double>* surface) {
    for (int y = 0; y < page.height; ++y) {
        for (int x = 0; x < page.width; ++x) {
            const int cx = std::min(std::max(x, W / 2), page.width - W / 2 - 1);
            const int cy = std::min(std::max(y, H / 2), page.height - H / 2 - 1);
            const double t = threshold(cx, cy);
            ASSERT_EQ(output.get_pixel(x, y), t > page.get_pixel(x, y) ? 1u : 0u) << x << "," << y;
            if (surface != nullptr) {
                ASSERT_EQ(surface->at(x, y), t);
            }
        }
    }
}

TEST(SauvolaBinarizationOriginal, WindowFromTheImageSizeAndItsThresholdSurface) {
    const struct {
        int width, height, window;
    } sizes[] = {{100, 100, 25}, {300, 96, 25}, {204, 204, 51}, {10, 40, 3}, {21, 60, 5}};
    for (const auto& size : sizes) {
        const common::BasicImage page = random_page(size.width, size.height, 7);
        common::BasicImage output;
        geometric::SauvolaBinarizationOriginal sauvola(&page, &output);
        sauvola.despeckle_enabled = false;
        sauvola.keep_threshold_surface = true;
        sauvola.k = 0.3;
        ASSERT_TRUE(sauvola.run_binarization());
        EXPECT_EQ(sauvola.window_width, size.window);
        EXPECT_EQ(sauvola.window_height, size.window);
        if (size.width > 100) {
            continue;  // the window is all that is checked on the larger pages
        }
        const int w = size.window;
        auto threshold = [&](int x, int y) {
            double m, s;
            box_statistics(page, x, y, w, w, m, s);
            return 0.3 * m * 0.0078 * s + (1 - 0.3) * m;
        };
        expect_border_reuse(page, output, w, w, threshold, sauvola.threshold_surface.get());
    }
}

TEST(WolfBinarizationOriginal, UsesTheDarkestValueAndTheLargestDeviation) {
    const common::BasicImage page = random_page(41, 33, 9);
    common::BasicImage output;
    geometric::WolfBinarizationOriginal wolf(&page, &output);
    wolf.despeckle_enabled = false;
    wolf.window_width = 9;
    wolf.window_height = 5;
    wolf.k = 0.5;
    ASSERT_TRUE(wolf.run_binarization());
    double largest = 0;
    int lowest = 255;
    for (int y = 0; y < 33; ++y) {
        for (int x = 0; x < 41; ++x) {
            double m, s;
            box_statistics(page, x, y, 9, 5, m, s);
            largest = std::max(largest, s);
            lowest = std::min(lowest, static_cast<int>(page.get_pixel(x, y)));
        }
    }
    auto threshold = [&](int x, int y) {
        double m, s;
        box_statistics(page, x, y, 9, 5, m, s);
        return (s / largest - 1) * 0.5 * (m - lowest) + m;
    };
    expect_border_reuse(page, output, 9, 5, threshold, nullptr);
}

}  // namespace
