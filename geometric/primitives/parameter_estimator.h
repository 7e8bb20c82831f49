#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_PARAMETER_ESTIMATOR_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_PARAMETER_ESTIMATOR_H

#include <vector>

namespace geometric {

// A model that can be estimated from a few data points, refined from many, and asked whether a
// point agrees with it. T is the data type, S the type of the model parameters.
template <class T, class S>
class ParameterEstimator {
public:
    explicit ParameterEstimator(unsigned int minimum_points) : numForEstimate_(minimum_points) {}
    virtual ~ParameterEstimator() = default;

    // An exact estimate from the smallest number of points; `parameters` stays empty when there
    // are too few.
    virtual void estimate(std::vector<T*>& data, std::vector<S>& parameters) = 0;
    // A least squares estimate from any number of points.
    virtual void leastSquaresEstimate(std::vector<T*>& data, std::vector<S>& parameters) = 0;
    virtual bool agree(std::vector<S>& parameters, T& point) = 0;

    unsigned int numForEstimate() const { return numForEstimate_; }

protected:
    ParameterEstimator(const ParameterEstimator&) = default;
    ParameterEstimator& operator=(const ParameterEstimator&) = default;

    unsigned int numForEstimate_;
};

}  // namespace geometric

#endif
