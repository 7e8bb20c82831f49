#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_CORRECTION_PARA_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_CORRECTION_PARA_H

#include "common/image.h"
#include "geometric/rectification/sampling.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Parameters of the correction of an image.
class QUORIMP_EXPORT CorrectionPara {
public:
    // Nearest for binary images, which are corrected as grey and thresholded afterwards; linear for
    // grey and BGRA; colour linear for RGB. Images of any other type get nearest, which reads one
    // byte and so suits any pixel size.
    explicit CorrectionPara(common::ImageType input_type);

    InterpolationType interpolation;
};

}  // namespace geometric

#endif
