#include "geometric/boundaries/corner_calculator_projective.h"

#include "geometric/boundaries/corner_calculator_mixed_from_anchor_points.h"

namespace geometric {

namespace {

struct ImageCorners {
    ImageCorners(int width, int height)
        : top_left(0.0f, 0.0f),
          top_right(static_cast<float>(width - 1), 0.0f),
          bottom_right(static_cast<float>(width - 1), static_cast<float>(height - 1)),
          bottom_left(0.0f, static_cast<float>(height - 1)) {}

    Geocoordinate<float> top_left;
    Geocoordinate<float> top_right;
    Geocoordinate<float> bottom_right;
    Geocoordinate<float> bottom_left;
};

}  // namespace

CornerCalculatorProjective::CornerCalculatorProjective(int width, int height)
    : image_width(width), image_height(height) {}

void CornerCalculatorProjective::obtain_reference_corners(std::vector<Point>& corners) const {
    const ImageCorners image(image_width, image_height);
    corners.assign({image.top_left, image.top_right, image.bottom_right, image.bottom_left});
}

bool CornerCalculatorProjective::estimate_virtual_corners(const VanishingPoint& horizontal_vp,
                                                          const VanishingPoint& vertical_vp,
                                                          bool use_horizontal, bool use_vertical,
                                                          std::vector<Point>& corners) const {
    if (use_horizontal && use_vertical) {
        return estimate_two_direction_virtual_corners(horizontal_vp, vertical_vp, corners);
    }
    if (use_horizontal) {
        return estimate_horizontal_virtual_corners(horizontal_vp, corners);
    }
    if (use_vertical) {
        return estimate_vertical_virtual_corners(vertical_vp, corners);
    }
    return false;
}

bool CornerCalculatorProjective::estimate_two_direction_virtual_corners(
    const VanishingPoint& horizontal_vp, const VanishingPoint& vertical_vp,
    std::vector<Point>& corners) const {
    Point left, right, top, bottom;
    if (!calculate_two_direction_virtual_reference_point(horizontal_vp, vertical_vp, left, right,
                                                         top, bottom)) {
        return false;
    }
    return CornerCalculatorMixedFromAnchorPoints::identifyTwoDirectionInputCorners(
        horizontal_vp, vertical_vp, left, right, top, bottom, corners);
}

bool CornerCalculatorProjective::estimate_horizontal_virtual_corners(
    const VanishingPoint& vp, std::vector<Point>& corners) const {
    Point left, right, top, bottom;
    if (!calculate_horizontal_virtual_reference_point(vp, left, right, top, bottom)) {
        return false;
    }
    return CornerCalculatorMixedFromAnchorPoints::identifyHorizontalInputCorners(
        vp, left, right, top, bottom, corners, 90.0);
}

bool CornerCalculatorProjective::estimate_vertical_virtual_corners(
    const VanishingPoint& vp, std::vector<Point>& corners) const {
    Point left, right, top, bottom;
    if (!calculate_vertical_virtual_reference_point(vp, left, right, top, bottom)) {
        return false;
    }
    return CornerCalculatorMixedFromAnchorPoints::identifyVeritcalInputCorners(
        vp, left, right, top, bottom, corners, 0.0);
}

bool CornerCalculatorProjective::estimate_cp_pairs(const VanishingPoint& vp, Direction direction,
                                                   std::vector<Point>& virtual_corners,
                                                   std::vector<Point>& reference_corners) const {
    obtain_reference_corners(reference_corners);
    if (direction != DIRECTION_HORIZONTAL) {
        return estimate_vertical_virtual_corners(vp, virtual_corners);
    }
    return estimate_horizontal_virtual_corners(vp, virtual_corners);
}

bool CornerCalculatorProjective::calculate_horizontal_virtual_reference_point(
    const VanishingPoint& vp, Point& left, Point& right, Point& top, Point& bottom) const {
    const ImageCorners image(image_width, image_height);
    switch (estimate_vp_position(vp)) {
        case VP_POSITION_ABOVE_LEFT:
        case VP_POSITION_BELOW_RIGHT:
            top = image.top_right;
            bottom = image.bottom_left;
            break;
        case VP_POSITION_ABOVE_RIGHT:
        case VP_POSITION_BELOW_LEFT:
            top = image.top_left;
            bottom = image.bottom_right;
            break;
        case VP_POSITION_LEFT:
            top = image.top_left;
            bottom = image.bottom_left;
            break;
        case VP_POSITION_RIGHT:
            top = image.top_right;
            bottom = image.bottom_right;
            break;
        default:
            return false;
    }
    left = image.top_left;
    right = image.top_right;
    return true;
}

bool CornerCalculatorProjective::calculate_vertical_virtual_reference_point(
    const VanishingPoint& vp, Point& left, Point& right, Point& top, Point& bottom) const {
    const ImageCorners image(image_width, image_height);
    switch (estimate_vp_position(vp)) {
        case VP_POSITION_ABOVE_LEFT:
        case VP_POSITION_BELOW_RIGHT:
            left = image.bottom_left;
            right = image.top_right;
            break;
        case VP_POSITION_ABOVE:
            left = image.top_left;
            right = image.top_right;
            break;
        case VP_POSITION_ABOVE_RIGHT:
        case VP_POSITION_BELOW_LEFT:
            left = image.top_left;
            right = image.bottom_right;
            break;
        case VP_POSITION_BELOW:
            left = image.bottom_left;
            right = image.bottom_right;
            break;
        default:
            return false;
    }
    top = image.top_left;
    bottom = image.bottom_left;
    return true;
}

bool CornerCalculatorProjective::calculate_two_direction_virtual_reference_point(
    const VanishingPoint& horizontal_vp, const VanishingPoint& vertical_vp, Point& left,
    Point& right, Point& top, Point& bottom) const {
    Point unused_left, unused_right, unused_top, unused_bottom;
    if (!calculate_vertical_virtual_reference_point(vertical_vp, left, right, unused_top,
                                                    unused_bottom)) {
        return false;
    }
    return calculate_horizontal_virtual_reference_point(horizontal_vp, unused_left, unused_right,
                                                        top, bottom);
}

CornerCalculatorProjective::VpPosition CornerCalculatorProjective::estimate_vp_position(
    const VanishingPoint& vp) const {
    const double right = static_cast<double>(image_width - 1);
    const double bottom = static_cast<double>(image_height - 1);
    const double width = static_cast<double>(image_width);
    const double height = static_cast<double>(image_height);
    // Column 0, 1 or 2 and row 0, 1 or 2 of the zone table; -1 where a coordinate fits none.
    int column = -1;
    if (vp.x < 0.0) {
        column = 0;
    } else if (vp.x <= right) {
        column = 1;
    } else if (vp.x >= width) {
        column = 2;
    }
    int row = -1;
    if (vp.y < 0.0) {
        row = 0;
    } else if (vp.y <= bottom) {
        row = 1;
    } else if (vp.y >= height) {
        row = 2;
    }
    if (column < 0 || row < 0) {
        return VP_POSITION_BELOW;
    }
    return static_cast<VpPosition>(3 * row + column);
}

}  // namespace geometric
