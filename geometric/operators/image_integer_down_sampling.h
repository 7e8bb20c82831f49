#ifndef QUORIMP_GEOMETRIC_OPERATORS_IMAGE_INTEGER_DOWN_SAMPLING_H
#define QUORIMP_GEOMETRIC_OPERATORS_IMAGE_INTEGER_DOWN_SAMPLING_H

#include "common/basic_image.h"
#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Reduction of grey images by a whole factor n: each output pixel is the mean of an n by n block,
// truncated. Columns and rows beyond the last whole block take no part. The reductions give the
// same pixels and differ only in how they walk the image. Grey rows are packed, and the input's
// type is not checked. A factor below 1 leaves the output untouched.
class QUORIMP_EXPORT ImageIntegerDownSampling {
public:
    // Halves the image. An output that already has a buffer large enough keeps it, with its type
    // and resolutions, and only takes the new size: the input may therefore be the output itself.
    // An empty output, or one whose buffer is too small, becomes a grey image of 300 by 300 pixels
    // per inch.
    static void DownSampling2(const common::Image& input, common::BasicImage& output);
    static void DownSampling2(common::BasicImage& image);

    // A factor of 2 goes to DownSampling2; other factors sum each block row by row.
    static void DownSamplingCombined(const common::Image& input, common::BasicImage& output, int n);

    // The plain block mean, storing each pixel through set_pixel.
    static void DownSamplingN(const common::Image& input, common::BasicImage& output, int n);

    // The block mean from a summed-area table over each strip of n rows.
    static void DownSamplingSummedAreaTable(const common::Image& input, common::BasicImage& output,
                                            int n);

private:
    // Gives a grey image a new size over the buffer it has; the buffer must be large enough.
    static void change_image_dimension(common::BasicImage& image, int width, int height);
};

}  // namespace geometric

#endif
