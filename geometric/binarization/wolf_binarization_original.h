#ifndef QUORIMP_GEOMETRIC_BINARIZATION_WOLF_BINARIZATION_ORIGINAL_H
#define QUORIMP_GEOMETRIC_BINARIZATION_WOLF_BINARIZATION_ORIGINAL_H

#include "geometric/binarization/binarization.h"

namespace geometric {

// Wolf's threshold in its textbook form, on full-image statistics in double:
// T = (s / largest_s - 1) * k * (m - lowest) + m, with the darkest grey value of the image and
// the largest local deviation. A pixel darker than T is foreground. The window is taken as it
// stands in the fields; pixels closer to the border than half a window take the threshold of the
// nearest pixel where the whole window fits.
class QUORIMP_EXPORT WolfBinarizationOriginal : public Binarization {
public:
    WolfBinarizationOriginal(const common::Image* input, common::BasicImage* output);

    bool run_binarization_imp(common::Image* grey) override;

    int window_width;
    int window_height;
    double k;
};

}  // namespace geometric

#endif
