#ifndef QUORIMP_GEOMETRIC_OPERATORS_GEO_MORPHOLOGICAL_H
#define QUORIMP_GEOMETRIC_OPERATORS_GEO_MORPHOLOGICAL_H

#include "common/basic_image.h"
#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Morphology on packed binary images (set bit = black). The one-dimensional operations walk runs,
// so their cost follows the amount of ink and not `size`: the row forms take the runs of each row
// (all of them before the row changes), the column forms find the rows where a column changes by
// XOR of consecutive rows and remember per column where its current stretch began.
//
// The range forms act in place on the bit columns [left, right) and the rows [top, bottom). Run
// columns are relative to `left`; only `left` 0 is in use.
class QUORIMP_EXPORT GeoMorphological {
public:
    // Grows every run by `size` columns on each side, never below `left` nor at or beyond `right`.
    static void dilate_x(common::Image& image, int size);
    static void dilate_x(int size, unsigned char* data, int stride, int left, int right, int top,
                         int bottom);

    // Takes `size` columns off each end of every run; a run of at most 2 * size vanishes. The
    // image border counts as background.
    static void erode_x(common::Image& image, int size);
    static void erode_x(int size, unsigned char* data, int stride, int left, int right, int top,
                        int bottom);

    // A length filter, not an erosion followed by a dilation: clears every run shorter than
    // `size`; a run of exactly `size` stays.
    static void open_x(common::Image& image, int size);
    static void open_x(int size, unsigned char* data, int stride, int left, int right, int top,
                       int bottom);

    // The vertical forms. The rows are compared as they stand, so a fill that reaches below the
    // current row takes part in the later comparisons.
    static void dilate_y(common::Image& image, int size);
    static void dilate_y(int size, unsigned char* data, int stride, int left, int right, int top,
                         int bottom);
    static void erode_y(common::Image& image, int size);
    static void erode_y(int size, unsigned char* data, int stride, int left, int right, int top,
                        int bottom);
    static void open_y(common::Image& image, int size);
    static void open_y(int size, unsigned char* data, int stride, int left, int right, int top,
                       int bottom);

    // An `output` without a buffer is first reset to the input's size as a binary image at 300 by
    // 300 pixels per inch.
    static void dilate_xy(const common::Image& input, common::BasicImage& output);

    // ORs into every output pixel its eight input neighbours; the input's own pixels are not
    // copied, and what `output` held stays. Whole bytes of `stride` are walked, so the dilation
    // spreads into the padding bits. `input` and `output` must not overlap.
    static void dilate_xy(const unsigned char* input, unsigned char* output, int height,
                          int stride);

    // a |= b, a ^= b and a &= ~b over every byte of every row, padding included. Both images have
    // the size and stride of `a`.
    static void or2(common::Image& a, const common::Image& b);
    static void xor2(common::Image& a, const common::Image& b);
    static void remove_denotation(common::Image& a, const common::Image& b);
};

}  // namespace geometric

#endif
