#include "geometric/operators/image_downsampling_rate_calculator.h"

#include <algorithm>

namespace geometric {

int ImageDownsamplingRateCalculator::calculate_downsampling_rate(const common::Image& image,
                                                                 int limit) {
    int longer = std::max(image.get_width(), image.get_height());
    if (longer <= limit) {
        return 1;
    }
    int rate = 1;
    while (longer > limit) {
        ++rate;
        longer /= 2;
    }
    return rate;
}

}  // namespace geometric
