#include "geometric/boundaries/line_intersection.h"

#include <cmath>

namespace geometric {

namespace {

template <typename T>
bool intersect(const GeolineBase& first, const GeolineBase& second, Geocoordinate<T>& point) {
    const double determinant = second.b * first.a - first.b * second.a;
    if (std::abs(determinant) <= 2.220446049250313e-16) {
        return false;
    }
    point.x = static_cast<T>((first.b * second.c - second.b * first.c) / determinant);
    point.y = static_cast<T>((second.a * first.c - first.a * second.c) / determinant);
    return true;
}

}  // namespace

bool intersect_lines(const GeolineBase& first, const GeolineBase& second,
                     Geocoordinate<float>& point) {
    return intersect(first, second, point);
}

bool intersect_lines(const GeolineBase& first, const GeolineBase& second,
                     Geocoordinate<double>& point) {
    return intersect(first, second, point);
}

}  // namespace geometric
