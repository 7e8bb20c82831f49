// C functions of the rectification that need no handle.

#include <vector>

#include "geometric/rectification/control_points.h"
#include "geometric/rectification/control_points_transformer.h"
#include "geometric/rectification/projective_correction.h"
#include "quorimp/image_c_api_transformer.h"
#include "quorimp/quorimp.h"

extern "C" {

int obtain_output_image_dimension(const ControlPointCorners* corners, int* width, int* height) {
    std::vector<geometric::Geocoordinate<float>> points;
    geometric::ControlPointsTransformer<float>::transform(*corners, points);
    geometric::calculate_output_dimension(points, *width, *height);
    return 0;
}

int perform_projective_correction(const ControlPointCorners* corners, const ImageCApi* input,
                                  ImageCApi* output) {
    std::vector<geometric::Geocoordinate<float>> points;
    geometric::ControlPointsTransformer<float>::transform(*corners, points);
    // Both images wrap the caller's buffers. The output does not own its buffer, so it is filled
    // at the size the caller gave it; a binary input is converted to grey inside the wrapper, into
    // a buffer of its own, and the caller's bits are left as they are.
    common::BasicImage output_image;
    common::BasicImage input_image;
    quorimp::ImageCApiTransformer::transform_c_api_image_to_image(*output, output_image);
    quorimp::ImageCApiTransformer::transform_c_api_image_to_image(*input, input_image);
    geometric::ProjectiveCorrection correction(&input_image, &output_image);
    correction.set_control_points(points);
    correction.run_correction();
    return 0;
}
}
