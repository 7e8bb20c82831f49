// The corrector on a 12 megapixel photo of a page (4000 by 3000 RGB) with given corners: the
// rectification of the page, then both binarizations of the rectified page (about 7.7
// megapixels). Single thread. OpenCV's perspective warp runs beside the rectification when it is
// present.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "common/basic_image.h"
#include "quorimp/quorimp.h"

#ifdef QUORIMP_BENCH_WITH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

constexpr int kPhotoWidth = 4000;
constexpr int kPhotoHeight = 3000;
// The page in the photo, seen from slightly above its bottom edge: top left, top right, bottom
// right, bottom left.
const ControlPointCorners kCorners = {{430, 3610, 3700, 330}, {290, 350, 2760, 2690}};

class Lcg {
public:
    std::uint32_t next() {
        state = state * 1664525u + 1013904223u;
        return state >> 8;
    }
    int between(int low, int high) { return low + static_cast<int>(next() % (high - low + 1)); }

private:
    std::uint32_t state = 20240917u;
};

// Which side of the edge from (x0, y0) to (x1, y1) the point is on.
long long side(int x0, int y0, int x1, int y1, int x, int y) {
    return static_cast<long long>(x1 - x0) * (y - y0) - static_cast<long long>(y1 - y0) * (x - x0);
}

bool inside_page(int x, int y) {
    for (int i = 0; i < 4; ++i) {
        const int j = (i + 1) % 4;
        if (side(kCorners.x[i], kCorners.y[i], kCorners.x[j], kCorners.y[j], x, y) < 0) {
            return false;
        }
    }
    return true;
}

// A cream page with lines of glyph-like strokes (x-height 20 pixels, a few taller stems, a
// headline of thick strokes) under light that falls off to the right, on a dark brown desk with
// grain. Colour noise of +-5.
common::BasicImage make_photo() {
    const int width = kPhotoWidth;
    const int height = kPhotoHeight;
    std::vector<unsigned char> ink(static_cast<std::size_t>(width) * height, 0);
    Lcg random;
    auto fill = [&](int x0, int y0, int x1, int y1) {
        for (int y = std::max(0, y0); y < std::min(height, y1); ++y) {
            std::fill(ink.begin() + static_cast<std::ptrdiff_t>(y) * width + std::max(0, x0),
                      ink.begin() + static_cast<std::ptrdiff_t>(y) * width + std::min(width, x1),
                      1);
        }
    };
    for (int x = 700; x < 2600; x += 70) {  // headline
        fill(x, 470, x + 12, 560);
        fill(x, 470, x + 50, 482);
    }
    for (int baseline = 700; baseline < 2560; baseline += 48) {
        int x = 620;
        while (x < 3380) {
            const int letters = random.between(2, 9);
            for (int i = 0; i < letters && x < 3380; ++i) {
                const int w = random.between(11, 20);
                const int top = baseline - 20 - (random.next() % 4 == 0 ? 11 : 0);
                fill(x, top, x + 3, baseline);
                if (random.next() % 2 == 0) {
                    fill(x + w - 3, baseline - 20, x + w, baseline);
                }
                if (random.next() % 3 != 0) {
                    fill(x, baseline - 20, x + w, baseline - 17);
                }
                x += w + 4;
            }
            x += random.between(13, 21);
        }
    }
    common::BasicImage photo(height, width, common::IMAGE_TYPE_RGB, 300, 300);
    for (int y = 0; y < height; ++y) {
        unsigned char* row = photo.data + static_cast<std::size_t>(3) * width * y;
        for (int x = 0; x < width; ++x) {
            int rgb[3];
            if (inside_page(x, y)) {
                const int light = 235 - (70 * x) / width;
                const bool dark = ink[static_cast<std::size_t>(width) * y + x] != 0;
                rgb[0] = dark ? 40 : light;
                rgb[1] = dark ? 38 : light - 6;
                rgb[2] = dark ? 45 : light - 20;
            } else {
                const int grain = ((x / 7 + y / 3) % 11) * 3;
                rgb[0] = 70 + grain;
                rgb[1] = 48 + grain;
                rgb[2] = 30 + grain;
            }
            for (int c = 0; c < 3; ++c) {
                row[3 * x + c] = static_cast<unsigned char>(
                    std::min(255, std::max(0, rgb[c] + random.between(-5, 5))));
            }
        }
    }
    return photo;
}

common::BasicImage& photo() {
    static common::BasicImage image = make_photo();
    return image;
}

