#include "geometric/operators/image_integer_down_sampling.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace geometric {

namespace {

constexpr int kDefaultResolution = 300;

// Makes `output` an empty-valued grey image of the reduced size.
void reset_to_reduced(const common::Image& input, common::BasicImage& output, int n) {
    output.reset(input.get_height() / n, input.get_width() / n, common::IMAGE_TYPE_GREY,
                 kDefaultResolution, kDefaultResolution);
}

// Sum of `count` bytes; eight at a time where there are eight left.
std::uint32_t sum_bytes(const unsigned char* bytes, int count) {
    std::uint32_t sum = 0;
    int i = 0;
    for (; i + 8 <= count; i += 8) {
        sum += static_cast<std::uint32_t>(bytes[i]) + bytes[i + 1] + bytes[i + 2] + bytes[i + 3] +
               bytes[i + 4] + bytes[i + 5] + bytes[i + 6] + bytes[i + 7];
    }
    for (; i < count; ++i) {
        sum += bytes[i];
    }
    return sum;
}

}  // namespace

void ImageIntegerDownSampling::change_image_dimension(common::BasicImage& image, int width,
                                                      int height) {
    image.width = width;
    image.row_stride = width;
    image.height = height;
    image.data_size = static_cast<std::uint32_t>(width) * static_cast<std::uint32_t>(height);
}

void ImageIntegerDownSampling::DownSampling2(common::BasicImage& image) {
    DownSampling2(image, image);
}

void ImageIntegerDownSampling::DownSampling2(const common::Image& input,
                                             common::BasicImage& output) {
    const int width = input.get_width();
    const int height = input.get_height();
    const int new_width = width / 2;
    const int new_height = height / 2;
    // Taken before the output changes size, for the output may be the input. Grey rows are
    // packed, so row y starts `width * y` bytes further on.
    const unsigned char* source = input.get_row(0);

    const std::uint32_t new_size =
        static_cast<std::uint32_t>(new_width) * static_cast<std::uint32_t>(new_height);
    // A buffer too small for the result cannot be kept; it is replaced like an absent one.
    if (output.data != nullptr && output.data_size >= new_size) {
        change_image_dimension(output, new_width, new_height);
    } else {
        output.reset(new_height, new_width, common::IMAGE_TYPE_GREY, kDefaultResolution,
                     kDefaultResolution);
    }

    // Output pixel (x, y) is written at or before input pixel (2x, 2y), so halving in place
    // never overwrites input that is still to be read.
    unsigned char* target = output.data;
    for (int y = 0; y < new_height; ++y) {
        const unsigned char* upper = source + static_cast<std::size_t>(width) * (2 * y);
        const unsigned char* lower = upper + width;
        unsigned char* out = target + static_cast<std::size_t>(new_width) * y;
        for (int x = 0; x < new_width; ++x) {
            const unsigned sum = static_cast<unsigned>(upper[2 * x]) + upper[2 * x + 1] +
                                 lower[2 * x] + lower[2 * x + 1];
            out[x] = static_cast<unsigned char>(sum >> 2);
        }
    }
}

void ImageIntegerDownSampling::DownSamplingCombined(const common::Image& input,
                                                    common::BasicImage& output, int n) {
    if (n == 2) {
        DownSampling2(input, output);
        return;
    }
    if (n < 1) {
        return;
    }
    reset_to_reduced(input, output, n);
    const int new_width = output.width;
    const int new_height = output.height;
    const std::uint64_t block_area = static_cast<std::uint64_t>(n) * static_cast<std::uint64_t>(n);
    std::vector<std::uint64_t> sums(static_cast<std::size_t>(new_width));
    for (int y = 0; y < new_height; ++y) {
        std::fill(sums.begin(), sums.end(), 0);
        for (int k = 0; k < n; ++k) {
            const unsigned char* row = input.get_row(y * n + k);
            for (int x = 0; x < new_width; ++x) {
                sums[x] += sum_bytes(row + static_cast<std::size_t>(x) * n, n);
            }
        }
        unsigned char* out = output.data + static_cast<std::size_t>(new_width) * y;
        for (int x = 0; x < new_width; ++x) {
            out[x] = static_cast<unsigned char>(sums[x] / block_area);
        }
    }
}

void ImageIntegerDownSampling::DownSamplingN(const common::Image& input, common::BasicImage& output,
                                             int n) {
    if (n < 1) {
        return;
    }
    reset_to_reduced(input, output, n);
    const int block_area = n * n;
    for (int y = 0; y < output.height; ++y) {
        for (int x = 0; x < output.width; ++x) {
            std::uint64_t sum = 0;
            for (int dy = 0; dy < n; ++dy) {
                for (int dx = 0; dx < n; ++dx) {
                    sum += input.get_pixel(x * n + dx, y * n + dy);
                }
            }
            output.set_pixel(x, y, static_cast<unsigned>(sum / block_area));
        }
    }
}

void ImageIntegerDownSampling::DownSamplingSummedAreaTable(const common::Image& input,
                                                           common::BasicImage& output, int n) {
    if (n < 1) {
        return;
    }
    reset_to_reduced(input, output, n);
    const int width = input.get_width();
    const int new_width = output.width;
    const int new_height = output.height;
    if (new_width == 0 || new_height == 0) {
        return;
    }
    const std::int64_t block_area = static_cast<std::int64_t>(n) * n;
    // The integral over one strip of n rows: entry (r, x) sums rows 0 to r and columns 0 to x of
    // the strip.
    std::vector<std::int64_t> table(static_cast<std::size_t>(n) * width);
    std::vector<unsigned char> out_row(static_cast<std::size_t>(new_width));
    for (int y = 0; y < new_height; ++y) {
        for (int r = 0; r < n; ++r) {
            const unsigned char* row = input.get_row(y * n + r);
            std::int64_t* entries = table.data() + static_cast<std::size_t>(r) * width;
            const std::int64_t* above = r > 0 ? entries - width : nullptr;
            std::int64_t running = 0;
            for (int x = 0; x < width; ++x) {
                running += row[x];
                entries[x] = above != nullptr ? running + above[x] : running;
            }
        }
        const std::int64_t* bottom = table.data() + static_cast<std::size_t>(n - 1) * width;
        out_row[0] = static_cast<unsigned char>(bottom[n - 1] / block_area);
        for (int x = 1; x < new_width; ++x) {
            const std::int64_t sum = bottom[(x + 1) * n - 1] - bottom[x * n - 1];
            out_row[x] = static_cast<unsigned char>(sum / block_area);
        }
        std::memcpy(output.data + static_cast<std::size_t>(new_width) * y, out_row.data(),
                    out_row.size());
    }
}

}  // namespace geometric
