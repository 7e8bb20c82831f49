#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "geometric/binarization/geometricexception.h"
#include "geometric/binarization/sauvola_binarization.h"

namespace {

using geometric::SauvolaBinarization;
using geometric::SauvolaPara;

// A grey page with every kind of neighbourhood: a lighting gradient, a quiet region (small
// variance), a noisy one (middle variance), dark strokes (large variance), and a few pixels below
// the low and above the high grey limit.
common::BasicImage test_page(int width, int height, unsigned int seed) {
    common::BasicImage page(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> small_noise(-3, 3);
    std::uniform_int_distribution<int> large_noise(-40, 40);
    std::uniform_int_distribution<int> any_value(0, 255);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            int value = 90 + (100 * x) / width + (40 * y) / height;
            if (x < width / 3) {
                value += small_noise(random);
            } else if (x < 2 * width / 3) {
                value += large_noise(random);
            } else if ((x / 3 + y / 5) % 4 == 0) {
                value = 40 + small_noise(random) * 5;
            }
            if (random() % 50 == 0) {
                value = any_value(random);
            }
            page.data[static_cast<std::size_t>(width) * y + x] =
                static_cast<unsigned char>(std::min(255, std::max(0, value)));
        }
    }
    return page;
}

// The smoothing pre-pass written pixel by pixel from a copy of the original: inner pixels take
// the nine pixels of the rows (1, 1, 2) for row 1, (1, 2, 2) for row 2 and (y - 2, y - 1, y)
// below, all unsmoothed; the border columns read neighbours already smoothed above and to the
// left.
std::vector<int> reference_smoothing(const std::vector<int>& o, int w, int h, int q) {
    std::vector<int> s = o;
    auto O = [&](int x, int y) { return o[y * w + x]; };
    auto S = [&](int x, int y) -> int& { return s[y * w + x]; };
    auto row_sum = [&](int x, int y) { return O(x - 1, y) + O(x, y) + O(x + 1, y); };
    S(0, 0) = (3 * O(0, 0) + O(1, 0) + O(0, 1) + O(1, 1)) / 6;
    for (int x = 1; x < w - 1; ++x) {
        S(x, 0) = (4 * O(x, 0) + row_sum(x, 0) + row_sum(x, 1)) / 10;
    }
    S(w - 1, 0) = (3 * O(w - 1, 0) + O(w - 2, 1) + S(w - 2, 0) + O(w - 1, 1)) / 6;
    for (int y = 1; y < h - 1; ++y) {
        int rows[3] = {y - 2, y - 1, y};
        if (y == 1) {
            rows[0] = 1, rows[1] = 1, rows[2] = 2;
        } else if (y == 2) {
            rows[0] = 1, rows[1] = 2, rows[2] = 2;
        }
        S(0, y) =
            (5 * O(0, y) + O(1, y + 1) + S(1, y - 1) + O(1, y) + S(0, y - 1) + O(0, y + 1)) / 10;
        for (int x = 1; x < w - 1; ++x) {
            S(x, y) =
                (q * O(x, y) + row_sum(x, rows[0]) + row_sum(x, rows[1]) + row_sum(x, rows[2])) /
                (9 + q);
        }
        S(w - 1, y) = (5 * O(w - 1, y) + O(w - 2, y + 1) + S(w - 2, y - 1) + S(w - 2, y) +
                       S(w - 1, y - 1) + O(w - 1, y + 1)) /
                      10;
    }
    return s;
}

// sqrt(v) truncated to three decimals, by an integer square root of v * 10^6.
float truncated_root(std::uint64_t v_times_million) {
    auto r = static_cast<std::uint64_t>(std::sqrt(static_cast<double>(v_times_million)));
    while (r * r > v_times_million) {
        --r;
    }
    while ((r + 1) * (r + 1) <= v_times_million) {
        ++r;
    }
    return static_cast<float>(r) / 1000.0f;
}

float table_root(float variance) {
    if (variance <= 100) {
        const int i = std::max(0, static_cast<int>(variance * 10));
        return truncated_root(static_cast<std::uint64_t>(i) * 100000);
    }
    if (variance <= 1000) {
        const int i = static_cast<int>((variance - 100) * 0.5);
        return truncated_root(static_cast<std::uint64_t>(100 + 2 * i) * 1000000);
    }
    const int i = std::min(1539, static_cast<int>((variance - 1000) / 10 + 0.5));
    return std::min(128.0f, truncated_root(static_cast<std::uint64_t>(1000 + 10 * i) * 1000000));
}

