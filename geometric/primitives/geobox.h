#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_GEOBOX_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_GEOBOX_H

#include <cmath>

#include "geometric/primitives/geocoordinate.h"

namespace geometric {

// An axis-parallel box with inclusive edges. The default box is inverted, maxima far below and
// minima far above any pixel, so the first reset with a point makes it exactly that point; images
// of more than 100000 pixels a side are therefore not supported.
template <typename T>
class Geobox {
public:
    Geobox() : max_x(-1000), max_y(-1000), min_x(100000), min_y(100000) {}

    T width() const { return max_x - min_x + 1; }
    T height() const { return max_y - min_y + 1; }
    T area() const { return height() * width(); }

    // The length of the diagonal, truncated to a whole number of pixels.
    T diagonal() const {
        const T w = width();
        const T h = height();
        const float squared = static_cast<float>(w * w + h * h);
        return static_cast<T>(static_cast<float>(std::sqrt(static_cast<double>(squared))));
    }

    // Boxes that share only an edge column or row intersect.
    bool intersect(const Geobox& other) const {
        if (min_x > other.max_x || max_x < other.min_x || min_y > other.max_y) {
            return false;
        }
        return max_y >= other.min_y;
    }

    bool contain(const Geobox& other) const {
        return other.min_x >= min_x && other.min_x <= max_x && other.max_x >= min_x &&
               other.max_x <= max_x && other.min_y >= min_y && other.min_y <= max_y &&
               other.max_y >= min_y && other.max_y <= max_y;
    }

    // Widens the box to hold `point`; each bound only moves outward.
    void reset(const Geocoordinate<T>& point) {
        if (point.x > max_x)
            max_x = point.x;
        if (point.y > max_y)
            max_y = point.y;
        if (point.x < min_x)
            min_x = point.x;
        if (point.y < min_y)
            min_y = point.y;
    }

    // Moves the box to start where it ended, `distance` wide: the strip just to its right.
    Geobox& move_right(T distance) {
        min_x = max_x;
        max_x = max_x + distance;
        return *this;
    }

    T max_x;
    T max_y;
    T min_x;
    T min_y;
};

}  // namespace geometric

#endif
