#ifndef QUORIMP_GEOMETRIC_OPERATORS_WEIGHTED_FILTERING_H
#define QUORIMP_GEOMETRIC_OPERATORS_WEIGHTED_FILTERING_H

#include "common/basic_image.h"
#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Light smoothing of grey images with a heavier centre.
class QUORIMP_EXPORT WeightedFiltering {
public:
    // Each inner pixel becomes (sum of its eight neighbours + weight * itself) / (8 + weight),
    // truncated; the one-pixel frame is copied unchanged.
    static void perform_filtering_3_by_3(const common::Image& input, common::BasicImage& output,
                                         int weight);
    // Does nothing: `output` is left as it is.
    static void perform_filtering_5_by_5(const common::Image& input, common::BasicImage& output,
                                         int weight);
};

}  // namespace geometric

#endif
