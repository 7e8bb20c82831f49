#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_POSITION_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_POSITION_H

namespace geometric {

// The side of the page a boundary line stands for. Left and right are the vertical sides, top and
// bottom the horizontal ones.
enum BoundingLinePosition {
    BOUNDING_LINE_NONE = -1,
    BOUNDING_LINE_LEFT = 0,
    BOUNDING_LINE_TOP = 1,
    BOUNDING_LINE_RIGHT = 2,
    BOUNDING_LINE_BOTTOM = 3,
};

}  // namespace geometric

#endif
