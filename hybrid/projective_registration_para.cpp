#include "hybrid/projective_registration_para.h"

namespace hybrid {

ProjectiveRegistrationPara::ProjectiveRegistrationPara()
    : maximum_distortion_ratio(2.5f),
      use_edge_corners(true),
      maximum_image_dimension(1500),
      angle_disparity_reference(0.2f),
      angle_disparity_horizontal(0.2f),
      angle_disparity_vertical(0.4f),
      corners_within_image(false),
      minimum_quadrilateral_angle(45.0f),
      minimum_quadrilateral_area(0.05f),
      minimum_largest_dimension_percentage(0.1) {}

}  // namespace hybrid
