// Connected components of a synthetic text page through the C interface, beside OpenCV's
// labelling on the same page when OpenCV is present.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "quorimp/quorimp.h"

#ifdef QUORIMP_BENCH_WITH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

// An A4 page at 300 dpi.
constexpr int kWidth = 2480;
constexpr int kHeight = 3508;

// A binary page of text-like blobs in the size of 11 pt type at 300 dpi: one-inch margins, lines
// 55 pixels apart, glyphs of x-height 23 and stroke width 3 with ascenders, descenders, dots,
// 4-pixel letter gaps and 14-pixel word gaps. The glyph shapes come from a fixed-seed generator,
// so the page is the same on every run.
class TextPage {
public:
    TextPage()
        : stride_((kWidth + 31) / 32 * 4), bits_(static_cast<std::size_t>(stride_) * kHeight) {
        for (int baseline = 300 + 40; baseline < kHeight - 300; baseline += 55) {
            int x = 300;
            while (x < kWidth - 300 - 40) {
                const int letters = 2 + static_cast<int>(next() % 8);
                for (int i = 0; i < letters && x < kWidth - 300 - 40; ++i) {
                    x += glyph(x, baseline) + 4;
                }
                x += 14;
            }
        }
    }

    ImageCApi binary() {
        ImageCApi image = {kWidth, kHeight, 300, 300, 1, 1, bits_.data()};
        return image;
    }

    std::vector<unsigned char> as_bytes() const {
        std::vector<unsigned char> bytes(static_cast<std::size_t>(kWidth) * kHeight);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const unsigned char byte = bits_[static_cast<std::size_t>(y) * stride_ + x / 8];
                bytes[static_cast<std::size_t>(y) * kWidth + x] =
                    ((byte >> (7 - x % 8)) & 1) ? 255 : 0;
            }
        }
        return bytes;
    }

private:
    std::uint32_t next() {
        state_ = state_ * 1664525u + 1013904223u;
        return state_ >> 8;
    }

    void set(int x, int y) {
        bits_[static_cast<std::size_t>(y) * stride_ + x / 8] |=
            static_cast<unsigned char>(0x80u >> (x % 8));
    }

    void bar(int x0, int y0, int x1, int y1) {
        for (int y = y0; y <= y1; ++y) {
            for (int x = x0; x <= x1; ++x) {
                set(x, y);
            }
        }
    }

    // An elliptic ring centred at (cx, cy), optionally open on the right like a 'c'.
    void ring(int cx, int cy, int rx, int ry, bool open_right) {
        for (int y = cy - ry; y <= cy + ry; ++y) {
            for (int x = cx - rx; x <= cx + rx; ++x) {
                const double dx = static_cast<double>(x - cx) / rx;
                const double dy = static_cast<double>(y - cy) / ry;
                const double inner_dx = static_cast<double>(x - cx) / (rx - 3);
                const double inner_dy = static_cast<double>(y - cy) / (ry - 3);
                const bool outside_inner = inner_dx * inner_dx + inner_dy * inner_dy > 1.0;
                if (dx * dx + dy * dy <= 1.0 && outside_inner &&
                    !(open_right && x > cx + rx / 3 && y > cy - ry / 3 && y < cy + ry / 3)) {
                    set(x, y);
                }
            }
        }
    }

    void diagonal(int x0, int y0, int x1, int y1) {
        const int steps = y1 - y0;
        for (int i = 0; i <= steps; ++i) {
            const int x = x0 + (x1 - x0) * i / steps;
            bar(x, y0 + i, x + 2, y0 + i);
        }
    }

    // Draws one glyph with its left edge at x on `baseline`; returns its width.
    int glyph(int x, int baseline) {
        const int top = baseline - 23;
        switch (next() % 8) {
            case 0:  // o
                ring(x + 9, baseline - 11, 9, 11, false);
                return 19;
            case 1:  // c, e
                ring(x + 8, baseline - 11, 8, 11, true);
                return 17;
            case 2:  // l, t with an ascender
                bar(x, top - 12, x + 2, baseline);
                return 3;
            case 3:  // i: a stem and a dot
                bar(x, top, x + 2, baseline);
                bar(x, top - 9, x + 2, top - 6);
                return 3;
            case 4:  // n: two stems under an arch
                bar(x, top, x + 2, baseline);
                bar(x + 13, top + 5, x + 15, baseline);
                ring(x + 8, top + 7, 7, 7, false);
                return 16;
            case 5:  // v
                diagonal(x, top, x + 8, baseline);
                diagonal(x + 16, top, x + 8, baseline);
                return 19;
            case 6:  // p with a descender
                bar(x, top, x + 2, baseline + 11);
                ring(x + 9, baseline - 11, 8, 11, false);
                return 18;
            default:  // x
                diagonal(x, top, x + 14, baseline);
                diagonal(x + 14, top, x, baseline);
                return 17;
        }
    }

    int stride_;
    std::vector<unsigned char> bits_;
    std::uint32_t state_ = 2024u;
};

