#ifndef QUORIMP_GEOMETRIC_BINARIZATION_OTSU_BINARIZATION_H
#define QUORIMP_GEOMETRIC_BINARIZATION_OTSU_BINARIZATION_H

#include "geometric/binarization/binarization.h"

namespace geometric {

// One global threshold from the grey histogram, chosen by the largest between-class variance.
//
// Pixels above the threshold are bright. The one-pixel frame of the image is never thresholded;
// with `invert_output` (the default) every byte of the output is flipped at the end, so that dark
// pixels are set and the frame and the row padding come out set as well. Callers that need a
// clean border clear it themselves.
class QUORIMP_EXPORT OtsuBinarization : public Binarization {
public:
    OtsuBinarization(const common::Image* input, common::BasicImage* output);

    bool run_binarization_imp(common::Image* grey) override;

    // The threshold of a grey image without binarizing it: the highest grey value of the dark
    // class. Among equal variances the lowest value wins; an image of one grey value gives 0.
    static void obtain_threshold(const common::Image& image, unsigned char& threshold);

    bool invert_output;
};

}  // namespace geometric

#endif
