#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_CORRECTION_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_CORRECTION_H

#include "common/basic_image.h"
#include "geometric/rectification/correction_para.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// The correction of an input image into an output image. Neither image is owned.
//
// Construction may change the input object: a binary input is converted in place to grey (the
// object then owns a new grey buffer and the caller's bits stay as they were), and an RGB input
// is converted in place to luma and colour differences when the colour-difference interpolation
// is chosen.
class QUORIMP_EXPORT Correction {
public:
    Correction(common::BasicImage* input, common::BasicImage* output);
    virtual ~Correction();

    // Fills the output; true once it has run.
    virtual bool run_correction() = 0;
    virtual void obtain_output_img_dimension(int& width, int& height) = 0;

    CorrectionPara para;
    // The output owned its buffer at construction, so it may be reset to any size. Otherwise the
    // caller has sized it.
    bool output_owns_buffer;
    // The input's type before any conversion.
    common::ImageType input_type;
    common::BasicImage* input;
    common::BasicImage* output;
};

}  // namespace geometric

#endif
