#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_GENERAL_LINE_PARAM_ESTIMATOR_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_GENERAL_LINE_PARAM_ESTIMATOR_H

#include <cmath>
#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"
#include "geometric/primitives/parameter_estimator.h"

namespace geometric {

// Fits a line a x + b y + c = 0 to points; parameters are a, b and c. A point agrees when it lies
// strictly closer than `delta` to the line.
template <class T>
class GeneralLineParamEstimator : public ParameterEstimator<Geocoordinate<T>, T> {
public:
    explicit GeneralLineParamEstimator(T delta)
        : ParameterEstimator<Geocoordinate<T>, T>(2),
          line(new GeolineBase[2]),
          delta_squared(delta * delta) {}

    GeneralLineParamEstimator(const GeneralLineParamEstimator& other)
        : ParameterEstimator<Geocoordinate<T>, T>(other),
          line(new GeolineBase[2]),
          delta_squared(other.delta_squared) {
        line[0] = other.line[0];
        line[1] = other.line[1];
    }

    GeneralLineParamEstimator& operator=(const GeneralLineParamEstimator& other) {
        if (this != &other) {
            ParameterEstimator<Geocoordinate<T>, T>::operator=(other);
            line[0] = other.line[0];
            line[1] = other.line[1];
            delta_squared = other.delta_squared;
        }
        return *this;
    }

    ~GeneralLineParamEstimator() override { delete[] line; }

    void estimate(std::vector<Geocoordinate<T>*>& data, std::vector<T>& parameters) override {
        parameters.clear();
        if (data.size() < this->numForEstimate()) {
            return;
        }
        fit(data, parameters);
    }

    void leastSquaresEstimate(std::vector<Geocoordinate<T>*>& data,
                              std::vector<T>& parameters) override {
        parameters.clear();
        fit(data, parameters);
    }

    bool agree(std::vector<T>& parameters, Geocoordinate<T>& point) override {
        const T a = parameters[0];
        const T b = parameters[1];
        const T c = parameters[2];
        const T distance = std::abs(a * point.x + b * point.y + c) / std::sqrt(a * a + b * b);
        return delta_squared > distance * distance;
    }

    // line[0] holds the last fit.
    GeolineBase* line;
    T delta_squared;

private:
    void fit(std::vector<Geocoordinate<T>*>& data, std::vector<T>& parameters) {
        T mx = 0;
        T my = 0;
        T mxy = 0;
        T mxx = 0;
        T myy = 0;
        for (const Geocoordinate<T>* point : data) {
            mx += point->x;
            my += point->y;
            mxy += point->x * point->y;
            mxx += point->x * point->x;
            myy += point->y * point->y;
        }
        const T count = static_cast<T>(data.size());
        mx /= count;
        my /= count;
        mxy /= count;
        mxx /= count;
        myy /= count;
        (void)myy;

        GeolineBase& scratch = line[0];
        const T variance = mxx - mx * mx;
        if (std::abs(variance) < 1.1920928955078125e-7) {
            scratch.a = 1.0;
            scratch.b = 0.0;
            scratch.c = -mx;
        } else {
            const T slope = (mxy - mx * my) / variance;
            scratch.a = slope;
            scratch.b = -1.0;
            scratch.c = my - slope * mx;
        }
        parameters.push_back(static_cast<T>(scratch.a));
        parameters.push_back(static_cast<T>(scratch.b));
        parameters.push_back(static_cast<T>(scratch.c));
    }
};

}  // namespace geometric

#endif
