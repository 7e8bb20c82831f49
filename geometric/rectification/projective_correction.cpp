#include "geometric/rectification/projective_correction.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

#include "geometric/primitives/geoline_base_points.h"
#include "geometric/rectification/control_points.h"
#include "geometric/rectification/sampling.h"

namespace geometric {

namespace {

constexpr int kOutputResolution = 300;

// The mapping of the unit square onto the four corners: output position (u, v) reads the source
// at x = (a u + b v + x0) / (g u + h v + 1), y = (d u + e v + y0) / (g u + h v + 1).
struct UnitSquareMapping {
    double x0;
    double y0;
    double a;
    double b;
    double d;
    double e;
    double g;
    double h;
};

UnitSquareMapping map_unit_square_onto(const std::vector<Geocoordinate<float>>& corners) {
    const float x0 = corners[0].x;
    const float y0 = corners[0].y;
    const float x1 = corners[1].x;
    const float y1 = corners[1].y;
    const float x2 = corners[2].x;
    const float y2 = corners[2].y;
    const float x3 = corners[3].x;
    const float y3 = corners[3].y;
    const float sx = (x2 - x3) + (x0 - x1);
    const float sy = (y2 - y3) + (y0 - y1);

    UnitSquareMapping mapping;
    mapping.x0 = x0;
    mapping.y0 = y0;
    if (sx == 0.0f && sy == 0.0f) {
        // A parallelogram: the mapping is affine.
        mapping.g = 0.0;
        mapping.h = 0.0;
        mapping.a = x1 - x0;
        mapping.b = x2 - x1;
        mapping.d = y1 - y0;
        mapping.e = y2 - y1;
        return mapping;
    }
    // Differences in float, the rest in double.
    const double dx1 = x1 - x2;
    const double dx2 = x3 - x2;
    const double dy1 = y1 - y2;
    const double dy2 = y3 - y2;
    const double den = dx1 * dy2 - dy1 * dx2;
    mapping.g = (sx * dy2 - sy * dx2) / den;
    mapping.h = (sy * dx1 - sx * dy1) / den;
    mapping.a = x1 * mapping.g + (x1 - x0);
    mapping.b = x3 * mapping.h + (x3 - x0);
    mapping.d = y1 * mapping.g + (y1 - y0);
    mapping.e = y3 * mapping.h + (y3 - y0);
    return mapping;
}

// Kernels inlined into the pixel loop for the common cases. Each computes exactly what the
// `Sampling` kernel of the same name does, operation for operation in float: only the loop
// around it changes. `1 - fx` and `1 - fy` are worked out once per pixel, which is the same float
// value every time.
struct GreyLinearKernel {
    static constexpr int kBytes = 1;
    int row_bytes;

    void operator()(const unsigned char* pixel, float fx, float fy, unsigned char* out) const {
        const float rest_x = 1 - fx;
        const unsigned char* below = pixel + row_bytes;
        const int top =
            static_cast<unsigned char>(static_cast<int>(pixel[1] * fx + pixel[0] * rest_x));
        const int bottom =
            static_cast<unsigned char>(static_cast<int>(below[1] * fx + below[0] * rest_x));
        out[0] = static_cast<unsigned char>(static_cast<int>(top * (1 - fy) + bottom * fy));
    }
};

struct ColourLinearKernel {
    static constexpr int kBytes = 3;
    int row_bytes;

    void operator()(const unsigned char* pixel, float fx, float fy, unsigned char* out) const {
        const float rest_x = 1 - fx;
        const float rest_y = 1 - fy;
        const unsigned char* below = pixel + row_bytes;
        for (int channel = 0; channel < 3; ++channel) {
            const int top = static_cast<unsigned char>(
                static_cast<int>(pixel[channel + 3] * fx + pixel[channel] * rest_x));
            const int bottom = static_cast<unsigned char>(
                static_cast<int>(below[channel + 3] * fx + below[channel] * rest_x));
            out[channel] = static_cast<unsigned char>(static_cast<int>(top * rest_y + bottom * fy));
        }
    }
};

struct GreyNearestKernel {
    static constexpr int kBytes = 1;

    void operator()(const unsigned char* pixel, float, float, unsigned char* out) const {
        out[0] = pixel[0];
    }
};

// Any kernel and pixel size, through the sampling object's function object.
struct GenericKernel {
    static constexpr int kBytes = 0;
    const Sampling* sampling;

