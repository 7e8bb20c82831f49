#include "geometric/primitives/line_distance_calculator.h"

#include <cmath>

namespace geometric {

namespace {

// Where `line` crosses the y = 0 axis (vertical direction) or the x = 0 axis (otherwise).
float axis_cut(const GeolineBase& line, Direction direction) {
    if (direction == DIRECTION_VERTICAL) {
        return static_cast<float>(-(line.b * 0.0 + line.c) / line.a);
    }
    return static_cast<float>(-(line.a * 0.0 + line.c) / line.b);
}

}  // namespace

double LineDistanceCalculator::parallel_line_distance(const GeolineBase& first,
                                                      const GeolineBase& second) {
    return std::abs(first.c - second.c) / std::sqrt(first.a * first.a + first.b * first.b);
}

float LineDistanceCalculator::nearly_parallel_line_distance_intersection_method(
    const GeolineBase& first, const GeolineBase& second, bool& sign, Direction direction) {
    const float difference = axis_cut(first, direction) - axis_cut(second, direction);
    if (difference < 0.0f) {
        sign = true;
        return -difference;
    }
    sign = false;
    return difference;
}

}  // namespace geometric
