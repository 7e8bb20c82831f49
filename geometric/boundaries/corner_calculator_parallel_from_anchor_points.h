#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_PARALLEL_FROM_ANCHOR_POINTS_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_PARALLEL_FROM_ANCHOR_POINTS_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Virtual corners from four anchor points, one on each side, for directions known only by the
// angle of their parallel lines. The sides of a direction that is not used stay aligned with the
// image axes. Corners are appended in the order top left, top right, bottom right, bottom left;
// two sides that do not cross give (0, 0).
class QUORIMP_EXPORT CornerCalculatorParallelFromAnchorPoints {
public:
    using Point = Geocoordinate<float>;

    // Chooses the form by the two flags; false, with `corners` untouched, when neither is set.
    static bool identifyInputCorners(bool use_horizontal, bool use_vertical,
                                     double horizontal_angle, double vertical_angle,
                                     const Point& left, const Point& right, const Point& top,
                                     const Point& bottom, std::vector<Point>& corners);

    // Top and bottom sides at `angle` through their anchors; left and right sides vertical.
    static bool identifyHorizontalInputCorners(double angle, const Point& left, const Point& right,
                                               const Point& top, const Point& bottom,
                                               std::vector<Point>& corners);

    // Left and right sides at `angle` through their anchors; top and bottom sides horizontal.
    static bool identifyVerticalInputCorners(double angle, const Point& left, const Point& right,
                                             const Point& top, const Point& bottom,
                                             std::vector<Point>& corners);

    static bool identifyTwoDirectionInputCorners(double horizontal_angle, double vertical_angle,
                                                 const Point& left, const Point& right,
                                                 const Point& top, const Point& bottom,
                                                 std::vector<Point>& corners);
};

}  // namespace geometric

#endif
