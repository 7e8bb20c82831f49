#include "geometric/primitives/geoline_base.h"

#include <cmath>

namespace geometric {

namespace {

const double kCoefficientTolerance = 2.220446049250313e-16;

}  // namespace

bool GeolineBase::operator==(const GeolineBase& other) const {
    return std::abs(a - other.a) <= kCoefficientTolerance &&
           std::abs(b - other.b) <= kCoefficientTolerance &&
           std::abs(c - other.c) <= kCoefficientTolerance;
}

bool GeolineBase::operator!=(const GeolineBase& other) const {
    return !(*this == other);
}

void GeolineBase::clear() {
    a = 0.0;
    b = 0.0;
    c = 0.0;
}

bool GeolineBase::is_empty() const {
    return a == 0.0 && b == 0.0;
}

bool GeolineBase::is_horizontal_line() const {
    return a == 0.0;
}

bool GeolineBase::is_vertical_line() const {
    return b == 0.0;
}

double GeolineBase::angle() const {
    if (std::abs(b) <= kCoefficientTolerance) {
        return 90.0;
    }
    double degrees = std::atan(a / -b) / 3.141592653589793 * 180.0;
    if (degrees < 0.0) {
        degrees += 180.0;
    }
    return degrees;
}

std::vector<double> GeolineBase::obtain_coefficients() const {
    return {a, b, c};
}

void GeolineBase::obtain_coefficients(std::vector<double>& out) const {
    out.push_back(a);
    out.push_back(b);
    out.push_back(c);
}

void GeolineBase::set_coef(const std::vector<double>& coefficients) {
    a = coefficients[0];
    b = coefficients[1];
    c = coefficients[2];
}

}  // namespace geometric
