#include "geometric/operators/binary_image_operator.h"

#include <algorithm>
#include <cstddef>

namespace geometric {

namespace {

inline bool bit_set(const unsigned char* row, int x) {
    return (row[x >> 3] >> (7 - (x & 7))) & 1;
}

}  // namespace

bool BinaryImageOperator::is_background_pixel(int x, unsigned char* row) {
    return !bit_set(row, x);
}

bool BinaryImageOperator::check_black_run(unsigned char* row, int x, int length) {
    if (length <= 0) {
        return false;
    }
    const int last = x + length - 1;
    const int first_byte = x >> 3;
    const int last_byte = last >> 3;
    // Bits from the start position to the end of a byte, and bits up to and including the end
    // position.
    const unsigned char head_mask = static_cast<unsigned char>(0xFFu >> (x & 7));
    const unsigned char tail_mask = static_cast<unsigned char>(0xFFu << (7 - (last & 7)));
    if (first_byte == last_byte) {
        return (row[first_byte] & head_mask & tail_mask) != 0;
    }
    if ((row[first_byte] & head_mask) != 0 || (row[last_byte] & tail_mask) != 0) {
        return true;
    }
    for (int i = first_byte + 1; i < last_byte; ++i) {
        if (row[i] != 0) {
            return true;
        }
    }
    return false;
}

bool BinaryImageOperator::in_the_blob_contour(unsigned char* row, int x, int y, int height,
                                              int width, int stride) {
    const bool has_left = x > 0;
    const bool has_right = x < width - 1;
    const bool has_up = y > 0;
    const bool has_down = y < height - 1;
    if (has_left && !bit_set(row, x - 1)) {
        return true;
    }
    if (has_right && !bit_set(row, x + 1)) {
        return true;
    }
    if (has_up) {
        const unsigned char* up = row - stride;
        if (!bit_set(up, x) || (has_left && !bit_set(up, x - 1)) ||
            (has_right && !bit_set(up, x + 1))) {
            return true;
        }
    }
    if (has_down) {
        const unsigned char* down = row + stride;
        if (!bit_set(down, x) || (has_left && !bit_set(down, x - 1)) ||
            (has_right && !bit_set(down, x + 1))) {
            return true;
        }
    }
    return false;
}

// The outline is the first row of the square, both end pixels of each row strictly inside, and the
// row after the last inside row. That closing row is y1 - 1, or y0 + 1 when the square has no
// inside row; with `half` 0 this is the row below the square, and it is skipped when it lies below
// the image.
int BinaryImageOperator::calculate_background_average(unsigned char* binary_row,
                                                      unsigned char* grey_row, int x, int y,
                                                      int height, int width, int stride, int half) {
    const int x0 = std::max(x - half, 0);
    const int y0 = std::max(y - half, 0);
    const int x1 = std::min(x + half + 1, width);
    const int y1 = std::min(y + half + 1, height);
    long long sum = 0;
    int count = 0;
    auto sample = [&](int column, int line) {
        const unsigned char* binary = binary_row + static_cast<std::ptrdiff_t>(line - y) * stride;
        if (!bit_set(binary, column)) {
            const unsigned char* grey = grey_row + static_cast<std::ptrdiff_t>(line - y) * width;
            sum += grey[column];
            ++count;
        }
    };
    for (int column = x0; column < x1; ++column) {
        sample(column, y0);
    }
    int line = y0 + 1;
    for (; line < y1 - 1; ++line) {
        sample(x0, line);
        sample(x1 - 1, line);
    }
    if (line < height) {
        for (int column = x0; column < x1; ++column) {
            sample(column, line);
        }
    }
    if (count == 0) {
        return -1;
    }
    return static_cast<int>(sum / count);
}

}  // namespace geometric
