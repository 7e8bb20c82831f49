#include "geometric/binarization/local_statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace geometric {

void calculate_local_mean_and_std(const common::Image& grey, int window_width, int window_height,
                                  Image<double>& mean, Image<double>& deviation) {
    const int width = grey.get_width();
    const int height = grey.get_height();
    if (mean.width != width || mean.height != height || mean.data == nullptr) {
        mean.allocate(width, height);
    }
    if (deviation.width != width || deviation.height != height || deviation.data == nullptr) {
        deviation.allocate(width, height);
    }
    if (width <= 0 || height <= 0) {
        return;
    }
    const int half_width = window_width / 2;
    const int half_height = window_height / 2;

    // The window sums are whole numbers far below 2^53, so running column sums give exactly the
    // values of the integral images while holding only one row of them.
    std::vector<std::uint64_t> column_sum(static_cast<std::size_t>(width), 0);
    std::vector<std::uint64_t> column_square(static_cast<std::size_t>(width), 0);
    std::vector<std::uint64_t> prefix_sum(static_cast<std::size_t>(width) + 1, 0);
    std::vector<std::uint64_t> prefix_square(static_cast<std::size_t>(width) + 1, 0);
    auto add_row = [&](int y, bool add) {
        const unsigned char* row = grey.get_row(y);
        for (int x = 0; x < width; ++x) {
            const std::uint64_t p = row[x];
            if (add) {
                column_sum[x] += p;
                column_square[x] += p * p;
            } else {
                column_sum[x] -= p;
                column_square[x] -= p * p;
            }
        }
    };

    int first_row = 0;  // rows [first_row, end_row) are in the column sums
    int end_row = 0;
    for (int y = 0; y < height; ++y) {
        const int top = std::max(y - half_height, 0);
        const int bottom = std::min(y - half_height + window_height, height);
        for (; end_row < bottom; ++end_row) {
            add_row(end_row, true);
        }
        for (; first_row < top; ++first_row) {
            add_row(first_row, false);
        }
        for (int x = 0; x < width; ++x) {
            prefix_sum[x + 1] = prefix_sum[x] + column_sum[x];
            prefix_square[x + 1] = prefix_square[x] + column_square[x];
        }
        const int rows = bottom - top;
        double* mean_row = mean.row(y);
        double* deviation_row = deviation.row(y);
        for (int x = 0; x < width; ++x) {
            const int left = std::max(x - half_width, 0);
            const int right = std::min(x - half_width + window_width, width);
            const double count = static_cast<double>((right - left) * rows);
            const double sum = static_cast<double>(prefix_sum[right] - prefix_sum[left]);
            const double square = static_cast<double>(prefix_square[right] - prefix_square[left]);
            const double m = sum / count;
            const double variance = square / count - m * m;
            mean_row[x] = m;
            deviation_row[x] = std::sqrt(variance);
        }
    }
}

}  // namespace geometric
