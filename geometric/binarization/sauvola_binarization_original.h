#ifndef QUORIMP_GEOMETRIC_BINARIZATION_SAUVOLA_BINARIZATION_ORIGINAL_H
#define QUORIMP_GEOMETRIC_BINARIZATION_SAUVOLA_BINARIZATION_ORIGINAL_H

#include <boost/shared_ptr.hpp>

#include "geometric/binarization/binarization.h"
#include "geometric/binarization/image.h"

namespace geometric {

// Sauvola's threshold in its textbook form, on full-image statistics in double:
// T = k * m * 0.0078 * s + (1 - k) * m, and a pixel darker than T is foreground. The square
// window is chosen from the image size by every run: 51 from a smaller side of 204 on, else a
// quarter of the smaller side made odd, at least 3. Pixels closer to the border than half a
// window take the threshold of the nearest pixel where the whole window fits.
class QUORIMP_EXPORT SauvolaBinarizationOriginal : public Binarization {
public:
    SauvolaBinarizationOriginal(const common::Image* input, common::BasicImage* output);

    bool run_binarization_imp(common::Image* grey) override;

    int window_width;
    int window_height;
    double k;
    bool keep_threshold_surface;  // store every pixel's threshold in `threshold_surface`
    boost::shared_ptr<Image<double>> threshold_surface;
};

}  // namespace geometric

#endif
