#include "geometric/boundaries/corner_calculator_parallel_mixed_projective.h"

#include "geometric/boundaries/corner_calculator_mixed_from_anchor_points.h"
#include "geometric/boundaries/corner_calculator_projective.h"

namespace geometric {

CornerCalculatorParallelMixedProjective::CornerCalculatorParallelMixedProjective(int width,
                                                                                 int height)
    : image_width(width), image_height(height) {}

bool CornerCalculatorParallelMixedProjective::estimate_mixed_virtual_corners(
    Direction direction, const Geocoordinate<double>& vp, double angle,
    std::vector<Geocoordinate<float>>& corners) const {
    using Point = Geocoordinate<float>;
    const CornerCalculatorProjective projective(image_width, image_height);
    const float right_x = static_cast<float>(image_width - 1);
    const float bottom_y = static_cast<float>(image_height - 1);
    Point left, right, top, bottom;

    if (direction != DIRECTION_HORIZONTAL) {
        if (!projective.calculate_vertical_virtual_reference_point(vp, left, right, top, bottom)) {
            return false;
        }
        if (angle > 90.0) {
            top.set(right_x, 0.0f);
            bottom.set(0.0f, bottom_y);
        } else {
            top.set(0.0f, 0.0f);
            bottom.set(right_x, bottom_y);
        }
        return CornerCalculatorMixedFromAnchorPoints::identifyVeritcalInputCorners(
            vp, left, right, top, bottom, corners, angle);
    }

    if (!projective.calculate_horizontal_virtual_reference_point(vp, left, right, top, bottom)) {
        return false;
    }
    if (angle > 90.0) {
        left.set(0.0f, 0.0f);
        right.set(right_x, bottom_y);
    } else {
        left.set(0.0f, bottom_y);
        right.set(right_x, 0.0f);
    }
    return CornerCalculatorMixedFromAnchorPoints::identifyHorizontalInputCorners(
        vp, left, right, top, bottom, corners, angle);
}

}  // namespace geometric
