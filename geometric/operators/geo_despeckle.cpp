#include "geometric/operators/geo_despeckle.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace geometric {

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
        for (int i = 1; i < stride - 1; ++i) {
            // Most of a page is blank: eight zero bytes at a time stay zero.
            if (i + 8 <= stride - 1) {
                std::uint64_t eight;
                std::memcpy(&eight, centre + i, sizeof(eight));
                if (eight == 0) {
                    if (!in_place) {
                        std::memset(out + i, 0, sizeof(eight));
                    }
                    i += 7;
                    continue;
                }
            }
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