    void operator()(const unsigned char* pixel, float fx, float fy, unsigned char* out) const {
        (*sampling)(pixel, fx, fy, out);
    }
};

struct SourceImage {
    const unsigned char* data;
    int width;
    int height;
    int row_bytes;
};

// Walks the output rows, maps each pixel into the source and writes it. `kDirect` kernels write
// every byte of a pixel, so they can write into the target; the others write into a scratch pixel
// that keeps its bytes from one pixel to the next and is copied out each time.
//
// The mapping is incremental, in double: row bases start at x0, y0 and 1 and gain b, e and h over
// the target height once per row; column accumulators start at 0 in each row and gain a, d and g
// over the target width once per pixel. Since they restart in every row with the same steps, the
// accumulators are the same in every row and are worked out once.
template <typename Kernel, bool kDirect, typename Fill>
void map_pixels(const UnitSquareMapping& mapping, const SourceImage& source, int bytes_per_pixel,
                unsigned char* target, int target_width, int target_height, const Kernel& kernel,
                Fill& fill) {
    const int bytes = Kernel::kBytes > 0 ? Kernel::kBytes : bytes_per_pixel;

    std::vector<double> column_x(target_width);
    std::vector<double> column_y(target_width);
    std::vector<double> column_w(target_width);
    const double column_step_x = mapping.a / target_width;
    const double column_step_y = mapping.d / target_width;
    const double column_step_w = mapping.g / target_width;
    double accumulated_x = 0.0;
    double accumulated_y = 0.0;
    double accumulated_w = 0.0;
    for (int i = 0; i < target_width; ++i) {
        column_x[i] = accumulated_x;
        column_y[i] = accumulated_y;
        column_w[i] = accumulated_w;
        accumulated_x += column_step_x;
        accumulated_y += column_step_y;
        accumulated_w += column_step_w;
    }
    const double row_step_x = mapping.b / target_height;
    const double row_step_y = mapping.e / target_height;
    const double row_step_w = mapping.h / target_height;
    double row_x = mapping.x0;
    double row_y = mapping.y0;
    double row_w = 1.0;

    // Pixel (xi, yi) with xi = floor(x) is interpolated when 1 <= xi <= width - 3, which for a
    // double x is 1 <= x < width - 2, and copied when 0 <= x < width. Comparing x itself keeps a
    // position far outside, or not a number, away from any integer conversion.
    const double source_width = source.width;
    const double source_height = source.height;
    const double interior_x_end = source.width - 2.0;
    const double interior_y_end = source.height - 2.0;

    std::vector<double> xs(target_width);
    std::vector<double> ys(target_width);
    unsigned char scratch[4] = {0, 0, 0, 0};
    unsigned char* target_pixel = target;
    for (int j = 0; j < target_height; ++j) {
        for (int i = 0; i < target_width; ++i) {
            const double den = row_w + column_w[i];
            xs[i] = (row_x + column_x[i]) / den;
            ys[i] = (row_y + column_y[i]) / den;
        }
        for (int i = 0; i < target_width; ++i, target_pixel += bytes) {
            const double x = xs[i];
            const double y = ys[i];
            unsigned char* out = kDirect ? target_pixel : scratch;
            if (x >= 0.0 && x < source_width && y >= 0.0 && y < source_height) {
                // Non-negative: truncation is the floor.
                const int xi = static_cast<int>(x);
                const int yi = static_cast<int>(y);
                const unsigned char* pixel = source.data +
                                             static_cast<std::ptrdiff_t>(source.row_bytes) * yi +
                                             static_cast<std::ptrdiff_t>(xi) * bytes;
                if (x >= 1.0 && x < interior_x_end && y >= 1.0 && y < interior_y_end) {
                    kernel(pixel, static_cast<float>(x - xi), static_cast<float>(y - yi), out);
                } else {
                    std::memcpy(out, pixel, bytes);
                }
            } else {
                std::memcpy(out, fill(), bytes);
            }
            if (!kDirect) {
                std::memcpy(target_pixel, scratch, bytes);
            }
        }
        row_x += row_step_x;
        row_y += row_step_y;
        row_w += row_step_w;
    }
}

// A double truncated towards zero into an int; values beyond the int range, which lie far outside
// any image, are clamped to it and not a number gives the smallest int.
int truncate_to_int(double value) {
    if (!(value > static_cast<double>(std::numeric_limits<int>::min()))) {
        return std::numeric_limits<int>::min();
    }
    if (value >= static_cast<double>(std::numeric_limits<int>::max())) {
        return std::numeric_limits<int>::max();
    }
    return static_cast<int>(value);
}

bool is_inside(const common::BasicImage& image, int x, int y) {
    return x >= 0 && x < image.width && y >= 0 && y < image.height;
}

// Appends the bytes of the pixel at (x, y): one for grey, three for RGB, four for BGRA, none for
// binary.
void push_pixel(const common::BasicImage& image, long long x, long long y,
                std::vector<unsigned char>& samples) {
    int bytes = 0;
    if (!image.get_bytes_per_pixel(bytes) || image.data == nullptr) {
        return;
    }
    const unsigned char* pixel =
        image.data + (static_cast<std::size_t>(image.width) * static_cast<std::size_t>(y) +
                      static_cast<std::size_t>(x)) *
                         static_cast<std::size_t>(bytes);
    samples.insert(samples.end(), pixel, pixel + bytes);
}

long long clamp_index(long long value, int size) {
    return std::max(0LL, std::min(static_cast<long long>(size) - 1, value));
}

// The same bits as set_pixel(x, y, grey < 129) for every pixel of `output`: padding bits and
// padding bytes keep what they held.
void pack_darker_than_129(const unsigned char* grey, common::BasicImage& output) {
    const int whole_bytes = output.width / 8;
    const int tail_pixels = output.width % 8;
    for (int y = 0; y < output.height; ++y) {
        const unsigned char* row = grey + static_cast<std::size_t>(output.width) * y;
        unsigned char* bits = output.data + static_cast<std::size_t>(output.row_stride) * y;
        for (int i = 0; i < whole_bytes; ++i) {
            const unsigned char* pixels = row + 8 * i;
            unsigned int byte = 0;
            for (int k = 0; k < 8; ++k) {
                byte = (byte << 1) | static_cast<unsigned int>(pixels[k] < 129);
            }
            bits[i] = static_cast<unsigned char>(byte);
        }
        if (tail_pixels != 0) {
            unsigned int byte = bits[whole_bytes];
            for (int k = 0; k < tail_pixels; ++k) {
                const unsigned int mask = 0x80u >> k;
                byte = row[8 * whole_bytes + k] < 129 ? (byte | mask) : (byte & ~mask);
            }
            bits[whole_bytes] = static_cast<unsigned char>(byte);
        }
    }
}

}  // namespace

ProjectiveCorrection::ProjectiveCorrection(common::BasicImage* input, common::BasicImage* output)
    : Correction(input, output),
      filling_mode(1),
      filling_pixel{255, 255, 255, 255},
      specialised_loops(true) {}

void ProjectiveCorrection::set_control_points(const std::vector<Geocoordinate<float>>& corners) {
    control_points = corners;
}

void ProjectiveCorrection::obtain_output_img_dimension(int& width, int& height) {
    calculate_output_dimension(control_points, width, height);
}

bool ProjectiveCorrection::run_correction() {
    int width = 0;
    int height = 0;
    obtain_output_img_dimension(width, height);
    const bool binary_input = input_type == common::IMAGE_TYPE_BINARY;

    if (output_owns_buffer) {
        output->reset(height, width, input->image_type, kOutputResolution, kOutputResolution);
        perspective_transformation_general(input->data, output->data, input->width, input->height,
                                           width, height, control_points);
        if (binary_input) {
            output->threshold_to_binary_in_place(128);
        }
        return true;
    }
    if (!binary_input) {
        perspective_transformation_general(input->data, output->data, input->width, input->height,
                                           width, height, control_points);
        return true;
    }

    // A caller's binary output: corrected as grey into a temporary buffer, then packed. The
    // temporary also covers the output's own size, so that an output of another size than the
    // page reads defined bytes.
    const std::size_t page_bytes = static_cast<std::size_t>(std::max(width, 0)) *
                                   static_cast<std::size_t>(std::max(height, 0));
    const std::size_t output_bytes = static_cast<std::size_t>(std::max(output->width, 0)) *
                                     static_cast<std::size_t>(std::max(output->height, 0));
    std::vector<unsigned char> grey(std::max(page_bytes, output_bytes));
    output->image_type = common::IMAGE_TYPE_GREY;
    try {
        perspective_transformation_general(input->data, grey.data(), input->width, input->height,
                                           width, height, control_points);
    } catch (...) {
        output->image_type = common::IMAGE_TYPE_BINARY;
        throw;
    }
    output->image_type = common::IMAGE_TYPE_BINARY;
    pack_darker_than_129(grey.data(), *output);
    return true;
}

void ProjectiveCorrection::perspective_transformation_general(
    const unsigned char* source, unsigned char* target, int source_width, int source_height,
    int target_width, int target_height, const std::vector<Geocoordinate<float>>& corners) {
    if (target_width <= 0 || target_height <= 0 || corners.size() < 4) {
        return;
    }
    const Sampling sampling(output->image_type, source_width, para.interpolation);
    const int bytes = sampling.bytes_per_pixel;
    if (bytes == 0) {
        return;
    }
    const UnitSquareMapping mapping = map_unit_square_onto(corners);
    const SourceImage image{source, source_width, source_height, sampling.row_bytes};

    // The filling pixel is measured at the first pixel that needs it, once per run.
    bool filling_ready = false;
    auto fill = [this, &filling_ready]() -> const unsigned char* {
        if (!filling_ready) {
            if (filling_mode == 1) {
                calculate_filling_pixel();
            }
            filling_ready = true;
        }
        return filling_pixel;
    };

    if (specialised_loops) {
        if (bytes == 1 && para.interpolation == INTERPOLATION_LINEAR) {
            map_pixels<GreyLinearKernel, true>(mapping, image, bytes, target, target_width,
                                               target_height, GreyLinearKernel{image.row_bytes},
                                               fill);
            return;
        }
        if (bytes == 3 && para.interpolation == INTERPOLATION_COLOR_LINEAR) {
            map_pixels<ColourLinearKernel, true>(mapping, image, bytes, target, target_width,
                                                 target_height, ColourLinearKernel{image.row_bytes},
                                                 fill);
            return;
        }
        if (bytes == 1 && para.interpolation == INTERPOLATION_NEAREST) {
            map_pixels<GreyNearestKernel, true>(mapping, image, bytes, target, target_width,
                                                target_height, GreyNearestKernel{}, fill);
            return;
        }
    }
    map_pixels<GenericKernel, false>(mapping, image, bytes, target, target_width, target_height,
                                     GenericKernel{&sampling}, fill);
}

void ProjectiveCorrection::calculate_filling_pixel() {
    if (control_points.size() < 4) {
        return;
    }
    std::vector<unsigned char> samples;
    Geocoordinate<float> corners[4] = {control_points[0], control_points[1], control_points[2],
                                       control_points[3]};
    get_pixels_on_hor_line(corners[0], corners[1], samples, true);
    get_pixels_on_hor_line(corners[3], corners[2], samples, false);
    get_pixels_on_ver_line(corners[1], corners[2], samples, false);
    get_pixels_on_ver_line(corners[0], corners[3], samples, true);
    if (samples.empty()) {
        return;
    }
    if (input->image_type == common::IMAGE_TYPE_RGB) {
        find_above_median_color(static_cast<int>(samples.size() / 3), samples.data(),
                                filling_pixel);
        return;
    }
    // Grey: the mean of the lighter half of the bytes, summed in float and truncated.
    std::sort(samples.begin(), samples.end(), std::greater<unsigned char>());
    const std::size_t lighter_half = samples.size() / 2;
    if (lighter_half == 0) {
        return;
    }
    float sum = 0.0f;
    for (std::size_t i = 0; i < lighter_half; ++i) {
        sum += samples[i];
    }
    const float mean = sum / static_cast<float>(lighter_half);
    filling_pixel[0] = static_cast<unsigned char>(static_cast<int>(mean));
}

void ProjectiveCorrection::find_above_median_color(int pixel_count, const unsigned char* samples,
                                                   unsigned char* colour) {
    const int lighter_half = pixel_count / 2;
    if (lighter_half == 0) {
        return;  // too few samples to halve: the colour stays as it was
    }
    std::vector<std::pair<int, int>> lumas(static_cast<std::size_t>(pixel_count));
    for (int i = 0; i < pixel_count; ++i) {
        const unsigned char* pixel = samples + 3 * static_cast<std::size_t>(i);
        lumas[i] = {(299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2]) / 1000, i};
    }
    // Stable, so that among equal lumas the earlier sample comes first.
    std::stable_sort(lumas.begin(), lumas.end(),
                     [](const std::pair<int, int>& first, const std::pair<int, int>& second) {
                         return first.first > second.first;
                     });
    long long sums[3] = {0, 0, 0};
    for (int k = 0; k < lighter_half; ++k) {
        const unsigned char* pixel = samples + 3 * static_cast<std::size_t>(lumas[k].second);
        for (int channel = 0; channel < 3; ++channel) {
            sums[channel] += pixel[channel];
        }
    }
    for (int channel = 0; channel < 3; ++channel) {
        colour[channel] = static_cast<unsigned char>(sums[channel] / lighter_half);
    }
}

