// Pixel conversions of the image model and the four-point projective solver, each beside its
// OpenCV counterpart when OpenCV is present.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "common/basic_image.h"
#include "geometric/rectification/projective_matrix_estimator.h"

#ifdef QUORIMP_BENCH_WITH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

// A 12-megapixel page, the size of a phone photo.
constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

void fill_noise(unsigned char* bytes, std::size_t count) {
    std::uint32_t state = 12345u;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes[i] = static_cast<unsigned char>(state >> 24);
    }
}

common::BasicImage noise_image(common::ImageType type) {
    common::BasicImage image(kHeight, kWidth, type, 300, 300);
    fill_noise(image.data, image.data_size);
    return image;
}

void set_pixel_counters(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kWidth) * kHeight);
    state.counters["width"] = kWidth;
    state.counters["height"] = kHeight;
}

void BM_RgbToGreyWeighted(benchmark::State& state) {
    const common::BasicImage rgb = noise_image(common::IMAGE_TYPE_RGB);
    common::BasicImage grey;
    for (auto _ : state) {
        grey.to_grey_from(rgb, true);
        benchmark::DoNotOptimize(grey.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_RgbToGreyWeighted)->Unit(benchmark::kMillisecond);

void BM_ThresholdToBinary(benchmark::State& state) {
    const common::BasicImage grey = noise_image(common::IMAGE_TYPE_GREY);
    for (auto _ : state) {
        state.PauseTiming();
        common::BasicImage work(grey);
        state.ResumeTiming();
        work.threshold_to_binary_in_place(128);
        benchmark::DoNotOptimize(work.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_ThresholdToBinary)->Unit(benchmark::kMillisecond);

void BM_BinaryToGrey(benchmark::State& state) {
    const common::BasicImage binary = noise_image(common::IMAGE_TYPE_BINARY);
    for (auto _ : state) {
        state.PauseTiming();
        common::BasicImage work(binary);
        state.ResumeTiming();
        work.binary_to_grey_in_place();
        benchmark::DoNotOptimize(work.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_BinaryToGrey)->Unit(benchmark::kMillisecond);

void BM_EstimateProjectiveMatrix(benchmark::State& state) {
    const std::vector<geometric::Geocoordinate<float>> page = {
        {0.0f, 0.0f}, {1705.0f, 0.0f}, {1705.0f, 2207.0f}, {0.0f, 2207.0f}};
    const std::vector<geometric::Geocoordinate<float>> photo = {
        {955.2f, 146.2f}, {1518.5f, 158.6f}, {1470.9f, 952.4f}, {847.9f, 877.4f}};
    geometric::ProjectiveMatrixEstimator estimator(1600, 1200);
    geometric::ProjectiveMatrix matrix;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            estimator.estimate_matrix_via_correponding_points(photo, page, matrix));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_EstimateProjectiveMatrix);

#ifdef QUORIMP_BENCH_WITH_OPENCV

// OpenCV would spread its work over every core; the comparison is single-threaded.
const bool kOpenCvSingleThreaded = [] {
    cv::setNumThreads(1);
    return true;
}();

void BM_OpenCV_RgbToGrey(benchmark::State& state) {
    cv::Mat rgb(kHeight, kWidth, CV_8UC3);
    fill_noise(rgb.data, rgb.total() * rgb.elemSize());
    cv::Mat grey;
    for (auto _ : state) {
        cv::cvtColor(rgb, grey, cv::COLOR_RGB2GRAY);
        benchmark::DoNotOptimize(grey.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_OpenCV_RgbToGrey)->Unit(benchmark::kMillisecond);

void BM_OpenCV_Threshold(benchmark::State& state) {
    cv::Mat grey(kHeight, kWidth, CV_8UC1);
    fill_noise(grey.data, grey.total());
    cv::Mat binary;
    for (auto _ : state) {
        cv::threshold(grey, binary, 128, 255, cv::THRESH_BINARY_INV);
        benchmark::DoNotOptimize(binary.data);
    }
    set_pixel_counters(state);
}
BENCHMARK(BM_OpenCV_Threshold)->Unit(benchmark::kMillisecond);

void BM_OpenCV_PerspectiveTransform(benchmark::State& state) {
    const cv::Point2f page[4] = {
        {0.0f, 0.0f}, {1705.0f, 0.0f}, {1705.0f, 2207.0f}, {0.0f, 2207.0f}};
    const cv::Point2f photo[4] = {
        {955.2f, 146.2f}, {1518.5f, 158.6f}, {1470.9f, 952.4f}, {847.9f, 877.4f}};
    for (auto _ : state) {
        cv::Mat forward = cv::getPerspectiveTransform(page, photo);
        cv::Mat inverse = forward.inv();
        benchmark::DoNotOptimize(inverse.data);
    }
}
BENCHMARK(BM_OpenCV_PerspectiveTransform);

#endif

}  // namespace
