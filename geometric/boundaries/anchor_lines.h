// Lines through the anchor points of virtual corners, shared by the corner calculators. Internal
// to the library: not part of the class interface.
#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_ANCHOR_LINES_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_ANCHOR_LINES_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"

namespace geometric {
namespace anchor_lines {

// tan of an angle in degrees.
double slope_of(double degrees);

// The line of slope tan(`degrees`) through `anchor`, with b = -1.
GeolineBase through_at_slope(const Geocoordinate<float>& anchor, double degrees);

// The line through a vanishing point and an anchor. Vertical when their x agree within the double
// epsilon; otherwise b = -1 and the intercept is taken through the vanishing point.
GeolineBase through_point(const Geocoordinate<double>& vp, const Geocoordinate<float>& anchor);

GeolineBase vertical_at(double x);
GeolineBase horizontal_at(double y);

// Clears `corners` and appends left-top, top-right, right-bottom and bottom-left crossings;
// (0, 0) for two sides that do not cross.
void append_corners(const GeolineBase& left, const GeolineBase& right, const GeolineBase& top,
                    const GeolineBase& bottom, std::vector<Geocoordinate<float>>& corners);

}  // namespace anchor_lines
}  // namespace geometric

#endif
