#include "geometric/operators/average_filtering.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace geometric {

namespace {

constexpr int kDefaultResolution = 300;
// Output rows per strip of use_native.
constexpr int kStripRows = 64;

// The image coordinate that extended coordinate `p` (0 at -half) mirrors, edge not repeated.
int mirror(int p, int half, int length) {
    const int q = p - half;
    if (q < 0) {
        return -q;
    }
    if (q >= length) {
        return 2 * length - 2 - q;
    }
    return q;
}

// Writes extended row `padded_row` (of width `length + 2 * half_width`) of `input` to `row`.
void extend_row(const common::Image& input, int padded_row, int half_height, int half_width,
                unsigned char* row) {
    const int width = input.get_width();
    const unsigned char* source =
        input.get_row(mirror(padded_row, half_height, input.get_height()));
    const int padded_width = width + 2 * half_width;
    for (int x = 0; x < padded_width; ++x) {
        row[x] = source[mirror(x, half_width, width)];
    }
}

std::vector<unsigned char> extend_image(const common::Image& input, int half_width,
                                        int half_height) {
    const int padded_width = input.get_width() + 2 * half_width;
    const int padded_height = input.get_height() + 2 * half_height;
    std::vector<unsigned char> padded(static_cast<std::size_t>(padded_width) * padded_height);
    for (int y = 0; y < padded_height; ++y) {
        extend_row(input, y, half_height, half_width,
                   padded.data() + static_cast<std::size_t>(y) * padded_width);
    }
    return padded;
}

// Box means by sliding column sums: `output_rows` rows of `width` pixels from padded rows of
// `padded_width`. An even kernel leaves one padded row and column unused.
void slide_box_means(const unsigned char* padded, int padded_width, int output_rows, int width,
                     int kernel_width, int kernel_height, common::BasicImage& output,
                     int first_output_row) {
    const int n = kernel_width * kernel_height;
    std::vector<int> column_sums(static_cast<std::size_t>(padded_width), 0);
    for (int y = 0; y < kernel_height; ++y) {
        const unsigned char* row = padded + static_cast<std::size_t>(y) * padded_width;
        for (int x = 0; x < padded_width; ++x) {
            column_sums[x] += row[x];
        }
    }
    for (int y = 0; y < output_rows; ++y) {
        if (y > 0) {
            const unsigned char* leaving = padded + static_cast<std::size_t>(y - 1) * padded_width;
            const unsigned char* entering =
                padded + static_cast<std::size_t>(y + kernel_height - 1) * padded_width;
            for (int x = 0; x < padded_width; ++x) {
                column_sums[x] += entering[x] - leaving[x];
            }
        }
        unsigned char* target = output.get_row(first_output_row + y);
        int sum = 0;
        for (int x = 0; x < kernel_width; ++x) {
            sum += column_sums[x];
        }
        for (int x = 0; x < width; ++x) {
            if (x > 0) {
                sum += column_sums[x + kernel_width - 1] - column_sums[x - 1];
            }
            target[x] = static_cast<unsigned char>((n + 2 * sum) / (2 * n));
        }
    }
}

}  // namespace

void AverageFiltering::use_opencv_algorithm(const common::Image& input, common::BasicImage& output,
                                            int kernel_width, int kernel_height) {
    const int width = input.get_width();
    const int height = input.get_height();
    const int half_width = kernel_width / 2;
    const int half_height = kernel_height / 2;
    const std::vector<unsigned char> padded = extend_image(input, half_width, half_height);
    output.reset(height, width, common::IMAGE_TYPE_GREY, kDefaultResolution, kDefaultResolution);
    if (width == 0 || height == 0) {
        return;
    }
    slide_box_means(padded.data(), width + 2 * half_width, height, width, kernel_width,
                    kernel_height, output, 0);
}

void AverageFiltering::use_summed_area_table(const common::Image& input, common::BasicImage& output,
                                             int kernel_width, int kernel_height) {
    const int width = input.get_width();
    const int height = input.get_height();
    const int half_width = kernel_width / 2;
    const int half_height = kernel_height / 2;
    std::vector<unsigned char> padded = extend_image(input, half_width, half_height);
    output.reset(height, width, common::IMAGE_TYPE_GREY, kDefaultResolution, kDefaultResolution);
    if (width == 0 || height == 0) {
        return;
    }
    perform_averaging(padded.data(), width + 2 * half_width, height + 2 * half_height,
                      output.get_row(0), width, height, kernel_width, kernel_height, half_width,
                      half_height);
}

