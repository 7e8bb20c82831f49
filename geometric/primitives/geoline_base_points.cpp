#include "geometric/primitives/geoline_base_points.h"

#include <cmath>
#include <type_traits>

namespace geometric {

namespace {

// Float points whose x differ by no more than this are taken as one vertical line; int points
// must share x exactly.
template <typename T>
double vertical_tolerance() {
    return std::is_same<T, float>::value ? 1.1920928955078125e-7 : 0.0;
}

}  // namespace

template <typename T>
void GeolineBasePoints<T>::use_two_points(const Geocoordinate<T>& first,
                                          const Geocoordinate<T>& second) {
    // Differences are taken in the points' own type and only then widened.
    const T x_difference = first.x - second.x;
    const double dx = static_cast<double>(x_difference);
    if (std::abs(dx) <= vertical_tolerance<T>()) {
        a = 1.0;
        b = 0.0;
        c = -static_cast<double>(first.x);
    } else {
        const T y_difference = first.y - second.y;
        a = static_cast<double>(y_difference) / dx;
        b = -1.0;
        c = static_cast<double>(second.y) - static_cast<double>(second.x) * a;
    }
    points.clear();
    points.push_back(first);
    points.push_back(second);
}

template <typename T>
void GeolineBasePoints<T>::use_angle_and_point(double degrees, const Geocoordinate<T>& point) {
    a = std::tan(degrees * 3.141592653589793 / 180.0);
    b = -1.0;
    c = static_cast<double>(point.y) - static_cast<double>(point.x) * a;
    points.clear();
    points.push_back(point);
}

template <typename T>
void GeolineBasePoints<T>::clear() {
    GeolineBase::clear();
    points.clear();
}

template <typename T>
T GeolineBasePoints<T>::average_x_coordinate() const {
    T sum = 0;
    for (const Geocoordinate<T>& point : points) {
        sum += point.x;
    }
    return sum / static_cast<T>(points.size());
}

template <typename T>
T GeolineBasePoints<T>::average_y_coordinate() const {
    T sum = 0;
    for (const Geocoordinate<T>& point : points) {
        sum += point.y;
    }
    return sum / static_cast<T>(points.size());
}

template <typename T>
double GeolineBasePoints<T>::length() const {
    double total = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double dx = static_cast<double>(points[i].x) - static_cast<double>(points[i - 1].x);
        const double dy = static_cast<double>(points[i].y) - static_cast<double>(points[i - 1].y);
        total += std::sqrt(dx * dx + dy * dy);
    }
    return total;
}

template <typename T>
double GeolineBasePoints<T>::distance_between_linesegment_and_line(const GeolineBase& other) const {
    if (points.empty()) {
        return 0.0;
    }
    const double norm = std::sqrt(other.a * other.a + other.b * other.b);
    int sum = 0;
    for (const Geocoordinate<T>& point : points) {
        const double distance = std::abs(other.a * static_cast<double>(point.x) +
                                         other.b * static_cast<double>(point.y) + other.c) /
                                norm;
        sum = static_cast<int>(sum + distance);
    }
    return static_cast<double>(sum) / static_cast<double>(points.size());
}

template class GeolineBasePoints<int>;
template class GeolineBasePoints<float>;

}  // namespace geometric
