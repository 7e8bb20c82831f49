#include "geometric/boundaries/bounding_lines_merger.h"

namespace geometric {

void BoundingLinesMerger::merge_bounding_lines(std::vector<BoundingLine>& target,
                                               const std::vector<BoundingLine>& source) {
    std::vector<BoundingLine> unmatched;
    for (const BoundingLine& candidate : source) {
        bool matched = false;
        for (BoundingLine& line : target) {
            if (line.position != candidate.position) {
                continue;
            }
            matched = true;
            if (line.segment_length < candidate.segment_length) {
                line = candidate;
            }
        }
        if (!matched) {
            unmatched.push_back(candidate);
        }
    }
    target.insert(target.end(), unmatched.begin(), unmatched.end());
}

}  // namespace geometric
