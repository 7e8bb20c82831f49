#include "geometric/binarization/otsu_binarization.h"

#include <cstddef>
#include <cstdint>

namespace geometric {

namespace {

// The between-class variance search over the histogram of `count` contiguous grey bytes. The
// class weights stay raw pixel counts.
unsigned char otsu_threshold(const unsigned char* pixels, std::size_t count) {
    // Four interleaved histograms keep consecutive equal bytes from waiting on one counter.
    std::uint32_t partial[4][256] = {};
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        ++partial[0][pixels[i]];
        ++partial[1][pixels[i + 1]];
        ++partial[2][pixels[i + 2]];
        ++partial[3][pixels[i + 3]];
    }
    for (; i < count; ++i) {
        ++partial[0][pixels[i]];
    }
    int histogram[256];
    for (int v = 0; v < 256; ++v) {
        histogram[v] =
            static_cast<int>(partial[0][v] + partial[1][v] + partial[2][v] + partial[3][v]);
    }

    double total = 0.0;
    double weighted = 0.0;
    for (int v = 0; v < 256; ++v) {
        total += histogram[v];
        weighted += static_cast<double>(v) * histogram[v];
    }
    const double mean = total > 0.0 ? weighted / total : 0.0;

    double best = 0.0;
    int best_threshold = 0;
    double w0 = 0.0;
    double s0 = 0.0;
    for (int t = 0; t < 256; ++t) {
        w0 += histogram[t];
        s0 += static_cast<double>(t) * histogram[t];
        const double w1 = total - w0;
        const double m0 = w0 > 0.0 ? s0 / w0 : 0.0;
        const double m1 = w1 > 0.0 ? (weighted - s0) / w1 : 0.0;
        const double variance = (m0 - mean) * (m0 - mean) * w0 + (m1 - mean) * (m1 - mean) * w1;
        if (variance > best) {
            best = variance;
            best_threshold = t;
        }
    }
    return static_cast<unsigned char>(best_threshold);
}

std::size_t pixel_count(const common::Image& image) {
    const int height = image.get_height();
    const int width = image.get_width();
    if (height <= 0 || width <= 0) {
        return 0;
    }
    return static_cast<std::size_t>(height) * static_cast<std::size_t>(width);
}

}  // namespace

OtsuBinarization::OtsuBinarization(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output), invert_output(true) {}

void OtsuBinarization::obtain_threshold(const common::Image& image, unsigned char& threshold) {
    const std::size_t count = pixel_count(image);
    threshold = otsu_threshold(count != 0 ? image.get_row(0) : nullptr, count);
}

bool OtsuBinarization::run_binarization_imp(common::Image* grey) {
    const int height = input_image->get_height();
    const int width = input_image->get_width();
    const std::size_t count = pixel_count(*input_image);
    const unsigned char* pixels = count != 0 ? grey->get_row(0) : nullptr;
    const unsigned int threshold = otsu_threshold(pixels, count);

    common::BasicImage& output = *output_image;
    for (int y = 1; y < height - 1; ++y) {
        const unsigned char* row = pixels + static_cast<std::size_t>(width) * y;
        unsigned char* bits = output.data + static_cast<std::size_t>(output.row_stride) * y;
        // Columns 1 to width - 2, a whole output byte at a time; the frame columns stay 0.
        for (int byte = 0; byte * 8 < width; ++byte) {
            const int first = byte == 0 ? 1 : byte * 8;
            const int end = byte * 8 + 8 < width - 1 ? byte * 8 + 8 : width - 1;
            unsigned int packed = 0;
            for (int x = first; x < end; ++x) {
                packed |= static_cast<unsigned int>(row[x] > threshold) << (7 - (x - byte * 8));
            }
            bits[byte] = static_cast<unsigned char>(packed);
        }
    }
    if (invert_output) {
        output.invert();
    }
    return true;
}

}  // namespace geometric
