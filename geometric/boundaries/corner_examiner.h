#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_EXAMINER_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_EXAMINER_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Shape tests of four corners in the order top left, top right, bottom right, bottom left.
class QUORIMP_EXPORT CornerExaminer {
public:
    // The angles at corners 1, 2 and 3 each lie within `minimum_angle_degrees` to 180 minus it,
    // compared through the absolute cosine. The angle at corner 0 is deliberately left out: only
    // three corners are examined. Fewer than four corners fail.
    static bool check_angles(const std::vector<Geocoordinate<float>>& corners,
                             double minimum_angle_degrees);

    // Exactly four points that turn the same way at every corner. Collinear corners count for
    // neither turn, so four points on one line are not convex.
    static bool is_convex(const std::vector<Geocoordinate<float>>& corners);

    // is_convex, then check_angles.
    static bool check_constrains(const std::vector<Geocoordinate<float>>& corners,
                                 double minimum_angle_degrees);
};

}  // namespace geometric

#endif
