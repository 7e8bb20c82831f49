#include "geometric/boundaries/corner_calculator_parallel.h"

#include "geometric/boundaries/anchor_lines.h"
#include "geometric/boundaries/line_intersection.h"

namespace geometric {

CornerCalculatorParallel::CornerCalculatorParallel(int width, int height)
    : image_width(width), image_height(height) {}

void CornerCalculatorParallel::estimate_parallel_virtual_corners(
    bool use_horizontal, bool use_vertical, double horizontal_angle, double vertical_angle,
    std::vector<Point>& corners) const {
    const double right_x = static_cast<double>(image_width - 1);
    const double bottom_y = static_cast<double>(image_height - 1);

    GeolineBase left = anchor_lines::vertical_at(0.0);
    GeolineBase right = anchor_lines::vertical_at(right_x);
    if (use_vertical && vertical_angle != 90.0) {
        const double slope = anchor_lines::slope_of(vertical_angle);
        left = GeolineBase(slope, -1.0, 0.0);
        right = GeolineBase(slope, -1.0, 0.0);
        if (vertical_angle > 90.0) {
            right.c = bottom_y - right_x * slope;
        } else {
            // The right side passes through (0, 0) here, not through the top right corner; the
            // virtual page of a right-leaning vertical direction is built that way.
            left.c = bottom_y;
        }
    }

    GeolineBase top = anchor_lines::horizontal_at(0.0);
    GeolineBase bottom = anchor_lines::horizontal_at(bottom_y);
    if (use_horizontal && horizontal_angle != 0.0) {
        const double slope = anchor_lines::slope_of(horizontal_angle);
        top = GeolineBase(slope, -1.0, 0.0);
        bottom = GeolineBase(slope, -1.0, bottom_y);
        if (horizontal_angle > 90.0) {
            bottom.c = bottom_y - slope * right_x;
        } else {
            top.c = -slope * right_x;
        }
    }

    corners.resize(4);
    intersect_lines(left, top, corners[0]);
    intersect_lines(top, right, corners[1]);
    intersect_lines(right, bottom, corners[2]);
    intersect_lines(bottom, left, corners[3]);
}

void CornerCalculatorParallel::estimate_anchor_corners(bool use_horizontal, bool use_vertical,
                                                       double horizontal_angle,
                                                       double vertical_angle, Point& left,
                                                       Point& right, Point& top,
                                                       Point& bottom) const {
    std::vector<Point> corners;
    estimate_parallel_virtual_corners(use_horizontal, use_vertical, horizontal_angle,
                                      vertical_angle, corners);
    left = corners[1].y > corners[0].y ? corners[0] : corners[1];
    right = corners[2].y > corners[3].y ? corners[2] : corners[3];
    top = corners[0].x < corners[3].x ? corners[0] : corners[3];
    bottom = corners[1].x > corners[2].x ? corners[1] : corners[2];
}

}  // namespace geometric
