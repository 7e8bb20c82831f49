#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_H

#include "geometric/boundaries/bounding_line_position.h"
#include "geometric/boundaries/bounding_line_type.h"
#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// One side of a page: its line, which side it is, and the segment that supports it.
class QUORIMP_EXPORT BoundingLine {
public:
    // A line of no position yet, with zero coefficients and ends.
    BoundingLine();
    BoundingLine(BoundingLinePosition position, const GeolineBase& line);
    BoundingLine(BoundingLinePosition position, BoundingLineType type, const GeolineBase& line);

    int obtainSegmentLength() const { return segment_length; }

    // Where the segment stands across the page: the mean x of its ends for a left or right line,
    // the mean y for the others.
    float position_indicator() const;

    // Coefficients within the double epsilon; everything else exactly.
    bool operator==(const BoundingLine& other) const;

    BoundingLinePosition position;
    GeolineBase line;
    BoundingLineType type;
    int segment_length;
    Geocoordinate<float> first_end;
    Geocoordinate<float> second_end;
    // False when the evidence behind the line was scattered rather than one solid edge.
    bool well_formed;
};

}  // namespace geometric

#endif
