#ifndef QUORIMP_GEOMETRIC_OPERATORS_BINARY_IMAGE_OPERATOR_H
#define QUORIMP_GEOMETRIC_OPERATORS_BINARY_IMAGE_OPERATOR_H

#include "quorimp/quorimp_export.h"

namespace geometric {

// Pixel questions on packed binary rows: one bit per pixel, leftmost pixel in the most significant
// bit, 1 for foreground. A row is given by the address of its first byte; the rows around it are
// reached with the row stride in bytes.
class QUORIMP_EXPORT BinaryImageOperator {
public:
    static bool is_background_pixel(int x, unsigned char* row);

    // True if any of the `length` pixels from column `x` is set.
    static bool check_black_run(unsigned char* row, int x, int length);

    // True if one of the neighbours of (x, y) that lie inside the image is background.
    static bool in_the_blob_contour(unsigned char* row, int x, int y, int height, int width,
                                    int stride);

    // The mean grey value of the background pixels on the outline of the square of half side
    // `half` around (x, y), clipped to the image; only the outline is sampled, never the inside.
    // `binary_row` and `grey_row` are the rows of y; grey rows are `width` bytes long. Returns -1
    // when no sampled pixel is background.
    static int calculate_background_average(unsigned char* binary_row, unsigned char* grey_row,
                                            int x, int y, int height, int width, int stride,
                                            int half);
};

}  // namespace geometric

#endif
