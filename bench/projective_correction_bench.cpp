// Rectification of a 12-megapixel photo (4000 by 3000) to a page of about 7.7 megapixels (3201 by
// 2396) from four corners of a perspective quadrilateral, RGB and grey, single thread; beside it
// OpenCV's warpPerspective with the same mapping, bilinear.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "quorimp/quorimp.h"

#ifdef QUORIMP_BENCH_WITH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

constexpr int kPhotoWidth = 4000;
constexpr int kPhotoHeight = 3000;

// Top left, top right, bottom right, bottom left: a page seen slightly from the left and above.
const ControlPointCorners kCorners = {{420, 3620, 3580, 380}, {310, 360, 2700, 2760}};

// A page-like photo: a smooth background, dark strokes in text lines, and a little noise, the same
// on every run.
std::vector<unsigned char> synthetic_photo(int channels) {
    std::vector<unsigned char> pixels(static_cast<std::size_t>(kPhotoWidth) * kPhotoHeight *
                                      channels);
    std::uint32_t state = 2024u;
    std::size_t i = 0;
    for (int y = 0; y < kPhotoHeight; ++y) {
        const bool text_line = (y / 24) % 2 == 1;
        for (int x = 0; x < kPhotoWidth; ++x) {
            state = state * 1664525u + 1013904223u;
            const int noise = static_cast<int>(state >> 28);
            const bool stroke = text_line && ((x * 7 + y * 3) / 11) % 5 == 0;
            const int background = 150 + (x + y) / 70;
            for (int c = 0; c < channels; ++c) {
                pixels[i++] = static_cast<unsigned char>(stroke ? 20 + noise + 5 * c
                                                                : background - 9 * c + noise);
            }
        }
    }
    return pixels;
}

void set_counters(benchmark::State& state, int width, int height) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(width) * height);
    state.counters["width"] = width;
    state.counters["height"] = height;
}

void run_quorimp(benchmark::State& state, int channels) {
    std::vector<unsigned char> photo = synthetic_photo(channels);
    int width = 0;
    int height = 0;
    obtain_output_image_dimension(&kCorners, &width, &height);
    std::vector<unsigned char> page(static_cast<std::size_t>(width) * height * channels);
    const ImageCApi input{kPhotoWidth, kPhotoHeight, 300, 300, channels, 0, photo.data()};
    ImageCApi output{width, height, 300, 300, channels, 0, page.data()};
    for (auto _ : state) {
        perform_projective_correction(&kCorners, &input, &output);
        benchmark::DoNotOptimize(page.data());
        benchmark::ClobberMemory();
    }
    set_counters(state, width, height);
}

void BM_ProjectiveCorrectionRgb(benchmark::State& state) {
    run_quorimp(state, 3);
}
BENCHMARK(BM_ProjectiveCorrectionRgb)->Unit(benchmark::kMillisecond);

void BM_ProjectiveCorrectionGrey(benchmark::State& state) {
    run_quorimp(state, 1);
}
BENCHMARK(BM_ProjectiveCorrectionGrey)->Unit(benchmark::kMillisecond);

#ifdef QUORIMP_BENCH_WITH_OPENCV

const bool kOpenCvSingleThreaded = [] {
    cv::setNumThreads(1);
    return true;
}();

// The mapping of output pixel (i, j) to the photo, as a 3 by 3 matrix: the unit square onto the
// corners, with u = i / width and v = j / height.
cv::Matx33d page_to_photo(int width, int height) {
    const float x0 = kCorners.x[0], x1 = kCorners.x[1], x2 = kCorners.x[2], x3 = kCorners.x[3];
    const float y0 = kCorners.y[0], y1 = kCorners.y[1], y2 = kCorners.y[2], y3 = kCorners.y[3];
    const double sx = (x2 - x3) + (x0 - x1);
    const double sy = (y2 - y3) + (y0 - y1);
    const double dx1 = x1 - x2, dx2 = x3 - x2, dy1 = y1 - y2, dy2 = y3 - y2;
    const double den = dx1 * dy2 - dy1 * dx2;
    const double g = (sx * dy2 - sy * dx2) / den;
    const double h = (sy * dx1 - sx * dy1) / den;
    const double a = x1 * g + (x1 - x0), b = x3 * h + (x3 - x0);
    const double d = y1 * g + (y1 - y0), e = y3 * h + (y3 - y0);
    return cv::Matx33d(a / width, b / height, x0, d / width, e / height, y0, g / width, h / height,
                       1.0);
}

void run_opencv(benchmark::State& state, int channels) {
    std::vector<unsigned char> pixels = synthetic_photo(channels);
    const cv::Mat photo(kPhotoHeight, kPhotoWidth, CV_8UC(channels), pixels.data());
    int width = 0;
    int height = 0;
    obtain_output_image_dimension(&kCorners, &width, &height);
    const cv::Matx33d mapping = page_to_photo(width, height);
    cv::Mat page(height, width, CV_8UC(channels));
    for (auto _ : state) {
        cv::warpPerspective(photo, page, mapping, page.size(),
                            cv::INTER_LINEAR | cv::WARP_INVERSE_MAP, cv::BORDER_CONSTANT,
                            cv::Scalar::all(255));
        benchmark::DoNotOptimize(page.data);
        benchmark::ClobberMemory();
    }
    set_counters(state, width, height);
}

void BM_OpenCV_WarpPerspectiveRgb(benchmark::State& state) {
    run_opencv(state, 3);
}
BENCHMARK(BM_OpenCV_WarpPerspectiveRgb)->Unit(benchmark::kMillisecond);

void BM_OpenCV_WarpPerspectiveGrey(benchmark::State& state) {
    run_opencv(state, 1);
}
BENCHMARK(BM_OpenCV_WarpPerspectiveGrey)->Unit(benchmark::kMillisecond);

#endif

}  // namespace
