#include "geometric/boundaries/anchor_lines.h"

#include <cmath>

#include "geometric/boundaries/line_intersection.h"

namespace geometric {
namespace anchor_lines {

double slope_of(double degrees) {
    return std::tan(degrees * 3.141592653589793 / 180.0);
}

GeolineBase through_at_slope(const Geocoordinate<float>& anchor, double degrees) {
    const double slope = slope_of(degrees);
    return GeolineBase(slope, -1.0, anchor.y - anchor.x * slope);
}

GeolineBase through_point(const Geocoordinate<double>& vp, const Geocoordinate<float>& anchor) {
    const double dx = vp.x - static_cast<double>(anchor.x);
    if (std::abs(dx) <= 2.220446049250313e-16) {
        return GeolineBase(1.0, 0.0, -vp.x);
    }
    const double slope = (vp.y - static_cast<double>(anchor.y)) / dx;
    return GeolineBase(slope, -1.0, vp.y - vp.x * slope);
}

GeolineBase vertical_at(double x) {
    return GeolineBase(1.0, 0.0, -x);
}

GeolineBase horizontal_at(double y) {
    return GeolineBase(0.0, -1.0, y);
}

void append_corners(const GeolineBase& left, const GeolineBase& right, const GeolineBase& top,
                    const GeolineBase& bottom, std::vector<Geocoordinate<float>>& corners) {
    corners.clear();
    const GeolineBase* pairs[4][2] = {
        {&top, &left}, {&top, &right}, {&bottom, &right}, {&bottom, &left}};
    for (const auto& pair : pairs) {
        Geocoordinate<float> corner(0.0f, 0.0f);
        intersect_lines(*pair[0], *pair[1], corner);
        corners.push_back(corner);
    }
}

}  // namespace anchor_lines
}  // namespace geometric
