#include "geometric/rectification/correction_para.h"

namespace geometric {

CorrectionPara::CorrectionPara(common::ImageType input_type)
    : interpolation(INTERPOLATION_NEAREST) {
    switch (input_type) {
        case common::IMAGE_TYPE_BINARY:
            interpolation = INTERPOLATION_NEAREST;
            break;
        case common::IMAGE_TYPE_GREY:
        case common::IMAGE_TYPE_BGRA:
            interpolation = INTERPOLATION_LINEAR;
            break;
        case common::IMAGE_TYPE_RGB:
            interpolation = INTERPOLATION_COLOR_LINEAR;
            break;
        default:
            break;
    }
}

}  // namespace geometric
