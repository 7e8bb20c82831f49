#ifndef QUORIMP_GEOMETRIC_BINARIZATION_BORDER_REUSED_THRESHOLDS_H
#define QUORIMP_GEOMETRIC_BINARIZATION_BORDER_REUSED_THRESHOLDS_H

#include <functional>

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/binarization/image.h"

namespace geometric {

// Thresholds a grey image whose thresholds are computed only where the whole box fits: columns
// half_width to width - half_width - 1 of rows half_height to height - half_height - 1. Every
// other pixel takes the threshold of the nearest computed column of the nearest computed row, and
// is compared with its own grey value. A pixel is foreground (its bit set in `output`) when the
// threshold is strictly above its value. With `surface` every pixel's threshold is stored. An
// image with no computed row or column stays background. Shared by the textbook methods; not part
// of the library's interface.
void threshold_with_border_reuse(const common::Image& grey, int half_width, int half_height,
                                 const std::function<double(int x, int y)>& threshold_at,
                                 common::BasicImage& output, Image<double>* surface);

}  // namespace geometric

#endif
