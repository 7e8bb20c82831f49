#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_LINE_INTERSECTION_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_LINE_INTERSECTION_H

#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// The crossing of two lines, worked out in double. Lines whose determinant b2 a1 - b1 a2 is
// within the double epsilon of zero count as parallel: the answer is false and `point` is left as
// it was. The float form narrows the coordinates when it stores them.
QUORIMP_EXPORT bool intersect_lines(const GeolineBase& first, const GeolineBase& second,
                                    Geocoordinate<float>& point);
QUORIMP_EXPORT bool intersect_lines(const GeolineBase& first, const GeolineBase& second,
                                    Geocoordinate<double>& point);

}  // namespace geometric

#endif
