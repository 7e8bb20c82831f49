#include "geometric/operators/geo_despeckle.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace geometric {

namespace {

// Eight bytes of a row as one word, the first byte most significant: the pixels in row order
// from the highest bit down.
std::uint64_t load_big_endian(const unsigned char* bytes) {
#if defined(__GNUC__) && defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof(word));
    return __builtin_bswap64(word);
#else
    std::uint64_t word = 0;
    for (int k = 0; k < 8; ++k) {
        word = (word << 8) | bytes[k];
    }
    return word;
#endif
}

void store_big_endian(unsigned char* bytes, std::uint64_t word) {
#if defined(__GNUC__) && defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    word = __builtin_bswap64(word);
    std::memcpy(bytes, &word, sizeof(word));
#else
    for (int k = 7; k >= 0; --k) {
        bytes[k] = static_cast<unsigned char>(word);
        word >>= 8;
    }
#endif
}

}  // namespace

bool GeoDespeckle::removeIsolatedPixel(const common::BasicImage& input,
                                       common::BasicImage& output) {
    if (output.data == nullptr) {
        output.reset(input.height, input.width, common::IMAGE_TYPE_BINARY, 300, 300);
    }
    return removeIsolatedPixel(input.data, input.height, input.width, input.row_stride,
                               output.data);
}

bool GeoDespeckle::removeIsolatedPixel(unsigned char* input, int height, int /*width*/, int stride,
                                       unsigned char* output) {
    if (height <= 0 || stride <= 0) {
        return true;
    }
    const std::size_t row_bytes = static_cast<std::size_t>(stride);
    const bool in_place = input == output;
    if (!in_place) {
        std::memcpy(output, input, row_bytes);
    }
    if (height == 1) {
        return true;
    }
    for (int y = 1; y < height - 1; ++y) {
        // In place, the row above has already been cleaned and so has the byte to the left. A
        // pixel can only lose a neighbour that had no neighbour itself, so the order of the
        // walk never changes the result.
        const unsigned char* top = input + row_bytes * (y - 1);
        const unsigned char* centre = input + row_bytes * y;
        const unsigned char* bottom = input + row_bytes * (y + 1);
        unsigned char* out = output + row_bytes * y;
        if (!in_place) {
            out[0] = centre[0];
            out[stride - 1] = centre[stride - 1];
        }
        int i = 1;
        // Eight bytes at a time while the byte after them is still inside the row.
        for (; i + 8 <= stride - 1; i += 8) {
            const std::uint64_t c = load_big_endian(centre + i);
            if (c == 0) {  // most of a page is blank
                if (!in_place) {
                    std::memset(out + i, 0, 8);
                }
                continue;
            }
            const std::uint64_t t = load_big_endian(top + i);
            const std::uint64_t b = load_big_endian(bottom + i);
            const std::uint64_t rows = t | b | c;
            const std::uint64_t before = (top[i - 1] | centre[i - 1] | bottom[i - 1]) & 1u;
            const std::uint64_t after = (top[i + 8] | centre[i + 8] | bottom[i + 8]) >> 7;
            const std::uint64_t from_left = (rows >> 1) | (before << 63);
            const std::uint64_t from_right = (rows << 1) | after;
            store_big_endian(out + i, c & (t | b | from_left | from_right));
        }
        for (; i < stride - 1; ++i) {
            const unsigned int c = centre[i];
            if (c == 0) {
                out[i] = 0;
                continue;
            }
            const unsigned int t = top[i];
            const unsigned int b = bottom[i];
            const unsigned int left = centre[i - 1] | top[i - 1] | bottom[i - 1];
            const unsigned int right = centre[i + 1] | top[i + 1] | bottom[i + 1];
            const unsigned int left_part = (((left << 6) | b | t | c) << 1) & 0xFFu;
            const unsigned int right_part = ((right >> 6) | b | t | c) >> 1;
            out[i] = static_cast<unsigned char>(c & (left_part | right_part | b | t));
        }
    }
    if (!in_place) {
        std::memcpy(output + row_bytes * (height - 1), input + row_bytes * (height - 1), row_bytes);
    }
    return true;
}

}  // namespace geometric
