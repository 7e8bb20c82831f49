#include "geometric/boundaries/bounding_line.h"

#include <cmath>

namespace geometric {

namespace {

const double kCoefficientTolerance = 2.220446049250313e-16;

}  // namespace

// The position is left at "none" rather than undefined, so that a fresh line is never mistaken
// for a side.
BoundingLine::BoundingLine()
    : position(BOUNDING_LINE_NONE),
      type(BOUNDING_LINE_FROM_HOUGH),
      segment_length(0),
      well_formed(true) {}

BoundingLine::BoundingLine(BoundingLinePosition position, const GeolineBase& line)
    : BoundingLine(position, BOUNDING_LINE_FROM_HOUGH, line) {}

BoundingLine::BoundingLine(BoundingLinePosition position, BoundingLineType type,
                           const GeolineBase& line)
    : position(position), line(line), type(type), segment_length(0), well_formed(true) {}

float BoundingLine::position_indicator() const {
    if (position == BOUNDING_LINE_LEFT || position == BOUNDING_LINE_RIGHT) {
        return static_cast<float>(
            (static_cast<double>(first_end.x) + static_cast<double>(second_end.x)) * 0.5);
    }
    return static_cast<float>(
        (static_cast<double>(first_end.y) + static_cast<double>(second_end.y)) * 0.5);
}

bool BoundingLine::operator==(const BoundingLine& other) const {
    return position == other.position && std::abs(line.c - other.line.c) <= kCoefficientTolerance &&
           std::abs(line.a - other.line.a) <= kCoefficientTolerance &&
           std::abs(line.b - other.line.b) <= kCoefficientTolerance && type == other.type &&
           segment_length == other.segment_length && first_end.x == other.first_end.x &&
           first_end.y == other.first_end.y && second_end.x == other.second_end.x &&
           second_end.y == other.second_end.y && well_formed == other.well_formed;
}

}  // namespace geometric