// Design: the ends are walked pixel by pixel, but a stretch that lies wholly left of or right of
// the image is skipped in one jump to the first column that could be inside; every column in it is
// outside whatever its y, so the ends stop where a pixel-by-pixel walk would. An edge with no
// extent in x (a vertical line through both corners) gives no samples, and a sample row that
// falls outside the image, which only fractional corners on a steep edge can cause, is clamped
// into it.
void ProjectiveCorrection::get_pixels_on_hor_line(Geocoordinate<float>& first,
                                                  Geocoordinate<float>& second,
                                                  std::vector<unsigned char>& samples,
                                                  bool downward) {
    const common::BasicImage& image = *input;
    const int margin = std::max(image.height / 100, 5);
    GeolineBasePoints<float> line;
    line.use_two_points(first, second);
    if (line.b == 0.0) {
        return;
    }
    auto y_at = [&line](long long x) {
        return truncate_to_int(-(line.a * static_cast<double>(x) + line.c) / line.b);
    };

    int left_x = truncate_to_int(first.x);
    int left_y = truncate_to_int(first.y);
    int right_x = truncate_to_int(second.x);
    int right_y = truncate_to_int(second.y);
    if (second.x < first.x) {
        std::swap(left_x, right_x);
        std::swap(left_y, right_y);
    }

    if (!is_inside(image, left_x, left_y) && left_x < std::min(0, image.width)) {
        left_x = std::min(0, image.width);
        left_y = y_at(left_x);
    }
    while (!is_inside(image, left_x, left_y) && left_x < image.width) {
        ++left_x;
        left_y = y_at(left_x);
    }
    if (!is_inside(image, right_x, right_y) && right_x > std::max(image.width - 1, left_x)) {
        right_x = std::max(image.width - 1, left_x);
        right_y = y_at(right_x);
    }
    while (!is_inside(image, right_x, right_y) && right_x > left_x) {
        --right_x;
        right_y = y_at(right_x);
    }

    const long long span = static_cast<long long>(right_x) - left_x;
    if (span < 1) {
        return;
    }
    const long long step = std::max(span / 8, 1LL);
    for (long long x = left_x; x <= right_x; x += step) {
        const long long y = y_at(x);
        const long long row = downward
                                  ? std::min(static_cast<long long>(image.height) - 1, y + margin)
                                  : std::max(0LL, y - margin);
        push_pixel(image, x, clamp_index(row, image.height), samples);
    }
}

