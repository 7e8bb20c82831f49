#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_LINE_DISTANCE_CALCULATOR_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_LINE_DISTANCE_CALCULATOR_H

#include "geometric/primitives/direction.h"
#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Distances between two lines of about the same direction.
class QUORIMP_EXPORT LineDistanceCalculator {
public:
    // Distance of two parallel lines; both are taken to have the a and b of the first.
    static double parallel_line_distance(const GeolineBase& first, const GeolineBase& second);

    // Distance of two nearly parallel lines measured along an axis: vertical lines are cut with
    // y = 0, others with x = 0, and the cut positions are subtracted in float, first minus
    // second. `sign` tells whether that difference was negative; the magnitude is returned.
    static float nearly_parallel_line_distance_intersection_method(const GeolineBase& first,
                                                                   const GeolineBase& second,
                                                                   bool& sign, Direction direction);
};

}  // namespace geometric

#endif