ImageCApi record_of(common::BasicImage& image) {
    int channels = 1;
    image.get_bytes_per_pixel(channels);
    ImageCApi record = {image.width, image.height,
                        0,           0,
                        channels,    image.image_type == common::IMAGE_TYPE_BINARY ? 1 : 0,
                        image.data};
    return record;
}

common::BasicImage make_corrected_page() {
    int width = 0;
    int height = 0;
    obtain_output_image_dimension(&kCorners, &width, &height);
    common::BasicImage page(height, width, common::IMAGE_TYPE_RGB, 300, 300);
    void* corrector = corrector_create();
    ImageCApi input = record_of(photo());
    ImageCApi output = record_of(page);
    obtain_corrected_image_given_corners(corrector, &input, &kCorners, &output);
    destroy_corrector(corrector);
    return page;
}

common::BasicImage& corrected_page() {
    static common::BasicImage image = make_corrected_page();
    return image;
}

void set_counters(benchmark::State& state, const common::BasicImage& image) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(image.width) * image.height);
    state.counters["width"] = image.width;
    state.counters["height"] = image.height;
}

// Handle, rectification into the caller's buffer with the automatic fill, and the handle's end.
void BM_CorrectorCorrectionGivenCorners(benchmark::State& state) {
    ImageCApi input = record_of(photo());
    common::BasicImage page(corrected_page().height, corrected_page().width, common::IMAGE_TYPE_RGB,
                            300, 300);
    ImageCApi output = record_of(page);
    for (auto _ : state) {
        void* corrector = corrector_create();
        obtain_corrected_image_given_corners(corrector, &input, &kCorners, &output);
        destroy_corrector(corrector);
        benchmark::DoNotOptimize(page.data);
    }
    set_counters(state, page);
}
BENCHMARK(BM_CorrectorCorrectionGivenCorners)->Unit(benchmark::kMillisecond);

void run_binarization(benchmark::State& state, int method) {
    common::BasicImage& page = corrected_page();
    ImageCApi input = record_of(page);
    common::BasicImage binary(page.height, page.width, common::IMAGE_TYPE_BINARY, 300, 300);
    ImageCApi output = record_of(binary);
    void* corrector = corrector_create();
    set_binarization_method(corrector, method);
    for (auto _ : state) {
        obtain_binarized_corrected_image(corrector, &input, &output);
        benchmark::DoNotOptimize(binary.data);
    }
    destroy_corrector(corrector);
    set_counters(state, page);
}

// Sauvola with the corrector's window of 35 and k of 0.1, from the RGB page.
void BM_CorrectorBinarizationSauvola(benchmark::State& state) {
    run_binarization(state, 0);
}
BENCHMARK(BM_CorrectorBinarizationSauvola)->Unit(benchmark::kMillisecond);

// The multi-scale method with k 0.1, from the RGB page.
void BM_CorrectorBinarizationOmin(benchmark::State& state) {
    run_binarization(state, 1);
}
BENCHMARK(BM_CorrectorBinarizationOmin)->Unit(benchmark::kMillisecond);

#ifdef QUORIMP_BENCH_WITH_OPENCV

const bool kOpenCvSingleThreaded = [] {
    cv::setNumThreads(1);
    return true;
}();

// The same page by a bilinear perspective warp with a constant border.
void BM_OpenCV_WarpPerspective(benchmark::State& state) {
    const cv::Mat source(kPhotoHeight, kPhotoWidth, CV_8UC3, photo().data);
    const int width = corrected_page().width;
    const int height = corrected_page().height;
    const cv::Point2f from[4] = {{430, 290}, {3610, 350}, {3700, 2760}, {330, 2690}};
    const cv::Point2f to[4] = {{0, 0},
                               {static_cast<float>(width - 1), 0},
                               {static_cast<float>(width - 1), static_cast<float>(height - 1)},
                               {0, static_cast<float>(height - 1)}};
    const cv::Mat matrix = cv::getPerspectiveTransform(from, to);
    cv::Mat page;
    for (auto _ : state) {
        cv::warpPerspective(source, page, matrix, cv::Size(width, height), cv::INTER_LINEAR,
                            cv::BORDER_CONSTANT, cv::Scalar(255, 255, 255));
        benchmark::DoNotOptimize(page.data);
    }
    set_counters(state, corrected_page());
}
BENCHMARK(BM_OpenCV_WarpPerspective)->Unit(benchmark::kMillisecond);

#endif

}  // namespace
