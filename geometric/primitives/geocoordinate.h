#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_GEOCOORDINATE_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_GEOCOORDINATE_H

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

    T x;
    T y;
};

// Points compare exactly, with no tolerance.
template <typename T>
bool operator==(const Geocoordinate<T>& first, const Geocoordinate<T>& second) {
    return first.x == second.x && first.y == second.y;
}

template <typename T>
bool operator!=(const Geocoordinate<T>& first, const Geocoordinate<T>& second) {
    return !(first == second);
}

}  // namespace geometric

#endif
