// C functions of the rectification that need no handle.

#include <vector>

#include "geometric/rectification/control_points.h"
#include "geometric/rectification/control_points_transformer.h"
#include "quorimp/quorimp.h"

extern "C" {

int obtain_output_image_dimension(const ControlPointCorners* corners, int* width, int* height) {
    std::vector<geometric::Geocoordinate<float>> points;
    geometric::ControlPointsTransformer<float>::transform(*corners, points);
    geometric::calculate_output_dimension(points, *width, *height);
    return 0;
}
}
