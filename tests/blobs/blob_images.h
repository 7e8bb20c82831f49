// Binary images drawn as text, random binary images with dirty row padding, and a plain
// flood-fill labelling to check the run-based labelling against.
#ifndef QUORIMP_TESTS_BLOBS_BLOB_IMAGES_H
#define QUORIMP_TESTS_BLOBS_BLOB_IMAGES_H

#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "common/basic_image.h"

namespace blob_test {

// '#' is a set pixel, anything else clear. With `dirty_padding` every padding bit and byte of the
// rows is set, which no result may notice.
inline common::BasicImage binary_from_art(const std::vector<std::string>& rows,
                                          bool dirty_padding = false) {
    const int height = static_cast<int>(rows.size());
    const int width = height > 0 ? static_cast<int>(rows[0].size()) : 0;
    common::BasicImage image(height, width, common::IMAGE_TYPE_BINARY, 300, 300);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < image.row_stride * 8; ++x) {
            const bool set = x < width ? rows[y][x] == '#' : dirty_padding;
            if (set) {
                image.data[y * image.row_stride + x / 8] |=
                    static_cast<unsigned char>(0x80u >> (x % 8));
            }
        }
    }
    return image;
}

// Pixels set with probability `density`, padding bits set.
inline common::BasicImage random_binary(int height, int width, double density,
                                        std::mt19937& random) {
    std::vector<std::string> rows(static_cast<std::size_t>(height),
                                  std::string(static_cast<std::size_t>(width), '.'));
    std::bernoulli_distribution set(density);
    for (auto& row : rows) {
        for (auto& pixel : row) {
            pixel = set(random) ? '#' : '.';
        }
    }
    return binary_from_art(rows, true);
}

inline bool pixel(const common::BasicImage& image, int x, int y) {
    return (image.data[y * image.row_stride + x / 8] >> (7 - x % 8)) & 1;
}

// Labels 1, 2, ... in the raster order of each component's first pixel, 0 for background.
inline std::vector<int> flood_labels(const common::BasicImage& image, bool eight_connected,
                                     int& count) {
    const int w = image.width;
    const int h = image.height;
    std::vector<int> labels(static_cast<std::size_t>(w) * h, 0);
    count = 0;
    std::vector<std::pair<int, int>> stack;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            if (!pixel(image, x, y) || labels[y * w + x] != 0) {
                continue;
            }
            labels[y * w + x] = ++count;
            stack.push_back({x, y});
            while (!stack.empty()) {
                const auto [cx, cy] = stack.back();
                stack.pop_back();
                for (int dy = -1; dy <= 1; ++dy) {
                    for (int dx = -1; dx <= 1; ++dx) {
                        if ((dx == 0 && dy == 0) || (!eight_connected && dx != 0 && dy != 0)) {
                            continue;
                        }
                        const int nx = cx + dx;
                        const int ny = cy + dy;
                        if (nx >= 0 && ny >= 0 && nx < w && ny < h && pixel(image, nx, ny) &&
                            labels[ny * w + nx] == 0) {
                            labels[ny * w + nx] = count;
                            stack.push_back({nx, ny});
                        }
                    }
                }
            }
        }
    }
    return labels;
}

}  // namespace blob_test

#endif
