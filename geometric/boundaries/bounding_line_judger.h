#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_JUDGER_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_JUDGER_H

#include <vector>

#include "geometric/boundaries/bounding_line.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Decides which side of the page a newly found line is, from where its first end lies and from
// the line found before it.
class QUORIMP_EXPORT BoundingLineJudger {
public:
    BoundingLineJudger(int width, int height);

    // Gives `line` its position and appends a copy of it to `lines`, always. When the line is
    // judged against an earlier one, that earlier line may change sides too; the answer is false
    // when both lines would have taken the same side on their own.
    bool formulateBoundingLine(std::vector<BoundingLine>& lines, BoundingLine& line,
                               bool horizontal) const;

    int image_width;
    int image_height;
    float half_width;
    float half_height;

private:
    void SetSingleVerticalLinePosition(BoundingLine& line) const;
    void setSingleHorizontalLinePostion(BoundingLine& line) const;
    bool setTwoHorizontalLinePositon(BoundingLine& first, BoundingLine& second) const;
    bool setTwoVerticalLinePosition(BoundingLine& first, BoundingLine& second) const;
};

}  // namespace geometric

#endif
