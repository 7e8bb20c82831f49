#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_SAMPLING_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_SAMPLING_H

#include <boost/function.hpp>

#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Fixed to int: any value above 4 is representable and leaves the sampling kernel empty.
enum InterpolationType : int {
    INTERPOLATION_NEAREST = 0,
    INTERPOLATION_LINEAR = 1,
    INTERPOLATION_BICUBIC = 2,
    // Bilinear on luma and colour-difference pixels, converted back to RGB.
    INTERPOLATION_COLOR_YUV = 3,
    // Bilinear on each of the three channels.
    INTERPOLATION_COLOR_LINEAR = 4,
};

// Reads one pixel of a source image at a fractional position. The kernel is chosen once, at
// construction, so that a loop over many pixels has no switch.
//
// A kernel is handed the first byte of the source pixel at (floor x, floor y) and the fractions of
// x and y. The caller guarantees the neighbourhood: one pixel left of and above it, two right of
// and below it. Source rows are packed, so the next row starts `row_bytes` further on.
//
// Results are not clamped: an intermediate or final value outside 0 to 255 keeps its low eight
// bits. The bicubic kernel overshoots on strong edges and then gives the wrapped byte. Only the
// colour-difference kernel saturates.
class QUORIMP_EXPORT Sampling {
public:
    // The kernel takes the sampling object as its first argument, so that a copied object reads
    // its own sizes.
    using Kernel =
        boost::function<void(const Sampling&, const unsigned char*, float, float, unsigned char*)>;

    // An interpolation value above 4 leaves `kernel` empty; calling it throws
    // boost::bad_function_call.
    Sampling(common::ImageType type, int source_width, InterpolationType interpolation);

    // Runs the kernel on the source pixel at `pixel` and writes the result to `out`.
    void operator()(const unsigned char* pixel, float fx, float fy, unsigned char* out) const {
        kernel(*this, pixel, fx, fy, out);
    }

    int kernel_kind;      // 0 nearest, 1 linear, 2 cubic or colour difference; -1 without kernel
    int bytes_per_pixel;  // 1 grey, 3 RGB, 4 BGRA; 0 for any other type
    int row_bytes;        // bytes_per_pixel times the source width
    Kernel kernel;

private:
    // The first byte of the pixel; the fractions are ignored.
    void sampling_nearest(const unsigned char* pixel, float fx, float fy, unsigned char* out) const;
    // Bilinear on the first channel, in float, the upper and lower rows first.
    void sampling_linear(const unsigned char* pixel, float fx, float fy, unsigned char* out) const;
    // Catmull-Rom cubic on the first channel: four rows at fx, then their column at fy.
    void sampling_bicubic(const unsigned char* pixel, float fx, float fy, unsigned char* out) const;
    // Bilinear on three channels of luma and colour differences, converted to RGB.
    void sampling_color(const unsigned char* pixel, float fx, float fy, unsigned char* out) const;
    // Bilinear on each of three channels.
    void color_linear(const unsigned char* pixel, float fx, float fy, unsigned char* out) const;

    // Along one axis, `step` bytes between samples: two samples from `pixel` on, or four samples
    // starting at `pixel` itself.
    static void sampling_linear_1D(const unsigned char* pixel, float t, unsigned char* out,
                                   int step);
    static void sampling_bicubic_1D(const unsigned char* pixel, float t, unsigned char* out,
                                    int step);
};

}  // namespace geometric

#endif
