#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_CONTROL_POINTS_TRANSFORMER_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_CONTROL_POINTS_TRANSFORMER_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"
#include "quorimp/quorimp_records.h"

namespace geometric {

// Conversions between the corner record of the C interface and the engine's four points.
// Built for float.
template <typename T>
class QUORIMP_EXPORT ControlPointsTransformer {
public:
    // Four points from the record, each integer converted exactly.
    static void transform(const ControlPointCorners& record,
                          std::vector<Geocoordinate<T>>& corners);

    // The record from four points, each rounded half up: floor(value + 0.5) in double. Fewer than
    // four points leave the record as it was.
    static void transform(const std::vector<Geocoordinate<T>>& corners,
                          ControlPointCorners& record);

    // True when the vector holds four points equal, exactly and in order, to those of the record.
    static bool is_control_points_equal(const ControlPointCorners& record,
                                        const std::vector<Geocoordinate<T>>& corners);

    // Replaces the points by those of the record unless they are already equal; `equal` says
    // which.
    static void reset_control_points(const ControlPointCorners& record,
                                     std::vector<Geocoordinate<T>>& corners, bool& equal);
};

extern template class ControlPointsTransformer<float>;

}  // namespace geometric

#endif
