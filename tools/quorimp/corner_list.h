// Four page corners written on the command line as "x0,y0,x1,y1,x2,y2,x3,y3": top left, top
// right, bottom right, bottom left, in pixels of the input image, x to the right and y downward.
#ifndef QUORIMP_TOOL_CORNER_LIST_H
#define QUORIMP_TOOL_CORNER_LIST_H

#include <string>

#include "quorimp/quorimp.h"

namespace quorimp_tool {

constexpr double kMaxCoordinate = 1000000.0;

// Decimals are rounded to whole pixels as the engine rounds corners: to nearest, halves up.
// Throws UsageError "OPTION: reason" when the text is not eight numbers within +-1000000, or when
// the rounded corners do not go clockwise round a convex quadrilateral (with y downward: top left,
// top right, bottom right, bottom left). A projective mapping from the unit square is only well
// behaved on such a quadrilateral; three corners in a line, a bow tie or corners given
// anticlockwise (which would mirror the page) are refused.
ControlPointCorners parse_corner_list(const std::string& option, const std::string& text);

}  // namespace quorimp_tool

#endif
