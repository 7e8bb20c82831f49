#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINES_OPERATOR_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINES_OPERATOR_H

#include <vector>

#include "geometric/boundaries/bounding_line.h"
#include "geometric/boundaries/bounding_line_property.h"
#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Operations on a list of bounding lines and the property record that indexes it.
class QUORIMP_EXPORT BoundingLinesOperator {
public:
    // Indexes `lines` by position into `property`, which should be fresh: the index lists are
    // appended to. The ends of each line are put in order on the way, top before bottom for a
    // left or right line and left before right for the others; the other operations rely on it.
    static void initializeBoundingLineProperty(std::vector<BoundingLine>& lines,
                                               BoundingLineProperty& property);

    // Mean angle of the top and bottom lines, or of the left and right lines, summed in float.
    // The lists must not be empty.
    static float getHorizontalAngle(const std::vector<BoundingLine>& lines,
                                    const BoundingLineProperty& property);
    static float getVerticalAngle(const std::vector<BoundingLine>& lines,
                                  const BoundingLineProperty& property);

    // The four corners where left meets top, top meets right, right meets bottom and bottom
    // meets left. A corner whose two lines do not cross, or whose side has no line, keeps its
    // previous value.
    static void obtainBoundingLineControlPoints(const std::vector<BoundingLine>& lines,
                                                const BoundingLineProperty& property,
                                                std::vector<Geocoordinate<float>>& corners);

    static int obtainSegmentLenSum(const std::vector<BoundingLine>& lines);

    // How far the four segments stop short of closing the page: the sum of the gaps between the
    // ends that meet at each corner. Needs all four sides.
    static float obtainUnclosedDistance(const std::vector<BoundingLine>& lines,
                                        const BoundingLineProperty& property);
};

}  // namespace geometric

#endif
