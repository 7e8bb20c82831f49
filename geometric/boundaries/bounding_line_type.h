#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_TYPE_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_TYPE_H

namespace geometric {

// The kind of evidence behind a boundary line.
enum BoundingLineType {
    BOUNDING_LINE_FROM_CONTOUR = 0,  // contour or line segment evidence
    BOUNDING_LINE_FROM_HOUGH = 1,    // a Hough peak, or a line handed over from another search
    BOUNDING_LINE_FROM_MARGIN = 2,   // a text margin standing in for a page side
    BOUNDING_LINE_ESTIMATED = 3,     // derived rather than seen
};

}  // namespace geometric

#endif
