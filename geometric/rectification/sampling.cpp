#include "geometric/rectification/sampling.h"

namespace geometric {

namespace {

// Float to integer, towards zero, and the low eight bits of that integer: results outside 0 to 255
// wrap instead of saturating.
inline unsigned char low8(float value) {
    return static_cast<unsigned char>(static_cast<int>(value));
}

inline unsigned char clamp_byte(int value) {
    return static_cast<unsigned char>(value < 0 ? 0 : (value > 255 ? 255 : value));
}

// One channel of the bilinear formula, in float. `left` and `right` are the two samples of the
// upper row, `below` and `below_right` those of the lower row. The row results are truncated and
// wrapped before they are blended: that rounding is part of the result.
inline unsigned char linear_channel(int left, int right, int below, int below_right, float fx,
                                    float fy) {
    const int top = low8(right * fx + left * (1 - fx));
    const int bottom = low8(below_right * fx + below * (1 - fx));
    return low8(top * (1 - fy) + bottom * fy);
}

}  // namespace

Sampling::Sampling(common::ImageType type, int source_width, InterpolationType interpolation)
    : kernel_kind(-1), bytes_per_pixel(0), row_bytes(0) {
    switch (type) {
        case common::IMAGE_TYPE_GREY:
            bytes_per_pixel = 1;
            break;
        case common::IMAGE_TYPE_RGB:
            bytes_per_pixel = 3;
            break;
        case common::IMAGE_TYPE_BGRA:
            bytes_per_pixel = 4;
            break;
        default:
            break;
    }
    row_bytes = bytes_per_pixel * source_width;

    switch (interpolation) {
        case INTERPOLATION_NEAREST:
            kernel_kind = 0;
            kernel = &Sampling::sampling_nearest;
            break;
        case INTERPOLATION_LINEAR:
            kernel_kind = 1;
            kernel = &Sampling::sampling_linear;
            break;
        case INTERPOLATION_BICUBIC:
            kernel_kind = 2;
            kernel = &Sampling::sampling_bicubic;
            break;
        case INTERPOLATION_COLOR_YUV:
            kernel_kind = 2;
            kernel = &Sampling::sampling_color;
            break;
        case INTERPOLATION_COLOR_LINEAR:
            kernel_kind = 1;
            kernel = &Sampling::color_linear;
            break;
        default:
            break;
    }
}

void Sampling::sampling_nearest(const unsigned char* pixel, float, float,
                                unsigned char* out) const {
    out[0] = pixel[0];
}

void Sampling::sampling_linear(const unsigned char* pixel, float fx, float fy,
                               unsigned char* out) const {
    const unsigned char* below = pixel + row_bytes;
    out[0] =
        linear_channel(pixel[0], pixel[bytes_per_pixel], below[0], below[bytes_per_pixel], fx, fy);
}

void Sampling::color_linear(const unsigned char* pixel, float fx, float fy,
                            unsigned char* out) const {
    const unsigned char* right = pixel + bytes_per_pixel;
    const unsigned char* below = pixel + row_bytes;
    const unsigned char* below_right = below + bytes_per_pixel;
    for (int channel = 0; channel < 3; ++channel) {
        out[channel] = linear_channel(pixel[channel], right[channel], below[channel],
                                      below_right[channel], fx, fy);
    }
}

void Sampling::sampling_color(const unsigned char* pixel, float fx, float fy,
                              unsigned char* out) const {
    unsigned char blended[3];
    color_linear(pixel, fx, fy, blended);
    const int luma = blended[0];
    const int first_difference = blended[1];
    const int second_difference = blended[2];
    // Fixed point with 16 fractional bits; 8877440 is 128 * (22553 + 46802), the offsets of both
    // colour differences at once. Divisions truncate towards zero.
    out[0] = clamp_byte(luma + (first_difference - 128) * 91881 / 65536);
    out[1] =
        clamp_byte(luma - (second_difference * 22553 - 8877440 + first_difference * 46802) / 65536);
    out[2] = clamp_byte(luma + (second_difference - 128) * 116130 / 65536);
}

void Sampling::sampling_bicubic(const unsigned char* pixel, float fx, float fy,
                                unsigned char* out) const {
    // Each row value is stored as a byte, so it wraps before the column pass.
    unsigned char rows[4];
    const unsigned char* row_start = pixel - row_bytes - bytes_per_pixel;
    for (int row = 0; row < 4; ++row, row_start += row_bytes) {
        sampling_bicubic_1D(row_start, fx, &rows[row], bytes_per_pixel);
    }
    sampling_bicubic_1D(rows, fy, out, 1);
}

void Sampling::sampling_linear_1D(const unsigned char* pixel, float t, unsigned char* out,
                                  int step) {
    out[0] = low8(pixel[step] * t + (1 - t) * pixel[0]);
}

void Sampling::sampling_bicubic_1D(const unsigned char* pixel, float t, unsigned char* out,
                                   int step) {
    const int p0 = pixel[0];
    const int p1 = pixel[step];
    const int p2 = pixel[2 * step];
    const int p3 = pixel[3 * step];
    const int c3 = 3 * (p1 - p2) - p0 + p3;
    const int c2 = 2 * (p0 + 2 * p2) - 5 * p1 - p3;
    const int c1 = p2 - p0;
    const int c0 = 2 * p1;
    // The polynomial in float, the halving in double.
    const float polynomial = ((c3 * t + c2) * t + c1) * t + c0;
    out[0] = static_cast<unsigned char>(static_cast<int>(0.5 * static_cast<double>(polynomial)));
}

}  // namespace geometric
