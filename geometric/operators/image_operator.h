#ifndef QUORIMP_GEOMETRIC_OPERATORS_IMAGE_OPERATOR_H
#define QUORIMP_GEOMETRIC_OPERATORS_IMAGE_OPERATOR_H

#include <vector>

#include "common/basic_image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Global measures of a page. The operations read the image's fields directly; grey and colour
// rows are taken as packed.
class QUORIMP_EXPORT ImageOperator {
public:
    // The noise level of a grey page: the standard deviation, in single precision, of six square
    // patches at the four corners and the middle of both sides, of side min(height, width) / 100
    // and at least 7. Returns the third smallest of the six, so that patches that hit ink or the
    // page edge are ignored; the smallest goes to `*smallest` when that pointer is not null.
    static float calculate_background_std(const common::BasicImage& image, float* smallest);

    // The central part of a grey or colour page that holds `fraction` of its area, as a grey
    // patch one pixel wider and higher than the symmetric cut. A colour row is addressed with
    // three bytes per pixel while the patch width gives the number of bytes copied.
    static void fetch_image_patch_central(const common::BasicImage& image, double fraction,
                                          common::BasicImage& patch);

    // True if a binary image has a set pixel in its first or last row, or in the first or last
    // column of any other row. Padding bits are ignored.
    static bool image_border_contains_text(const common::BasicImage& image);

    // True if every byte of the buffer is 0; an image without bytes counts as background.
    static bool is_complete_background(const common::BasicImage& image);

    // The mean of all bytes of the buffer, padding included.
    static float mean(const common::BasicImage& image);

    // Appends the coordinates of every set pixel of a binary image, row by row, left to right.
    static void obtain_object_coordinates(const common::BasicImage& image, std::vector<int>& x,
                                          std::vector<int>& y);

    // b = a - b byte by byte, saturating at 0, in place in `b`.
    static void substract(const common::BasicImage& a, common::BasicImage& b);
};

}  // namespace geometric

#endif