// The streaming engine written as a plain per-pixel loop: for every pixel the window of its zone
// is summed directly, pixel by pixel. `rows` are [first, last] and so are `columns`.
// Only every `sample`-th pixel is computed on large pages; the others are left at -1.
std::vector<int> reference_sauvola(const std::vector<int>& g, int w, int h, SauvolaPara para,
                                   int sample = 1) {
    const int n = std::min(w, h);
    int window = para.window_size;
    if (11 * window > n) {
        window = std::max(2, n / 11);
    }
    int ring = para.use_wide_ring ? 4 * window : window;
    if (para.use_wide_ring && 2 * ring > n) {
        ring = window;
    }
    const int half = window / 2;
    const int zone = ring / 2;
    std::vector<int> marks(static_cast<std::size_t>(w) * h, -1);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            if ((y * w + x) % sample != 0) {
                continue;
            }
            const int p = g[y * w + x];
            if (p < para.low_gray || p > para.high_gray) {
                marks[y * w + x] = p < para.low_gray;
                continue;
            }
            int r0, r1, c0, c1, divisor;
            bool centre = false;
            if (y < zone || y >= h - zone - 1) {
                r0 = std::max(y - half, 0) + 1;
                r1 = std::min(y + half, h - 1);
                c0 = std::max(x - half, 0) + 1;
                c1 = std::min(x + half, w - 1);
                divisor = (c1 - c0 + 1) * (r1 - r0 + 1);
            } else if (x < zone) {
                r0 = y - half + 1, r1 = y + half, c0 = 1, c1 = x + half;
                divisor = (x + half) * window;
            } else if (x < w - zone) {
                r0 = y - half + 1, r1 = y - half + window;
                c0 = x - half + 1, c1 = x - half + window;
                divisor = window * window;
                centre = true;
            } else {
                r0 = y - half + 1, r1 = y + half, c0 = x, c1 = w - 1;
                divisor = (w - x) * window;
            }
            std::int64_t sum = 0;
            std::int64_t square = 0;
            for (int r = r0; r <= r1; ++r) {
                for (int c = c0; c <= c1; ++c) {
                    sum += g[r * w + c];
                    square += g[r * w + c] * g[r * w + c];
                }
            }
            const float mean = static_cast<float>(sum) / static_cast<float>(divisor);
            const float mean_square = static_cast<float>(square) / static_cast<float>(divisor);
            const float variance = mean_square - mean * mean;
            const float s = centre ? std::sqrt(std::fabs(variance)) : table_root(variance);
            const float k = para.k;
            const int threshold = static_cast<int>((s * (k / 128) + (1 - k)) * mean);
            marks[y * w + x] = p <= threshold;
        }
    }
    return marks;
}

std::vector<int> grey_values(const common::BasicImage& image) {
    return std::vector<int>(image.data, image.data + image.data_size);
}

std::vector<int> bits_of(const common::BasicImage& image) {
    std::vector<int> bits;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            bits.push_back(static_cast<int>(image.get_pixel(x, y)));
        }
    }
    return bits;
}

// Runs the engine without despeckling, so that its own decisions are compared.
common::BasicImage run_engine(const common::BasicImage& page, const SauvolaPara& para,
                              std::vector<int>* smoothed = nullptr) {
    common::BasicImage output;
    SauvolaBinarization sauvola(&page, &output);
    sauvola.para = para;
    sauvola.despeckle_enabled = false;
    EXPECT_TRUE(sauvola.run_binarization());
    if (smoothed != nullptr) {
        common::BasicImage* grey = nullptr;
        sauvola.obtain_grayscale_img(&grey);
        *smoothed = grey_values(*grey);
    }
    EXPECT_EQ(sauvola.para.window_size, para.window_size);  // the clamp works on a copy
    return output;
}

// Differences where `expected` holds a value.
int count_differences(const std::vector<int>& actual, const std::vector<int>& expected) {
    int differences = 0;
    for (std::size_t i = 0; i < actual.size(); ++i) {
        differences += expected[i] != -1 && actual[i] != expected[i];
    }
    return differences;
}

struct EngineCase {
    int width;
    int height;
    int window;
    bool wide_ring;
    bool smoothing;
    int weight;
};

// Every zone of the engine (margins cut at the border, margin columns reaching to the border,
// the full window of the centre), odd and even windows, both rings and the smoothing weights.
TEST(SauvolaEngine, MatchesAPlainPerPixelComputationInEveryZone) {
    const EngineCase cases[] = {
        {61, 57, 5, true, false, 2},   {73, 66, 6, true, false, 2}, {61, 57, 5, true, true, 2},
        {70, 67, 6, false, true, 0},   {45, 80, 4, false, true, 7}, {15, 40, 35, true, true, 2},
        {40, 300, 35, true, true, 2},  {33, 33, 3, true, true, 2},  {47, 50, 4, true, true, 20},
        {47, 50, 4, true, true, 5000},
    };
    unsigned int seed = 1;
    for (const EngineCase& c : cases) {
        SCOPED_TRACE(std::to_string(c.width) + "x" + std::to_string(c.height) + " window " +
                     std::to_string(c.window));
        const common::BasicImage page = test_page(c.width, c.height, seed++);
        SauvolaPara para;
        para.window_size = c.window;
        para.use_wide_ring = c.wide_ring;
        para.use_smoothing = c.smoothing;
        para.smoothing_weight = c.weight;
        para.k = 0.3f;
        std::vector<int> smoothed;
        const common::BasicImage output = run_engine(page, para, &smoothed);

        std::vector<int> grey = grey_values(page);
        if (c.smoothing) {
            grey = reference_smoothing(grey, c.width, c.height, c.weight);
        }
        EXPECT_EQ(count_differences(smoothed, grey), 0);
        const std::vector<int> expected = reference_sauvola(grey, c.width, c.height, para);
        const std::vector<int> actual = bits_of(output);
        EXPECT_EQ(count_differences(actual, expected), 0);
        // Not a trivial page: both classes occur.
        EXPECT_GT(std::count(actual.begin(), actual.end(), 1), c.width * c.height / 50);
        EXPECT_GT(std::count(actual.begin(), actual.end(), 0), c.width * c.height / 50);
    }
}

