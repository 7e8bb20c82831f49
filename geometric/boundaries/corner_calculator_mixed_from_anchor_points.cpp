#include "geometric/boundaries/corner_calculator_mixed_from_anchor_points.h"

#include "geometric/boundaries/anchor_lines.h"

namespace geometric {

namespace {

// Sides at a given angle through their anchors. Within 0.4 degrees of 90 a side is made exactly
// vertical, where the slope would run away.
GeolineBase side_at_angle(const Geocoordinate<float>& anchor, double angle) {
    if (angle < 89.6 || angle > 90.4) {
        return anchor_lines::through_at_slope(anchor, angle);
    }
    return anchor_lines::vertical_at(anchor.x);
}

}  // namespace

bool CornerCalculatorMixedFromAnchorPoints::identifyInputCorners(
    const VanishingPoint& horizontal_vp, const VanishingPoint& vertical_vp, bool use_horizontal,
    bool use_vertical, const Point& left, const Point& right, const Point& top, const Point& bottom,
    std::vector<Point>& corners, double horizontal_angle, double vertical_angle) {
    if (use_horizontal && use_vertical) {
        return identifyTwoDirectionInputCorners(horizontal_vp, vertical_vp, left, right, top,
                                                bottom, corners);
    }
    if (use_horizontal) {
        return identifyHorizontalInputCorners(horizontal_vp, left, right, top, bottom, corners,
                                              vertical_angle);
    }
    if (use_vertical) {
        return identifyVeritcalInputCorners(vertical_vp, left, right, top, bottom, corners,
                                            horizontal_angle);
    }
    return false;
}

bool CornerCalculatorMixedFromAnchorPoints::identifyHorizontalInputCorners(
    const VanishingPoint& vp, const Point& left, const Point& right, const Point& top,
    const Point& bottom, std::vector<Point>& corners, double angle) {
    anchor_lines::append_corners(side_at_angle(left, angle), side_at_angle(right, angle),
                                 anchor_lines::through_point(vp, top),
                                 anchor_lines::through_point(vp, bottom), corners);
    return true;
}

bool CornerCalculatorMixedFromAnchorPoints::identifyVeritcalInputCorners(
    const VanishingPoint& vp, const Point& left, const Point& right, const Point& top,
    const Point& bottom, std::vector<Point>& corners, double angle) {
    anchor_lines::append_corners(anchor_lines::through_point(vp, left),
                                 anchor_lines::through_point(vp, right), side_at_angle(top, angle),
                                 side_at_angle(bottom, angle), corners);
    return true;
}

bool CornerCalculatorMixedFromAnchorPoints::identifyTwoDirectionInputCorners(
    const VanishingPoint& horizontal_vp, const VanishingPoint& vertical_vp, const Point& left,
    const Point& right, const Point& top, const Point& bottom, std::vector<Point>& corners) {
    anchor_lines::append_corners(anchor_lines::through_point(vertical_vp, left),
                                 anchor_lines::through_point(vertical_vp, right),
                                 anchor_lines::through_point(horizontal_vp, top),
                                 anchor_lines::through_point(horizontal_vp, bottom), corners);
    return true;
}

}  // namespace geometric