void AverageFiltering::use_native(const common::Image& input, common::BasicImage& output,
                                  int kernel_width, int kernel_height) {
    const int width = input.get_width();
    const int height = input.get_height();
    const int half_width = kernel_width / 2;
    const int half_height = kernel_height / 2;
    const int padded_width = width + 2 * half_width;
    // Only when the output is the input is a copy of the input taken first.
    common::BasicImage copy;
    const common::Image* source = &input;
    if (source == static_cast<const common::Image*>(&output)) {
        copy.assign(input);
        source = &copy;
    }
    output.reset(height, width, common::IMAGE_TYPE_GREY, kDefaultResolution, kDefaultResolution);
    if (width == 0 || height == 0) {
        return;
    }
    std::vector<unsigned char> strip(static_cast<std::size_t>(padded_width) *
                                     (kStripRows + kernel_height - 1));
    for (int first = 0; first < height; first += kStripRows) {
        const int rows = std::min(kStripRows, height - first);
        const int padded_rows = rows + kernel_height - 1;
        for (int y = 0; y < padded_rows; ++y) {
            extend_row(*source, first + y, half_height, half_width,
                       strip.data() + static_cast<std::size_t>(y) * padded_width);
        }
        slide_box_means(strip.data(), padded_width, rows, width, kernel_width, kernel_height,
                        output, first);
    }
}

void AverageFiltering::perform_averaging(unsigned char* source, int source_width, int source_height,
                                         unsigned char* target, int target_width, int target_height,
                                         int kernel_width, int kernel_height, int offset_x,
                                         int offset_y) {
    if (kernel_width < 1 || kernel_height < 1 || source_width < kernel_width ||
        source_height < kernel_height) {
        return;
    }
    const int n = kernel_width * kernel_height;
    const int ring_rows = kernel_height + 1;
    const std::size_t integral_width = static_cast<std::size_t>(source_width) + 1;
    // Integral row i holds the sums of source rows 0 .. i - 1 left of each column; row i lives at
    // ring slot i % ring_rows.
    std::vector<int> ring(integral_width * ring_rows, 0);
    auto integral_row = [&](int i) { return ring.data() + (i % ring_rows) * integral_width; };
    for (int i = 1; i <= source_height; ++i) {
        const int* above = integral_row(i - 1);
        int* current = integral_row(i);
        const unsigned char* row = source + static_cast<std::size_t>(i - 1) * source_width;
        int row_sum = 0;
        current[0] = 0;
        for (int c = 0; c < source_width; ++c) {
            row_sum += row[c];
            current[c + 1] = above[c + 1] + row_sum;
        }
        if (i < kernel_height) {
            continue;
        }
        // Boxes whose bottom edge is source row i - 1.
        const int r = i - kernel_height;
        const int target_y = r + kernel_height / 2 - offset_y;
        if (target_y < 0 || target_y >= target_height) {
            continue;
        }
        const int* top = integral_row(r);
        unsigned char* out = target + static_cast<std::size_t>(target_y) * target_width;
        for (int c = 0; c + kernel_width <= source_width; ++c) {
            const int target_x = c + kernel_width / 2 - offset_x;
            if (target_x < 0 || target_x >= target_width) {
                continue;
            }
            const int sum = current[c + kernel_width] - current[c] - top[c + kernel_width] + top[c];
            out[target_x] = static_cast<unsigned char>((n + 2 * sum) / (2 * n));
        }
    }
}

void AverageFiltering::sum_area_table(unsigned char* source, int source_width, int source_height,
                                      unsigned char* target, int target_width, int target_height,
                                      int kernel_width, int kernel_height, int offset_x,
                                      int offset_y) {
    const int n = kernel_width * kernel_height;
    if (n <= 0) {
        return;
    }
    for (int r = 0; r + kernel_height <= source_height; ++r) {
        const int target_y = r + kernel_height / 2 - offset_y;
        if (target_y < 0 || target_y >= target_height) {
            continue;
        }
        for (int c = 0; c + kernel_width <= source_width; ++c) {
            const int target_x = c + kernel_width / 2 - offset_x;
            if (target_x < 0 || target_x >= target_width) {
                continue;
            }
            int sum = 0;
            for (int y = r; y < r + kernel_height; ++y) {
                const unsigned char* row = source + static_cast<std::size_t>(y) * source_width;
                for (int x = c; x < c + kernel_width; ++x) {
                    sum += row[x];
                }
            }
            target[static_cast<std::size_t>(target_y) * target_width + target_x] =
                static_cast<unsigned char>(
                    std::trunc(static_cast<double>(sum) / static_cast<double>(n) + 0.5));
        }
    }
}

}  // namespace geometric