TextPage& page() {
    static TextPage text_page;
    return text_page;
}

void set_page_counters(benchmark::State& state, int components) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kWidth) * kHeight);
    state.counters["width"] = kWidth;
    state.counters["height"] = kHeight;
    state.counters["components"] = components;
}

// One labelling pass on a fresh calculator, which is the only way to label an image anew.
void BM_BlobFormulation(benchmark::State& state) {
    ImageCApi image = page().binary();
    int components = 0;
    for (auto _ : state) {
        void* calculator = create_blob_calculator();
        components = perform_blob_formulation(calculator, &image);
        delete_blob_calculator(calculator);
    }
    set_page_counters(state, components);
}
BENCHMARK(BM_BlobFormulation)->Unit(benchmark::kMillisecond);

// The pass and the label image, written into a buffer the caller keeps.
void BM_BlobLabelImage(benchmark::State& state) {
    ImageCApi image = page().binary();
    std::vector<int> labels(static_cast<std::size_t>(kWidth) * kHeight);
    for (auto _ : state) {
        void* calculator = create_blob_calculator();
        calculate_label_image(calculator, &image, labels.data(), 0);
        delete_blob_calculator(calculator);
        benchmark::DoNotOptimize(labels.data());
    }
    void* calculator = create_blob_calculator();
    set_page_counters(state, perform_blob_formulation(calculator, &image));
    delete_blob_calculator(calculator);
}
BENCHMARK(BM_BlobLabelImage)->Unit(benchmark::kMillisecond);

#ifdef QUORIMP_BENCH_WITH_OPENCV

const bool kOpenCvSingleThreaded = [] {
    cv::setNumThreads(1);
    return true;
}();

void BM_OpenCV_ConnectedComponents(benchmark::State& state) {
    const std::vector<unsigned char> bytes = page().as_bytes();
    const cv::Mat image(kHeight, kWidth, CV_8UC1, const_cast<unsigned char*>(bytes.data()));
    cv::Mat labels;
    int count = 0;
    for (auto _ : state) {
        count = cv::connectedComponents(image, labels, 8, CV_32S);
        benchmark::DoNotOptimize(labels.data);
    }
    set_page_counters(state, count - 1);
}
BENCHMARK(BM_OpenCV_ConnectedComponents)->Unit(benchmark::kMillisecond);

void BM_OpenCV_ConnectedComponentsWithStats(benchmark::State& state) {
    const std::vector<unsigned char> bytes = page().as_bytes();
    const cv::Mat image(kHeight, kWidth, CV_8UC1, const_cast<unsigned char*>(bytes.data()));
    cv::Mat labels;
    cv::Mat stats;
    cv::Mat centroids;
    int count = 0;
    for (auto _ : state) {
        count = cv::connectedComponentsWithStats(image, labels, stats, centroids, 8, CV_32S);
        benchmark::DoNotOptimize(labels.data);
    }
    set_page_counters(state, count - 1);
}
BENCHMARK(BM_OpenCV_ConnectedComponentsWithStats)->Unit(benchmark::kMillisecond);

#endif

}  // namespace
