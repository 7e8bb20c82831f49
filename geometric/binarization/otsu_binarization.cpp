#include "geometric/binarization/otsu_binarization.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "geometric/binarization/reversed_bits.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace geometric {

namespace {

// The between-class variance search over the histogram of `count` contiguous grey bytes. The
// class weights stay raw pixel counts.
unsigned char otsu_threshold(const unsigned char* pixels, std::size_t count) {
    // Four interleaved histograms keep consecutive equal bytes from waiting on one counter; the
    // bytes come eight at a time.
    std::uint32_t partial[4][256] = {};
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, pixels + i, sizeof(eight));
        ++partial[0][eight & 0xFF];
        ++partial[1][(eight >> 8) & 0xFF];
        ++partial[2][(eight >> 16) & 0xFF];
        ++partial[3][(eight >> 24) & 0xFF];
        ++partial[0][(eight >> 32) & 0xFF];
        ++partial[1][(eight >> 40) & 0xFF];
        ++partial[2][(eight >> 48) & 0xFF];
        ++partial[3][eight >> 56];
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

// One output row: the bit of every pixel brighter than `threshold` is set, except in the first
// and the last column, which are never thresholded, and the padding bits are clear; then, with
// `flip` 0xFF, every byte of the row is inverted, padding included.
void threshold_row(const unsigned char* row, int width, unsigned int threshold, unsigned char flip,
                   unsigned char* bits, int stride) {
    int x = 0;
#if defined(__SSE2__)
    // Unsigned bytes compare as signed ones once their top bits are flipped.
    const __m128i sign = _mm_set1_epi8(static_cast<char>(0x80));
    const __m128i limit = _mm_xor_si128(_mm_set1_epi8(static_cast<char>(threshold)), sign);
    for (; x + 16 <= width; x += 16) {
        const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + x));
        const int mask = _mm_movemask_epi8(_mm_cmpgt_epi8(_mm_xor_si128(pixels, sign), limit));
        bits[x / 8] = static_cast<unsigned char>(kReversedBits.table[mask & 0xFF] ^ flip);
        bits[x / 8 + 1] =
            static_cast<unsigned char>(kReversedBits.table[(mask >> 8) & 0xFF] ^ flip);
    }
#endif
    for (int byte = x / 8; byte < stride; ++byte) {
        unsigned int packed = 0;
        for (int k = 0; k < 8 && byte * 8 + k < width; ++k) {
            packed |= static_cast<unsigned int>(row[byte * 8 + k] > threshold) << (7 - k);
        }
        bits[byte] = static_cast<unsigned char>(packed ^ flip);
    }
    // The first and the last column are never thresholded: clear, or set by the flip.
    const unsigned int first = 0x80u;
    const unsigned int last = 0x80u >> ((width - 1) % 8);
    bits[0] = static_cast<unsigned char>((bits[0] & ~first) | (flip & first));
    unsigned char& last_byte = bits[(width - 1) / 8];
    last_byte = static_cast<unsigned char>((last_byte & ~last) | (flip & last));
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

    // The flip of the whole buffer is done row by row while each row is at hand: the rows that
    // are never thresholded and the padding come out set, exactly as a flip after the fact.
    common::BasicImage& output = *output_image;
    const unsigned char flip = invert_output ? 0xFF : 0x00;
    for (int y = 0; y < height && output.row_stride > 0; ++y) {
        unsigned char* bits = output.data + static_cast<std::size_t>(output.row_stride) * y;
        if (y > 0 && y < height - 1 && width > 0) {
            threshold_row(pixels + static_cast<std::size_t>(width) * y, width, threshold, flip,
                          bits, output.row_stride);
        } else if (flip != 0) {
            std::memset(bits, flip, static_cast<std::size_t>(output.row_stride));
        }
    }
    return true;
}

}  // namespace geometric
