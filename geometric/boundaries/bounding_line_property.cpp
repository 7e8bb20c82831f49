#include "geometric/boundaries/bounding_line_property.h"

namespace geometric {

BoundingLineProperty::BoundingLineProperty()
    : horizontal_distance(0.0),
      vertical_distance(0.0),
      left_index(-1),
      right_index(-1),
      top_index(-1),
      bottom_index(-1),
      horizontal_angle_disparity(45.0),
      vertical_angle_disparity(45.0) {}

bool BoundingLineProperty::is_four_boundaries_complete() const {
    return horizontal_indices.size() + vertical_indices.size() == 4;
}

}  // namespace geometric
