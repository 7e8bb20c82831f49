#include "geometric/boundaries/bounding_line_judger.h"

namespace geometric {

namespace {

bool is_horizontal_position(BoundingLinePosition position) {
    return position == BOUNDING_LINE_TOP || position == BOUNDING_LINE_BOTTOM;
}

bool is_vertical_position(BoundingLinePosition position) {
    return position == BOUNDING_LINE_LEFT || position == BOUNDING_LINE_RIGHT;
}

}  // namespace

BoundingLineJudger::BoundingLineJudger(int width, int height)
    : image_width(width),
      image_height(height),
      half_width(static_cast<float>(width / 2)),
      half_height(static_cast<float>(height / 2)) {}

bool BoundingLineJudger::formulateBoundingLine(std::vector<BoundingLine>& lines, BoundingLine& line,
                                               bool horizontal) const {
    // The line judged against is the last one of a short list, and the third of a longer one.
    BoundingLine* neighbour = nullptr;
    if (lines.size() == 1) {
        neighbour = &lines[0];
    } else if (lines.size() == 2) {
        neighbour = &lines[1];
    } else if (lines.size() >= 3) {
        neighbour = &lines[2];
    }
    const bool always_pair = lines.size() >= 3;

    bool answer = true;
    if (horizontal) {
        if (neighbour == nullptr ||
            (!always_pair && !is_horizontal_position(neighbour->position))) {
            setSingleHorizontalLinePostion(line);
        } else {
            answer = setTwoHorizontalLinePositon(*neighbour, line);
        }
    } else {
        if (neighbour == nullptr || (!always_pair && !is_vertical_position(neighbour->position))) {
            SetSingleVerticalLinePosition(line);
        } else {
            answer = setTwoVerticalLinePosition(*neighbour, line);
        }
    }
    lines.push_back(line);
    return answer;
}

void BoundingLineJudger::SetSingleVerticalLinePosition(BoundingLine& line) const {
    line.position = half_width > line.first_end.x ? BOUNDING_LINE_LEFT : BOUNDING_LINE_RIGHT;
}

void BoundingLineJudger::setSingleHorizontalLinePostion(BoundingLine& line) const {
    line.position = half_height > line.first_end.y ? BOUNDING_LINE_TOP : BOUNDING_LINE_BOTTOM;
}

bool BoundingLineJudger::setTwoHorizontalLinePositon(BoundingLine& first,
                                                     BoundingLine& second) const {
    BoundingLine alone(second);
    setSingleHorizontalLinePostion(alone);
    const BoundingLinePosition old_position = first.position;
    if (second.first_end.y > first.first_end.y) {
        second.position = BOUNDING_LINE_BOTTOM;
        first.position = BOUNDING_LINE_TOP;
    } else {
        second.position = BOUNDING_LINE_TOP;
        first.position = BOUNDING_LINE_BOTTOM;
    }
    return alone.position != old_position;
}

bool BoundingLineJudger::setTwoVerticalLinePosition(BoundingLine& first,
                                                    BoundingLine& second) const {
    BoundingLine alone(second);
    SetSingleVerticalLinePosition(alone);
    const BoundingLinePosition old_position = first.position;
    if (second.first_end.x > first.first_end.x) {
        second.position = BOUNDING_LINE_RIGHT;
        first.position = BOUNDING_LINE_LEFT;
    } else {
        second.position = BOUNDING_LINE_LEFT;
        first.position = BOUNDING_LINE_RIGHT;
    }
    return alone.position != old_position;
}

}  // namespace geometric
