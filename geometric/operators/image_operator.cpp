#include "geometric/operators/image_operator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace geometric {

namespace {

// Standard deviation of the grey square of side `side` whose top left pixel is (left, top), in
// single precision: E[v^2] - E[v]^2 over running float sums. Rounding of the float sums can make
// the difference of a flat patch slightly negative; that is taken as 0 rather than a NaN, which
// would also upset the sort of the six values.
float patch_std(const common::BasicImage& image, int left, int top, int side) {
    float sum = 0.0f;
    float sum_of_squares = 0.0f;
    for (int y = top; y < top + side; ++y) {
        const unsigned char* row = image.data + static_cast<std::size_t>(image.width) * y;
        for (int x = left; x < left + side; ++x) {
            const float value = static_cast<float>(row[x]);
            sum += value;
            sum_of_squares += value * value;
        }
    }
    const float count = static_cast<float>(side * side);
    const float mean_value = sum / count;
    const float variance = sum_of_squares / count - mean_value * mean_value;
    return std::sqrt(std::max(variance, 0.0f));
}

bool pixel_set(const unsigned char* row, int x) {
    return (row[x >> 3] >> (7 - (x & 7))) & 1;
}

}  // namespace

float ImageOperator::calculate_background_std(const common::BasicImage& image, float* smallest) {
    const int h = image.height;
    const int w = image.width;
    const int side = std::max(std::min(h, w) / 100, 7);
    const int middle = h / 2 - side / 2;
    std::array<float, 6> deviations = {
        patch_std(image, 0, 0, side),        patch_std(image, w - side, 0, side),
        patch_std(image, 0, middle, side),   patch_std(image, w - side, middle, side),
        patch_std(image, 0, h - side, side), patch_std(image, w - side, h - side, side),
    };
    std::sort(deviations.begin(), deviations.end());
    if (smallest != nullptr) {
        *smallest = deviations[0];
    }
    return deviations[2];
}

// A fraction of 1 or more, or one so close to 1 that the cut rounds to 0 pixels, gives a patch
// that reaches one pixel beyond the image: only what lies inside the image is copied, and the rest
// of the patch stays 0.
void ImageOperator::fetch_image_patch_central(const common::BasicImage& image, double fraction,
                                              common::BasicImage& patch) {
    const int w = image.width;
    const int h = image.height;
    const double s = std::sqrt(fraction);
    const int x0 = static_cast<int>((w - w * s) * 0.5);
    const int y0 = static_cast<int>((h - h * s) * 0.5);
    const int patch_width = w - 2 * x0 + 1;
    const int patch_height = h - 2 * y0 + 1;
    patch.reset(patch_height, patch_width, common::IMAGE_TYPE_GREY, 300, 300);

    const int bytes_per_pixel = image.image_type == common::IMAGE_TYPE_GREY ? 1 : 3;
    const long long source_row_bytes = static_cast<long long>(w) * bytes_per_pixel;
    const long long first_byte = static_cast<long long>(x0) * bytes_per_pixel;
    const long long copied =
        std::max(0LL, std::min<long long>(patch_width, source_row_bytes - first_byte));
    for (int r = 0; r < patch_height && y0 + r < h; ++r) {
        if (y0 + r < 0 || first_byte < 0) {
            continue;
        }
        const unsigned char* source = image.data + source_row_bytes * (y0 + r) + first_byte;
        std::memcpy(patch.data + static_cast<std::size_t>(patch_width) * r, source,
                    static_cast<std::size_t>(copied));
    }
}

bool ImageOperator::image_border_contains_text(const common::BasicImage& image) {
    const int h = image.height;
    const int w = image.width;
    if (h <= 0 || w <= 0) {
        return false;
    }
    const int last_row = h - 1;
    for (int y : {0, last_row}) {
        const unsigned char* row = image.data + static_cast<std::size_t>(image.row_stride) * y;
        for (int x = 0; x < w; ++x) {
            if (pixel_set(row, x)) {
                return true;
            }
        }
    }
    for (int y = 1; y < last_row; ++y) {
        const unsigned char* row = image.data + static_cast<std::size_t>(image.row_stride) * y;
        if (pixel_set(row, 0) || pixel_set(row, w - 1)) {
            return true;
        }
    }
    return false;
}

bool ImageOperator::is_complete_background(const common::BasicImage& image) {
    const std::size_t size = static_cast<std::size_t>(image.height) * image.row_stride;
    for (std::size_t i = 0; i < size; ++i) {
        if (image.data[i] != 0) {
            return false;
        }
    }
    return true;
}

float ImageOperator::mean(const common::BasicImage& image) {
    // Summed in integers, which is exact and equals the double sum for any buffer that fits the
    // 32-bit size field.
    unsigned long long sum = 0;
    for (std::uint32_t i = 0; i < image.data_size; ++i) {
        sum += image.data[i];
    }
    return static_cast<float>(static_cast<double>(sum) / image.data_size);
}

void ImageOperator::obtain_object_coordinates(const common::BasicImage& image, std::vector<int>& x,
                                              std::vector<int>& y) {
    const std::size_t expected = static_cast<std::size_t>(image.height) * image.width / 100;
    x.reserve(expected);
    y.reserve(expected);
    for (int row_index = 0; row_index < image.height; ++row_index) {
        const unsigned char* row =
            image.data + static_cast<std::size_t>(image.row_stride) * row_index;
        for (int column = 0; column < image.width; ++column) {
            if (row[column >> 3] == 0) {
                column |= 7;  // a clear byte holds no pixel; go on with the next one
                continue;
            }
            if (pixel_set(row, column)) {
                x.push_back(column);
                y.push_back(row_index);
            }
        }
    }
}

void ImageOperator::substract(const common::BasicImage& a, common::BasicImage& b) {
    for (std::uint32_t i = 0; i < b.data_size; ++i) {
        b.data[i] = a.data[i] < b.data[i] ? 0 : static_cast<unsigned char>(a.data[i] - b.data[i]);
    }
}

}  // namespace geometric
