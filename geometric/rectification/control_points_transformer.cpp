#include "geometric/rectification/control_points_transformer.h"

#include <cmath>

namespace geometric {

template <typename T>
void ControlPointsTransformer<T>::transform(const ControlPointCorners& record,
                                            std::vector<Geocoordinate<T>>& corners) {
    corners.resize(4);
    for (int i = 0; i < 4; ++i) {
        corners[i].set(static_cast<T>(record.x[i]), static_cast<T>(record.y[i]));
    }
}

template <typename T>
void ControlPointsTransformer<T>::transform(const std::vector<Geocoordinate<T>>& corners,
                                            ControlPointCorners& record) {
    if (corners.size() < 4) {
        return;
    }
    for (int i = 0; i < 4; ++i) {
        record.x[i] = static_cast<int>(std::floor(static_cast<double>(corners[i].x) + 0.5));
        record.y[i] = static_cast<int>(std::floor(static_cast<double>(corners[i].y) + 0.5));
    }
}

template <typename T>
bool ControlPointsTransformer<T>::is_control_points_equal(
    const ControlPointCorners& record, const std::vector<Geocoordinate<T>>& corners) {
    // A list shorter than four cannot match; it is never read past its end.
    if (corners.size() < 4) {
        return false;
    }
    std::vector<Geocoordinate<T>> converted;
    transform(record, converted);
    for (int i = 0; i < 4; ++i) {
        if (converted[i] != corners[i]) {
            return false;
        }
    }
    return true;
}

template <typename T>
void ControlPointsTransformer<T>::reset_control_points(const ControlPointCorners& record,
                                                       std::vector<Geocoordinate<T>>& corners,
                                                       bool& equal) {
    equal = is_control_points_equal(record, corners);
    if (!equal) {
        transform(record, corners);
    }
}

template class ControlPointsTransformer<float>;

}  // namespace geometric
