#ifndef QUORIMP_GEOMETRIC_OPERATORS_IMAGE_DOWNSAMPLING_RATE_CALCULATOR_H
#define QUORIMP_GEOMETRIC_OPERATORS_IMAGE_DOWNSAMPLING_RATE_CALCULATOR_H

#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

class QUORIMP_EXPORT ImageDownsamplingRateCalculator {
public:
    // The factor by which to reduce `image` so that its longer side comes near `limit`: 1 when
    // it is within the limit, and otherwise one more than the number of halvings it takes to get
    // there. The factor is a block size, not a power of two, so a side of 5000 with a limit of
    // 1000 gives 4 and a reduced side of 1250: the limit is a trigger, not a guarantee.
    static int calculate_downsampling_rate(const common::Image& image, int limit);
};

}  // namespace geometric

#endif
