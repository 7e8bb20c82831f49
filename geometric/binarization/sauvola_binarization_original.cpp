#include "geometric/binarization/sauvola_binarization_original.h"

#include <algorithm>

#include "geometric/binarization/border_reused_thresholds.h"
#include "geometric/binarization/local_statistics.h"

namespace geometric {

SauvolaBinarizationOriginal::SauvolaBinarizationOriginal(const common::Image* input,
                                                         common::BasicImage* output)
    : Binarization(input, output),
      window_width(21),
      window_height(21),
      k(0.07),
      keep_threshold_surface(false) {}

bool SauvolaBinarizationOriginal::run_binarization_imp(common::Image* grey) {
    const int width = grey->get_width();
    const int height = grey->get_height();
    const int smaller = std::min(width, height);
    int window;
    if (smaller >= 204) {
        window = 51;
    } else {
        window = smaller / 4;
        if (window % 2 == 0) {
            ++window;
        }
        window = std::max(window, 3);
    }
    window_width = window;
    window_height = window;

    if (keep_threshold_surface) {
        threshold_surface.reset(new Image<double>(width, height));
    }
    Image<double> mean;
    Image<double> deviation;
    calculate_local_mean_and_std(*grey, window_width, window_height, mean, deviation);

    const double weight = k;
    auto threshold_at = [&](int x, int y) {
        const double m = mean.at(x, y);
        const double s = deviation.at(x, y);
        return weight * m * 0.0078 * s + (1 - weight) * m;
    };
    threshold_with_border_reuse(*grey, window_width / 2, window_height / 2, threshold_at,
                                *output_image,
                                keep_threshold_surface ? threshold_surface.get() : nullptr);
    return true;
}

}  // namespace geometric
