#ifndef QUORIMP_GEOMETRIC_OPERATORS_AVERAGE_FILTERING_H
#define QUORIMP_GEOMETRIC_OPERATORS_AVERAGE_FILTERING_H

#include "common/basic_image.h"
#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Box means of grey images. The image is extended by mirroring around its edge pixels (edge
// pixels not repeated), and each output pixel is the mean of the kernel_width by kernel_height box
// whose top left corner is that pixel in the extended image, rounded to nearest with halves up.
// Kernel sides are at least 1, and half a kernel, rounded down, must stay below the image's side.
// Outputs are grey images of the input's size at 300 by 300 pixels per inch.
class QUORIMP_EXPORT AverageFiltering {
public:
    // Sliding column sums over a mirrored copy: linear in the pixels whatever the kernel.
    static void use_opencv_algorithm(const common::Image& input, common::BasicImage& output,
                                     int kernel_width, int kernel_height);
    // The same image through perform_averaging.
    static void use_summed_area_table(const common::Image& input, common::BasicImage& output,
                                      int kernel_width, int kernel_height);
    // The same image, working on strips of rows so that no mirrored copy of the whole image is
    // made.
    static void use_native(const common::Image& input, common::BasicImage& output, int kernel_width,
                           int kernel_height);

    // Box means of a packed source through a ring of integral rows. The box with its top left
    // corner at source (c, r) is written to target (c + kernel_width / 2 - offset_x,
    // r + kernel_height / 2 - offset_y), for every box that fits in the source and every target
    // position inside the target.
    static void perform_averaging(unsigned char* source, int source_width, int source_height,
                                  unsigned char* target, int target_width, int target_height,
                                  int kernel_width, int kernel_height, int offset_x, int offset_y);
    // As perform_averaging by direct summation, each mean rounded as trunc(s / n + 0.5) in double.
    static void sum_area_table(unsigned char* source, int source_width, int source_height,
                               unsigned char* target, int target_width, int target_height,
                               int kernel_width, int kernel_height, int offset_x, int offset_y);
};

}  // namespace geometric

#endif
