#include "geometric/rectification/correction.h"

#include "geometric/rectification/color_transform.h"

namespace geometric {

Correction::Correction(common::BasicImage* input, common::BasicImage* output)
    : para(input->image_type),
      output_owns_buffer(output->owns_data != 0),
      input_type(input->image_type),
      input(input),
      output(output) {
    if (input_type == common::IMAGE_TYPE_RGB && para.interpolation == INTERPOLATION_COLOR_YUV) {
        ColorTransform(ColorTransform::RGB_TO_YUV).trans_RGB2YUV(*input);
    }
    if (input_type == common::IMAGE_TYPE_BINARY) {
        input->binary_to_grey_in_place();
    }
}

Correction::~Correction() = default;

}  // namespace geometric
