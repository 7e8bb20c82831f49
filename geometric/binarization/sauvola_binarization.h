#ifndef QUORIMP_GEOMETRIC_BINARIZATION_SAUVOLA_BINARIZATION_H
#define QUORIMP_GEOMETRIC_BINARIZATION_SAUVOLA_BINARIZATION_H

#include "geometric/binarization/binarization.h"
#include "geometric/binarization/sauvola_para.h"

namespace geometric {

// The library's working binarization: a streaming local Sauvola threshold on a ring of integral
// rows, after a smoothing pre-pass that changes the working copy (so `obtain_grayscale_img`
// gives the smoothed image). Throws `Geometricexception` "The window size is too large" for an
// image too small for the smallest ring. `para` is never changed by a run.
class QUORIMP_EXPORT SauvolaBinarization : public Binarization {
public:
    SauvolaBinarization(const common::Image* input, common::BasicImage* output);

    bool run_binarization_imp(common::Image* grey) override;

    // The same as `run_binarization_imp`.
    bool perform_quick_sauvola_binarization(common::Image* grey);

    SauvolaPara para;
};

}  // namespace geometric

#endif
