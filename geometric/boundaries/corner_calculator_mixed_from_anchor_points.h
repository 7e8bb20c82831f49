#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_MIXED_FROM_ANCHOR_POINTS_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_MIXED_FROM_ANCHOR_POINTS_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Virtual corners from four anchor points, one on each side of the page, and vanishing points:
// the sides of a direction with a vanishing point run through it, the sides of a direction
// without one run at a given angle. Corners are appended in the order top left, top right,
// bottom right, bottom left; two sides that do not cross give (0, 0).
class QUORIMP_EXPORT CornerCalculatorMixedFromAnchorPoints {
public:
    using Point = Geocoordinate<float>;
    using VanishingPoint = Geocoordinate<double>;

    // Chooses the form by which directions have a vanishing point. Without a vanishing point the
    // left and right sides take `vertical_angle`, the top and bottom sides `horizontal_angle`.
    // False, with `corners` untouched, when neither direction has one.
    static bool identifyInputCorners(const VanishingPoint& horizontal_vp,
                                     const VanishingPoint& vertical_vp, bool use_horizontal,
                                     bool use_vertical, const Point& left, const Point& right,
                                     const Point& top, const Point& bottom,
                                     std::vector<Point>& corners, double horizontal_angle,
                                     double vertical_angle);

    // Top and bottom sides through the vanishing point; left and right sides at `angle` degrees,
    // exactly vertical when `angle` is within 0.4 of 90.
    static bool identifyHorizontalInputCorners(const VanishingPoint& vp, const Point& left,
                                               const Point& right, const Point& top,
                                               const Point& bottom, std::vector<Point>& corners,
                                               double angle);

    // Left and right sides through the vanishing point; top and bottom sides at `angle` degrees.
    static bool identifyVeritcalInputCorners(const VanishingPoint& vp, const Point& left,
                                             const Point& right, const Point& top,
                                             const Point& bottom, std::vector<Point>& corners,
                                             double angle);

    // All four sides through the vanishing point of their direction.
    static bool identifyTwoDirectionInputCorners(const VanishingPoint& horizontal_vp,
                                                 const VanishingPoint& vertical_vp,
                                                 const Point& left, const Point& right,
                                                 const Point& top, const Point& bottom,
                                                 std::vector<Point>& corners);
};

}  // namespace geometric

#endif
