#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_GEOLINE_ADAPTIVE_LEAST_SQUARE_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_GEOLINE_ADAPTIVE_LEAST_SQUARE_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Line fits of y on x: a weighted least squares fit, and an iteratively reweighted one in which
// points far from the line lose weight exponentially.
class QUORIMP_EXPORT GeolineAdaptiveLeastSquare : public GeolineBase {
public:
    static const int MAXIMUM_LOOP = 10;

    // Normalizes `weights` in place to sum 1 and fits the line. The weighted sum of x * y is
    // accumulated in single precision, the other sums in double.
    void fit_weighted(const std::vector<Geocoordinate<float>>& points,
                      std::vector<double>& weights);
    void fit_weighted(const std::vector<Geocoordinate<double>>& points,
                      std::vector<double>& weights);

    // Starts from the plain fit and reweights until the angle moves by less than `tolerance`
    // degrees, at most MAXIMUM_LOOP times. With `normalize` set the residuals are scaled by the
    // largest one.
    void fit_adaptive(const std::vector<Geocoordinate<float>>& points, bool normalize,
                      double tolerance);
    void fit_adaptive(const std::vector<Geocoordinate<double>>& points, bool normalize,
                      double tolerance);

    // A cheap exponential: the double whose high word is v * 1512775 + 1072632447 truncated,
    // low word 0; 0 below -100.
    static double fast_exp(double v);
};

}  // namespace geometric

#endif