// The same walk with the axes exchanged; see get_pixels_on_hor_line.
void ProjectiveCorrection::get_pixels_on_ver_line(Geocoordinate<float>& first,
                                                  Geocoordinate<float>& second,
                                                  std::vector<unsigned char>& samples,
                                                  bool rightward) {
    const common::BasicImage& image = *input;
    const int margin = std::max(image.width / 100, 5);
    GeolineBasePoints<float> line;
    line.use_two_points(first, second);
    if (line.a == 0.0) {
        return;
    }
    auto x_at = [&line](long long y) {
        return truncate_to_int(-(line.b * static_cast<double>(y) + line.c) / line.a);
    };

    int top_x = truncate_to_int(first.x);
    int top_y = truncate_to_int(first.y);
    int bottom_x = truncate_to_int(second.x);
    int bottom_y = truncate_to_int(second.y);
    if (second.y < first.y) {
        std::swap(top_x, bottom_x);
        std::swap(top_y, bottom_y);
    }

    if (!is_inside(image, top_x, top_y) && top_y < std::min(0, image.height)) {
        top_y = std::min(0, image.height);
        top_x = x_at(top_y);
    }
    while (!is_inside(image, top_x, top_y) && top_y < image.height) {
        ++top_y;
        top_x = x_at(top_y);
    }
    if (!is_inside(image, bottom_x, bottom_y) && bottom_y > std::max(image.height - 1, top_y)) {
        bottom_y = std::max(image.height - 1, top_y);
        bottom_x = x_at(bottom_y);
    }
    while (!is_inside(image, bottom_x, bottom_y) && bottom_y > top_y) {
        --bottom_y;
        bottom_x = x_at(bottom_y);
    }

    const long long span = static_cast<long long>(bottom_y) - top_y;
    if (span < 1) {
        return;
    }
    const long long step = std::max(span / 8, 1LL);
    for (long long y = top_y; y <= bottom_y; y += step) {
        const long long x = x_at(y);
        const long long column = rightward
                                     ? std::min(static_cast<long long>(image.width) - 1, x + margin)
                                     : std::max(0LL, x - margin);
        push_pixel(image, clamp_index(column, image.width), y, samples);
    }
}

}  // namespace geometric
