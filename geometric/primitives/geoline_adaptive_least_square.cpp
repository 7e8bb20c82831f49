#include "geometric/primitives/geoline_adaptive_least_square.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace geometric {

const int GeolineAdaptiveLeastSquare::MAXIMUM_LOOP;

namespace {

template <typename T>
void weighted_fit(GeolineBase& line, const std::vector<Geocoordinate<T>>& points,
                  std::vector<double>& weights) {
    double total = 0.0;
    for (double weight : weights) {
        total += weight;
    }
    for (double& weight : weights) {
        weight /= total;
    }
    double mx = 0.0;
    double my = 0.0;
    double mxx = 0.0;
    float mxy = 0.0f;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double x = static_cast<double>(points[i].x);
        const double y = static_cast<double>(points[i].y);
        const double w = weights[i];
        mx += w * x;
        my += w * y;
        mxx += w * x * x;
        mxy = static_cast<float>(static_cast<double>(mxy) + w * x * y);
    }
    const double t = mxx - mx * mx;
    if (std::abs(t) <= 2.220446049250313e-16) {
        line.a = 1.0;
        line.b = 0.0;
        line.c = -mx;
        return;
    }
    line.a = (static_cast<double>(mxy) - mx * my) / t;
    line.b = -1.0;
    line.c = my - line.a * mx;
}

template <typename T>
void residuals(const GeolineBase& line, const std::vector<Geocoordinate<T>>& points,
               std::vector<double>& r) {
    const double norm = std::sqrt(line.a * line.a + line.b * line.b);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double x = static_cast<double>(points[i].x);
        const double y = static_cast<double>(points[i].y);
        r[i] = std::abs(line.a * x + line.b * y + line.c) / norm;
    }
}

template <typename T>
void adaptive_fit(GeolineAdaptiveLeastSquare& line, const std::vector<Geocoordinate<T>>& points,
                  bool normalize, double tolerance) {
    const std::size_t count = points.size();
    double mx = 0.0;
    double my = 0.0;
    double mxx = 0.0;
    double mxy = 0.0;
    for (const Geocoordinate<T>& point : points) {
        const double x = static_cast<double>(point.x);
        const double y = static_cast<double>(point.y);
        mx += x;
        my += y;
        mxx += x * x;
        mxy += x * y;
    }
    const double n = static_cast<double>(count);
    mx /= n;
    my /= n;
    mxx /= n;
    mxy /= n;
    const double t = mxx - mx * mx;
    if (std::abs(t) < 1.1920928955078125e-7) {
        line.a = 1.0;
        line.b = 0.0;
        line.c = -mx;
    } else {
        line.a = (mxy - mx * my) / t;
        line.b = -1.0;
        line.c = my - line.a * mx;
    }

    double previous = line.angle();
    std::vector<double> r(count);
    residuals(line, points, r);
    double s = 1.0;
    if (normalize) {
        double largest = 0.0;
        for (double value : r) {
            if (value > largest) {
                largest = value;
            }
        }
        // Every point already on the line: there is nothing to reweight.
        if (largest == 0.0) {
            return;
        }
        s = 1.0 / largest;
        if (largest <= 1.0) {
            s = std::trunc(1.0 / largest + 1.0);
        }
    }
    for (int pass = 0; pass < GeolineAdaptiveLeastSquare::MAXIMUM_LOOP; ++pass) {
        for (double& value : r) {
            value = GeolineAdaptiveLeastSquare::fast_exp(-value * s);
        }
        line.fit_weighted(points, r);
        const double current = line.angle();
        if (std::abs(previous - current) < tolerance) {
            break;
        }
        previous = current;
        residuals(line, points, r);
    }
}

}  // namespace

double GeolineAdaptiveLeastSquare::fast_exp(double v) {
    if (v < -100.0) {
        return 0.0;
    }
    const std::int32_t high = static_cast<std::int32_t>(v * 1512775.0 + 1072632447.0);
    const std::uint64_t bits = static_cast<std::uint64_t>(static_cast<std::uint32_t>(high)) << 32;
    double result;
    std::memcpy(&result, &bits, sizeof result);
    return result;
}

void GeolineAdaptiveLeastSquare::fit_weighted(const std::vector<Geocoordinate<float>>& points,
                                              std::vector<double>& weights) {
    weighted_fit(*this, points, weights);
}

void GeolineAdaptiveLeastSquare::fit_weighted(const std::vector<Geocoordinate<double>>& points,
                                              std::vector<double>& weights) {
    weighted_fit(*this, points, weights);
}

void GeolineAdaptiveLeastSquare::fit_adaptive(const std::vector<Geocoordinate<float>>& points,
                                              bool normalize, double tolerance) {
    adaptive_fit(*this, points, normalize, tolerance);
}

void GeolineAdaptiveLeastSquare::fit_adaptive(const std::vector<Geocoordinate<double>>& points,
                                              bool normalize, double tolerance) {
    adaptive_fit(*this, points, normalize, tolerance);
}

}  // namespace geometric