TEST(SauvolaEngine, WindowIsClampedOnlyWhenElevenWindowsDoNotFit) {
    SauvolaPara para;
    para.use_smoothing = false;
    // 385 = 11 * 35: no clamp. Compared with the plain computation at window 35.
    const common::BasicImage square_page = test_page(385, 385, 11);
    EXPECT_EQ(count_differences(bits_of(run_engine(square_page, para)),
                                reference_sauvola(grey_values(square_page), 385, 385, para)),
              0);
    // 200 by 3000 gets a window of 200 / 11 = 18: the same output as asking for 18.
    const common::BasicImage strip = test_page(200, 3000, 12);
    SauvolaPara eighteen = para;
    eighteen.window_size = 18;
    EXPECT_EQ(bits_of(run_engine(strip, para)), bits_of(run_engine(strip, eighteen)));
    SauvolaPara seventeen = para;
    seventeen.window_size = 17;
    EXPECT_NE(bits_of(run_engine(strip, para)), bits_of(run_engine(strip, seventeen)));
}

// A window of 117 on a page of 1290 rows: the window sums of the wide margins can pass 2^31,
// and the engine keeps its integral rows in 64 bits.
TEST(SauvolaEngine, LargeWindowsMatchOnASampleOfPixels) {
    const common::BasicImage page = test_page(1300, 1290, 21);
    SauvolaPara para;
    para.window_size = 117;
    para.use_smoothing = false;
    const std::vector<int> expected = reference_sauvola(grey_values(page), 1300, 1290, para, 127);
    EXPECT_EQ(count_differences(bits_of(run_engine(page, para)), expected), 0);
}

TEST(SauvolaEngine, GreyBandAndWhitePage) {
    common::BasicImage page(40, 40, common::IMAGE_TYPE_GREY, 300, 300);
    SauvolaPara para;
    para.use_smoothing = false;
    std::fill(page.data, page.data + page.data_size, 201);
    std::vector<int> bits = bits_of(run_engine(page, para));
    EXPECT_EQ(std::count(bits.begin(), bits.end(), 1), 0);
    // 49 is foreground on any background, 201 never, even alone on a black page.
    std::fill(page.data, page.data + page.data_size, 255);
    page.data[20 * 40 + 20] = 49;
    bits = bits_of(run_engine(page, para));
    EXPECT_EQ(std::count(bits.begin(), bits.end(), 1), 1);
    EXPECT_EQ(bits[20 * 40 + 20], 1);
    std::fill(page.data, page.data + page.data_size, 0);
    page.data[20 * 40 + 20] = 201;
    bits = bits_of(run_engine(page, para));
    EXPECT_EQ(bits[20 * 40 + 20], 0);
    // 50 and 200 go through the threshold: on a uniform page T = trunc((1 - k) * p) < p.
    for (int value : {50, 200}) {
        std::fill(page.data, page.data + page.data_size, value);
        bits = bits_of(run_engine(page, para));
        EXPECT_EQ(std::count(bits.begin(), bits.end(), 1), 0) << value;
    }
}

std::string engine_error(int width, int height, const SauvolaPara& para) {
    const common::BasicImage page(height, width, common::IMAGE_TYPE_GREY, 300, 300);
    common::BasicImage output;
    SauvolaBinarization sauvola(&page, &output);
    sauvola.para = para;
    try {
        sauvola.run_binarization();
    } catch (const geometric::Geometricexception& error) {
        return error.what();
    }
    return "";
}

TEST(SauvolaEngine, RingFallbackAndRefusals) {
    const SauvolaPara para;
    // A smaller side of 15 loses the wide ring and still runs; 16 keeps it.
    EXPECT_EQ(engine_error(15, 100, para), "");
    EXPECT_EQ(engine_error(4, 100, para), "");
    EXPECT_EQ(engine_error(100, 3, para), "The window size is too large");
    EXPECT_EQ(engine_error(0, 0, para), "The window size is too large");
    SauvolaPara narrow = para;
    narrow.use_wide_ring = false;
    EXPECT_EQ(engine_error(3, 3, narrow), "");
    EXPECT_EQ(engine_error(2, 50, narrow), "The window size is too large");
    SauvolaPara negative = para;
    negative.smoothing_weight = -1;
    EXPECT_EQ(engine_error(50, 50, negative), "Wrong weighting parameter for smoothing");
}

}  // namespace
