#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_PARALLEL_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_PARALLEL_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A virtual page for directions whose lines are parallel: each pair of sides runs at the
// direction's angle through image corners, or along the image border when the direction is not
// used or is exactly aligned with the axes.
class QUORIMP_EXPORT CornerCalculatorParallel {
public:
    using Point = Geocoordinate<float>;

    CornerCalculatorParallel(int width, int height);

    // Resizes `corners` to four: left-top, top-right, right-bottom, bottom-left. A corner whose
    // sides do not cross keeps what it held.
    void estimate_parallel_virtual_corners(bool use_horizontal, bool use_vertical,
                                           double horizontal_angle, double vertical_angle,
                                           std::vector<Point>& corners) const;

    // Four anchors taken from the parallel corners: `left` the higher of the two top corners,
    // `right` the lower of the two bottom corners, `top` the leftmost of the two left corners and
    // `bottom` the rightmost of the two right corners. On a tie the later corner is taken.
    void estimate_anchor_corners(bool use_horizontal, bool use_vertical, double horizontal_angle,
                                 double vertical_angle, Point& left, Point& right, Point& top,
                                 Point& bottom) const;

    int image_width;
    int image_height;
};

}  // namespace geometric

#endif
