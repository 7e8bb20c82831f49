#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINES_MERGER_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINES_MERGER_H

#include <vector>

#include "geometric/boundaries/bounding_line.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

class QUORIMP_EXPORT BoundingLinesMerger {
public:
    // Merges `source` into `target` side by side: a target line is replaced by a source line of
    // the same position with a longer segment. Source lines for sides that `target` lacks are
    // appended at the end, in their order.
    static void merge_bounding_lines(std::vector<BoundingLine>& target,
                                     const std::vector<BoundingLine>& source);
};

}  // namespace geometric

#endif
