#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_GEOLINE_BASE_POINTS_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_GEOLINE_BASE_POINTS_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A line that remembers the points it was made from, in the order they were given. Built for int
// and float points.
template <typename T>
class QUORIMP_EXPORT GeolineBasePoints : public GeolineBase {
public:
    GeolineBasePoints() = default;
    GeolineBasePoints(const GeolineBasePoints& other) = default;
    GeolineBasePoints& operator=(const GeolineBasePoints& other) = default;
    // Takes the coefficients only; `points` stays empty.
    explicit GeolineBasePoints(const GeolineBase& line) : GeolineBase(line) {}

    // The line through two points, which become `points`. Two points count as vertical when their
    // x differ by no more than the float epsilon (float points) or not at all (int points).
    void use_two_points(const Geocoordinate<T>& first, const Geocoordinate<T>& second);

    // The line through `point` at `degrees` from the x axis; it cannot be vertical.
    void use_angle_and_point(double degrees, const Geocoordinate<T>& point);

    // Zero coefficients and no points; the points keep their capacity.
    void clear();

    // Means of the point coordinates, truncated for int points. An empty line has no mean.
    T average_x_coordinate() const;
    T average_y_coordinate() const;

    // Length of the polyline through `points`; 0 for fewer than two points.
    double length() const;

    Geocoordinate<T>& first_point() { return points[0]; }
    const Geocoordinate<T>& first_point() const { return points[0]; }
    Geocoordinate<T>& second_point() { return points[1]; }
    const Geocoordinate<T>& second_point() const { return points[1]; }

    // Mean distance of `points` from `other`. The distances are summed into an integer that is
    // truncated after each addition, so points each less than a pixel away count as 0. No points
    // give 0.
    double distance_between_linesegment_and_line(const GeolineBase& other) const;

    std::vector<Geocoordinate<T>> points;
};

extern template class GeolineBasePoints<int>;
extern template class GeolineBasePoints<float>;

}  // namespace geometric

#endif
