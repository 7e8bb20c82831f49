#include "geometric/binarization/wolf_binarization_original.h"

#include <cstddef>

#include "geometric/binarization/border_reused_thresholds.h"
#include "geometric/binarization/image.h"
#include "geometric/binarization/local_statistics.h"

namespace geometric {

WolfBinarizationOriginal::WolfBinarizationOriginal(const common::Image* input,
                                                   common::BasicImage* output)
    : Binarization(input, output), window_width(21), window_height(21), k(0.07) {}

bool WolfBinarizationOriginal::run_binarization_imp(common::Image* grey) {
    const int width = grey->get_width();
    const int height = grey->get_height();
    Image<double> mean;
    Image<double> deviation;
    calculate_local_mean_and_std(*grey, window_width, window_height, mean, deviation);

    int lowest = 255;
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = grey->get_row(y);
        for (int x = 0; x < width; ++x) {
            if (row[x] < lowest) {
                lowest = row[x];
            }
        }
    }
    // Deviations that are not a number (a rounding step below a zero variance) never win.
    double largest_deviation = 0.0;
    const std::size_t count = static_cast<std::size_t>(deviation.width) * deviation.height;
    for (std::size_t i = 0; i < count; ++i) {
        if (deviation.data[i] > largest_deviation) {
            largest_deviation = deviation.data[i];
        }
    }

    const double weight = k;
    const double darkest = lowest;
    auto threshold_at = [&](int x, int y) {
        const double m = mean.at(x, y);
        const double s = deviation.at(x, y);
        return (s / largest_deviation - 1) * weight * (m - darkest) + m;
    };
    threshold_with_border_reuse(*grey, window_width / 2, window_height / 2, threshold_at,
                                *output_image, nullptr);
    return true;
}

}  // namespace geometric
