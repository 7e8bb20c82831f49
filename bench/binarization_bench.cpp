// Binarization of a 300 dpi A4 page under uneven lighting: the streaming Sauvola method, Otsu
// and the textbook Sauvola, each beside its OpenCV counterpart when OpenCV is present.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>

#include "common/basic_image.h"
#include "geometric/binarization/otsu_binarization.h"
#include "geometric/binarization/sauvola_binarization.h"
#include "geometric/binarization/sauvola_binarization_original.h"

#ifdef QUORIMP_BENCH_WITH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef QUORIMP_BENCH_WITH_OPENCV_XIMGPROC
#include <opencv2/ximgproc.hpp>
#endif

namespace {

// A4 at 300 dots per inch.
constexpr int kWidth = 2480;
constexpr int kHeight = 3508;

class Lcg {
public:
    std::uint32_t next() {
        state = state * 1664525u + 1013904223u;
        return state >> 8;
    }
    int between(int low, int high) { return low + static_cast<int>(next() % (high - low + 1)); }

private:
    std::uint32_t state = 20240601u;
};

// Lines of text-like glyphs (vertical stems, bars and dots, 3 pixels thick, an x-height of 22
// pixels) under a lighting that falls from 240 at the top left to about 120 at the bottom right,
// with a darker band down the left side as from a book's fold, and noise of +-6.
common::BasicImage make_page() {
    common::BasicImage page(kHeight, kWidth, common::IMAGE_TYPE_GREY, 300, 300);
    std::vector<unsigned char> ink(static_cast<std::size_t>(kWidth) * kHeight, 0);
    Lcg random;
    auto fill = [&](int x0, int y0, int x1, int y1) {
        for (int y = std::max(0, y0); y < std::min(kHeight, y1); ++y) {
            std::fill(ink.begin() + static_cast<std::ptrdiff_t>(y) * kWidth + std::max(0, x0),
                      ink.begin() + static_cast<std::ptrdiff_t>(y) * kWidth + std::min(kWidth, x1),
                      1);
        }
    };
    for (int baseline = 260; baseline < kHeight - 220; baseline += 52) {
        int x = 220;
        while (x < kWidth - 260) {
            const int letters = random.between(2, 9);
            for (int i = 0; i < letters && x < kWidth - 260; ++i) {
                const int w = random.between(12, 22);
                const int top = baseline - 22 - (random.next() % 4 == 0 ? 12 : 0);
                fill(x, top, x + 3, baseline);
                if (random.next() % 2 == 0) {
                    fill(x + w - 3, baseline - 22, x + w, baseline);
                }
                if (random.next() % 3 != 0) {
                    fill(x, baseline - 22, x + w, baseline - 19);
                }
                if (random.next() % 3 == 0) {
                    fill(x, baseline - 3, x + w, baseline);
                }
                x += w + 4;
            }
            x += random.between(14, 22);
        }
    }
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            int light = 240 - (120 * (x + y)) / (kWidth + kHeight);
            if (x < 300) {
                light -= (300 - x) / 4;
            }
            const std::size_t i = static_cast<std::size_t>(y) * kWidth + x;
            const int value = (ink[i] ? light / 4 : light) + random.between(-6, 6);
            page.data[i] = static_cast<unsigned char>(std::min(255, std::max(0, value)));
        }
    }
    return page;
}

const common::BasicImage& page() {
    static const common::BasicImage image = make_page();
    return image;
}

void set_pixel_counters(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kWidth) * kHeight);
    state.counters["width"] = kWidth;
    state.counters["height"] = kHeight;
}

// The whole run of the frame: working copy, smoothing, engine and despeckling.
void BM_SauvolaEngine(benchmark::State& state) {
    common::BasicImage output;
    for (auto _ : state) {
        geometric::SauvolaBinarization sauvola(&page(), &output);
        sauvola.para.window_size = 35;
        sauvola.para.k = 0.2f;
        sauvola.run_binarization();
        benchmark::DoNotOptimize(output.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_SauvolaEngine)->Unit(benchmark::kMillisecond);

// The thresholding alone, as the OpenCV functions do it: no smoothing, no despeckling. Its output
// differs from the full run; it is here to show where the time goes.
void BM_SauvolaEngineThresholdOnly(benchmark::State& state) {
    common::BasicImage output;
    for (auto _ : state) {
        geometric::SauvolaBinarization sauvola(&page(), &output);
        sauvola.para.window_size = 35;
        sauvola.para.k = 0.2f;
        sauvola.para.use_smoothing = false;
        sauvola.despeckle_enabled = false;
        sauvola.run_binarization();
        benchmark::DoNotOptimize(output.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_SauvolaEngineThresholdOnly)->Unit(benchmark::kMillisecond);

void BM_Otsu(benchmark::State& state) {
    common::BasicImage output;
    for (auto _ : state) {
        geometric::OtsuBinarization otsu(&page(), &output);
        otsu.run_binarization();
        benchmark::DoNotOptimize(output.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_Otsu)->Unit(benchmark::kMillisecond);

// The textbook form chooses its own window: 51 on a page of this size.
void BM_SauvolaTextbook(benchmark::State& state) {
    common::BasicImage output;
    for (auto _ : state) {
        geometric::SauvolaBinarizationOriginal sauvola(&page(), &output);
        sauvola.k = 0.2;
        sauvola.run_binarization();
        benchmark::DoNotOptimize(output.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_SauvolaTextbook)->Unit(benchmark::kMillisecond);

#ifdef QUORIMP_BENCH_WITH_OPENCV

// OpenCV would spread its work over every core; the comparison is single-threaded.
const bool kOpenCvSingleThreaded = [] {
    cv::setNumThreads(1);
    return true;
}();

cv::Mat page_mat() {
    return cv::Mat(kHeight, kWidth, CV_8UC1, page().data);
}

void BM_OpenCV_ThresholdOtsu(benchmark::State& state) {
    const cv::Mat grey = page_mat();
    cv::Mat binary;
    for (auto _ : state) {
        cv::threshold(grey, binary, 0, 255, cv::THRESH_BINARY_INV | cv::THRESH_OTSU);
        benchmark::DoNotOptimize(binary.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_OpenCV_ThresholdOtsu)->Unit(benchmark::kMillisecond);

void BM_OpenCV_AdaptiveThresholdMean35(benchmark::State& state) {
    const cv::Mat grey = page_mat();
    cv::Mat binary;
    for (auto _ : state) {
        cv::adaptiveThreshold(grey, binary, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY_INV,
                              35, 10);
        benchmark::DoNotOptimize(binary.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_OpenCV_AdaptiveThresholdMean35)->Unit(benchmark::kMillisecond);

#endif

#ifdef QUORIMP_BENCH_WITH_OPENCV_XIMGPROC

void BM_OpenCV_XimgprocSauvola35(benchmark::State& state) {
    const cv::Mat grey = page_mat();
    cv::Mat binary;
    for (auto _ : state) {
        cv::ximgproc::niBlackThreshold(grey, binary, 255, cv::THRESH_BINARY_INV, 35, 0.2,
                                       cv::ximgproc::BINARIZATION_SAUVOLA);
        benchmark::DoNotOptimize(binary.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_OpenCV_XimgprocSauvola35)->Unit(benchmark::kMillisecond);

#endif

}  // namespace
