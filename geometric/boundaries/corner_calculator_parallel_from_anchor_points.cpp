#include "geometric/boundaries/corner_calculator_parallel_from_anchor_points.h"

#include "geometric/boundaries/anchor_lines.h"

namespace geometric {

bool CornerCalculatorParallelFromAnchorPoints::identifyInputCorners(
    bool use_horizontal, bool use_vertical, double horizontal_angle, double vertical_angle,
    const Point& left, const Point& right, const Point& top, const Point& bottom,
    std::vector<Point>& corners) {
    if (use_horizontal && use_vertical) {
        return identifyTwoDirectionInputCorners(horizontal_angle, vertical_angle, left, right, top,
                                                bottom, corners);
    }
    if (use_horizontal) {
        return identifyHorizontalInputCorners(horizontal_angle, left, right, top, bottom, corners);
    }
    if (use_vertical) {
        return identifyVerticalInputCorners(vertical_angle, left, right, top, bottom, corners);
    }
    return false;
}

bool CornerCalculatorParallelFromAnchorPoints::identifyHorizontalInputCorners(
    double angle, const Point& left, const Point& right, const Point& top, const Point& bottom,
    std::vector<Point>& corners) {
    anchor_lines::append_corners(anchor_lines::vertical_at(left.x),
                                 anchor_lines::vertical_at(right.x),
                                 anchor_lines::through_at_slope(top, angle),
                                 anchor_lines::through_at_slope(bottom, angle), corners);
    return true;
}

bool CornerCalculatorParallelFromAnchorPoints::identifyVerticalInputCorners(
    double angle, const Point& left, const Point& right, const Point& top, const Point& bottom,
    std::vector<Point>& corners) {
    anchor_lines::append_corners(
        anchor_lines::through_at_slope(left, angle), anchor_lines::through_at_slope(right, angle),
        anchor_lines::horizontal_at(top.y), anchor_lines::horizontal_at(bottom.y), corners);
    return true;
}

bool CornerCalculatorParallelFromAnchorPoints::identifyTwoDirectionInputCorners(
    double horizontal_angle, double vertical_angle, const Point& left, const Point& right,
    const Point& top, const Point& bottom, std::vector<Point>& corners) {
    anchor_lines::append_corners(anchor_lines::through_at_slope(left, vertical_angle),
                                 anchor_lines::through_at_slope(right, vertical_angle),
                                 anchor_lines::through_at_slope(top, horizontal_angle),
                                 anchor_lines::through_at_slope(bottom, horizontal_angle), corners);
    return true;
}

}  // namespace geometric
