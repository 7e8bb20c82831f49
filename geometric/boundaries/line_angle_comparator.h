#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_LINE_ANGLE_COMPARATOR_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_LINE_ANGLE_COMPARATOR_H

#include <vector>

#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Comparisons of line angles in degrees, 0 to 180 as GeolineBase::angle gives them. Two angles
// differ by their absolute difference folded at 90, so that 10 and 170 are 20 apart.
class QUORIMP_EXPORT LineAngleComparator {
public:
    // Sample standard deviation (divisor n - 1) of the angles of `lines`; 0 for fewer than two.
    static double calculate_angle_standard_derivation(const std::vector<GeolineBase>& lines);

    // How far two near-vertical lines are from leaning alike (`same_side`, both on one side of 90)
    // or from mirroring each other (leaning to opposite sides), in float.
    static float calculate_vertical_disparity_difference(float first, float second,
                                                         bool& same_side);

    // The folded difference is above `threshold`.
    static bool is_large_disparity(double first, double second, double threshold);
    static bool is_large_disparity(const GeolineBase& first, const GeolineBase& second,
                                   double threshold);
    // The folded difference is at most `threshold`.
    static bool is_small_disparity(double first, double second, double threshold);

    // For direction 0 the line is within `threshold` of horizontal, otherwise within `threshold`
    // of vertical, strictly.
    static bool is_near_coordinate_axes(const GeolineBase& line, double threshold, int direction);

    // Whether `value` lies in the range of angles from `first` to `second`, ends included. For
    // direction 1 the range is plain; otherwise a range with `first` above 90 and `second` at most
    // 90 wraps round 180.
    static bool is_near_coordinate_axes(double first, double second, double value, int direction);
};

}  // namespace geometric

#endif
