#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_GEOLINE_BASE_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_GEOLINE_BASE_H

#include <vector>

#include "quorimp/quorimp_export.h"

namespace geometric {

// An infinite line a x + b y + c = 0. Lines built from points keep a normal form: a vertical line
// has a = 1 and b = 0, every other line b = -1, so that a is its slope and c its intercept with
// the y axis.
class QUORIMP_EXPORT GeolineBase {
public:
    GeolineBase() : a(0.0), b(0.0), c(0.0) {}
    GeolineBase(double a, double b, double c) : a(a), b(b), c(c) {}

    // Equal when each coefficient differs by at most the double epsilon.
    bool operator==(const GeolineBase& other) const;
    bool operator!=(const GeolineBase& other) const;

    void clear();
    bool is_empty() const;
    // Both tests are exact: a slope of 1e-300 is not horizontal.
    bool is_horizontal_line() const;
    bool is_vertical_line() const;

    // Degrees in [0, 180): 0 for a horizontal line, 90 for a vertical one, small and positive for
    // a line that goes down to the right in image coordinates.
    double angle() const;

    std::vector<double> obtain_coefficients() const;
    // Appends a, b and c to `out` without clearing it.
    void obtain_coefficients(std::vector<double>& out) const;
    // Reads the first three values of `coefficients`.
    void set_coef(const std::vector<double>& coefficients);

    double a;
    double b;
    double c;
};

}  // namespace geometric

#endif
