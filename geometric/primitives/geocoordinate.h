#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_GEOCOORDINATE_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_GEOCOORDINATE_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "quorimp/quorimp_export.h"

namespace geometric {

// A point of an image: x to the right, y downward. Used with int, float and double.
template <typename T>
class Geocoordinate {
public:
    Geocoordinate() : x(0), y(0) {}
    Geocoordinate(T x, T y) : x(x), y(y) {}
    explicit Geocoordinate(T value) : x(value), y(value) {}

    void set(T new_x, T new_y) {
        x = new_x;
        y = new_y;
    }

    // The nearest of `points` to this point. Differences and their squares are taken in float,
    // the sum and the root in double, and the root is narrowed to float; `index` is the first
    // position of the smallest distance. An empty list leaves both outputs untouched.
    void nearest_distance(const std::vector<Geocoordinate<T>>& points, float& distance,
                          int& index) const {
        search_nearest(points, false, distance, index);
    }

    // As nearest_distance, but every point equal to this one counts as 1e10 away.
    void nearest_distance_exclude_itself(const std::vector<Geocoordinate<T>>& points,
                                         float& distance, int& index) const {
        search_nearest(points, true, distance, index);
    }

    // As nearest_distance, but the positions listed in `excluded` take no part. `excluded` is
    // sorted in place, and `index` refers to the list as given. With nothing left, the distance
    // is 10000 and `index` is not written.
    void nearest_distance_with_selected_points(const std::vector<Geocoordinate<T>>& points,
                                               float& distance, int& index,
                                               std::vector<int>& excluded) const;

    T x;
    T y;

private:
    float distance_to(const Geocoordinate<T>& other) const {
        const float dx = static_cast<float>(other.x) - static_cast<float>(x);
        const float dy = static_cast<float>(other.y) - static_cast<float>(y);
        const float dx2 = dx * dx;
        const float dy2 = dy * dy;
        return static_cast<float>(std::sqrt(static_cast<double>(dx2) + static_cast<double>(dy2)));
    }

    void search_nearest(const std::vector<Geocoordinate<T>>& points, bool exclude_itself,
                        float& distance, int& index) const {
        for (std::size_t i = 0; i < points.size(); ++i) {
            float candidate = distance_to(points[i]);
            if (exclude_itself && points[i].x == x && points[i].y == y) {
                candidate = 1e10f;
            }
            if (i == 0 || candidate < distance) {
                distance = candidate;
                index = static_cast<int>(i);
            }
        }
    }
};

template <typename T>
void Geocoordinate<T>::nearest_distance_with_selected_points(
    const std::vector<Geocoordinate<T>>& points, float& distance, int& index,
    std::vector<int>& excluded) const {
    std::sort(excluded.begin(), excluded.end());
    std::vector<Geocoordinate<T>> remaining(points);
    // Erased from the back, so that each listed position still means the same point; a position
    // listed twice removes two points, which the mapping below undoes in step.
    for (auto position = excluded.rbegin(); position != excluded.rend(); ++position) {
        if (*position >= 0 && *position < static_cast<int>(remaining.size())) {
            remaining.erase(remaining.begin() + *position);
        }
    }
    if (remaining.empty()) {
        distance = 10000.0f;
        return;
    }
    int found = 0;
    nearest_distance(remaining, distance, found);
    for (int position : excluded) {
        if (found < position) {
            break;
        }
        ++found;
    }
    index = found;
}

// Points compare exactly, with no tolerance.
template <typename T>
bool operator==(const Geocoordinate<T>& first, const Geocoordinate<T>& second) {
    return first.x == second.x && first.y == second.y;
}

template <typename T>
bool operator!=(const Geocoordinate<T>& first, const Geocoordinate<T>& second) {
    return !(first == second);
}

// Two lists of points compare element by element along the first list. A longer second list that
// starts with the first compares equal; a shorter second list compares unequal rather than being
// read past its end.
QUORIMP_EXPORT bool operator==(const std::vector<Geocoordinate<float>>& first,
                               const std::vector<Geocoordinate<float>>& second);

}  // namespace geometric

#endif
