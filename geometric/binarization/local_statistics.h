#ifndef QUORIMP_GEOMETRIC_BINARIZATION_LOCAL_STATISTICS_H
#define QUORIMP_GEOMETRIC_BINARIZATION_LOCAL_STATISTICS_H

#include "common/image.h"
#include "geometric/binarization/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// The mean and the standard deviation of every pixel of a grey image over a `window_width` by
// `window_height` box that starts window_width / 2 columns to the left and window_height / 2 rows
// above the pixel. Near the borders the box is cut at the image border and divided by the number
// of pixels left in it. In double; the variance is E[v^2] - E[v]^2, and a negative one gives a
// deviation that is not a number. Maps not of the image's size are reallocated.
QUORIMP_EXPORT void calculate_local_mean_and_std(const common::Image& grey, int window_width,
                                                 int window_height, Image<double>& mean,
                                                 Image<double>& deviation);
}  // namespace geometric

#endif
