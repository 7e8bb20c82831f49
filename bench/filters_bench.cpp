// Box means, the weighted 3 by 3 filter and Canny edges on a page-sized grey image, each beside
// its OpenCV counterpart when OpenCV is present.

#include <benchmark/benchmark.h>

#include <cstdint>

#include "common/basic_image.h"
#include "geometric/operators/average_filtering.h"
#include "geometric/operators/canny_edge_detector.h"
#include "geometric/operators/weighted_filtering.h"

#ifdef QUORIMP_BENCH_WITH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

// A downsampled page, the size the boundary searches work on.
constexpr int kWidth = 1500;
constexpr int kHeight = 1100;

// Smooth shading with noise, so that edges exist but are not everywhere.
common::BasicImage page_image() {
    common::BasicImage image(kHeight, kWidth, common::IMAGE_TYPE_GREY, 300, 300);
    std::uint32_t state = 12345u;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            state = state * 1664525u + 1013904223u;
            const bool page = x > 200 && x < 1300 && y > 150 && y < 950;
            image.get_row(y)[x] = static_cast<unsigned char>((page ? 190 : 60) + (state >> 28));
        }
    }
    return image;
}

void set_pixel_counters(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kWidth) * kHeight);
    state.counters["width"] = kWidth;
    state.counters["height"] = kHeight;
}

void BM_BoxMeanColumnSums(benchmark::State& state) {
    const common::BasicImage input = page_image();
    common::BasicImage output;
    const int kernel = static_cast<int>(state.range(0));
    for (auto _ : state) {
        geometric::AverageFiltering::use_opencv_algorithm(input, output, kernel, kernel);
        benchmark::DoNotOptimize(output.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_BoxMeanColumnSums)->Arg(5)->Arg(77)->Unit(benchmark::kMillisecond);

void BM_BoxMeanIntegralRing(benchmark::State& state) {
    const common::BasicImage input = page_image();
    common::BasicImage output;
    const int kernel = static_cast<int>(state.range(0));
    for (auto _ : state) {
        geometric::AverageFiltering::use_summed_area_table(input, output, kernel, kernel);
        benchmark::DoNotOptimize(output.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_BoxMeanIntegralRing)->Arg(5)->Arg(77)->Unit(benchmark::kMillisecond);

void BM_WeightedFilter3x3(benchmark::State& state) {
    const common::BasicImage input = page_image();
    common::BasicImage output;
    for (auto _ : state) {
        geometric::WeightedFiltering::perform_filtering_3_by_3(input, output, 4);
        benchmark::DoNotOptimize(output.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_WeightedFilter3x3)->Unit(benchmark::kMillisecond);

void BM_CannyEdges(benchmark::State& state) {
    const common::BasicImage input = page_image();
    for (auto _ : state) {
        common::BasicImage edges;
        geometric::CannyEdgeDetector::perform_edge_detect(20, 60, input, edges);
        benchmark::DoNotOptimize(edges.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_CannyEdges)->Unit(benchmark::kMillisecond);

#ifdef QUORIMP_BENCH_WITH_OPENCV
void BM_OpenCvBlur(benchmark::State& state) {
    common::BasicImage input = page_image();
    const cv::Mat source(kHeight, kWidth, CV_8UC1, input.data);
    cv::Mat target;
    const int kernel = static_cast<int>(state.range(0));
    for (auto _ : state) {
        cv::blur(source, target, cv::Size(kernel, kernel), cv::Point(-1, -1),
                 cv::BORDER_REFLECT_101);
        benchmark::DoNotOptimize(target.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_OpenCvBlur)->Arg(5)->Arg(77)->Unit(benchmark::kMillisecond);

void BM_OpenCvCanny(benchmark::State& state) {
    common::BasicImage input = page_image();
    const cv::Mat source(kHeight, kWidth, CV_8UC1, input.data);
    cv::Mat edges;
    for (auto _ : state) {
        cv::Canny(source, edges, 80, 240);
        benchmark::DoNotOptimize(edges.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_OpenCvCanny)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
