#include "geometric/binarization/border_reused_thresholds.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace geometric {

void threshold_with_border_reuse(const common::Image& grey, int half_width, int half_height,
                                 const std::function<double(int x, int y)>& threshold_at,
                                 common::BasicImage& output, Image<double>* surface) {
    const int width = grey.get_width();
    const int height = grey.get_height();
    const int first_column = half_width;
    const int last_column = width - half_width - 1;
    const int first_row = half_height;
    const int last_row = height - half_height - 1;
    if (first_column > last_column || first_row > last_row) {
        return;
    }
    std::vector<double> thresholds(static_cast<std::size_t>(width));
    int computed_row = -1;
    for (int y = 0; y < height; ++y) {
        const int source_row = std::min(std::max(y, first_row), last_row);
        if (source_row != computed_row) {
            for (int x = first_column; x <= last_column; ++x) {
                thresholds[x] = threshold_at(x, source_row);
            }
            std::fill(thresholds.begin(), thresholds.begin() + first_column,
                      thresholds[first_column]);
            std::fill(thresholds.begin() + last_column + 1, thresholds.end(),
                      thresholds[last_column]);
            computed_row = source_row;
        }
        const unsigned char* pixels = grey.get_row(y);
        unsigned char* bits = output.data + static_cast<std::size_t>(output.row_stride) * y;
        for (int x = 0; x < width; ++x) {
            if (thresholds[x] > pixels[x]) {
                bits[x / 8] |= static_cast<unsigned char>(0x80u >> (x % 8));
            }
        }
        if (surface != nullptr) {
            std::copy(thresholds.begin(), thresholds.end(), surface->row(y));
        }
    }
}

}  // namespace geometric
