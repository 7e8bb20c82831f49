#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_ANCHOR_CORNER_CALCULATOR_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_ANCHOR_CORNER_CALCULATOR_H

#include "geometric/boundaries/bounding_line_position.h"
#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A point of a boundary line in the middle of the image, for building corners around it.
class QUORIMP_EXPORT BoundingLineAnchorCornerCalculator {
public:
    BoundingLineAnchorCornerCalculator(int width, int height);

    // A left or right line is taken at the middle row, a top or bottom line at the middle column;
    // the other coordinate is clamped into the image. A line of no position leaves `point` alone.
    void obtainAnchorPoint(const GeolineBase& line, BoundingLinePosition position,
                           Geocoordinate<float>& point) const;

    int image_width;
    int image_height;
};

}  // namespace geometric

#endif
