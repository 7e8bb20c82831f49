#include "geometric/boundaries/bounding_lines_operator.h"

#include <cmath>
#include <utility>

#include "geometric/boundaries/line_intersection.h"

namespace geometric {

namespace {

float mean_angle(const std::vector<BoundingLine>& lines, const std::vector<int>& indices) {
    float sum = 0.0f;
    for (int index : indices) {
        sum += lines[index].line.angle();
    }
    return sum / static_cast<float>(indices.size());
}

// Float differences, squared and summed in double, the root narrowed to float.
float gap(const Geocoordinate<float>& first, const Geocoordinate<float>& second) {
    const double dx = first.x - second.x;
    const double dy = first.y - second.y;
    return static_cast<float>(std::sqrt(dx * dx + dy * dy));
}

bool has_line(const std::vector<BoundingLine>& lines, int index) {
    return index >= 0 && index < static_cast<int>(lines.size());
}

void corner_of(const std::vector<BoundingLine>& lines, int first, int second,
               Geocoordinate<float>& corner) {
    if (has_line(lines, first) && has_line(lines, second)) {
        intersect_lines(lines[first].line, lines[second].line, corner);
    }
}

}  // namespace

void BoundingLinesOperator::initializeBoundingLineProperty(std::vector<BoundingLine>& lines,
                                                           BoundingLineProperty& property) {
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
        BoundingLine& line = lines[i];
        switch (line.position) {
            case BOUNDING_LINE_LEFT:
            case BOUNDING_LINE_RIGHT:
                if (line.first_end.y > line.second_end.y) {
                    std::swap(line.first_end, line.second_end);
                }
                if (line.position == BOUNDING_LINE_LEFT) {
                    property.left_index = i;
                } else {
                    property.right_index = i;
                }
                property.vertical_indices.push_back(i);
                break;
            case BOUNDING_LINE_TOP:
            case BOUNDING_LINE_BOTTOM:
                if (line.first_end.x > line.second_end.x) {
                    std::swap(line.first_end, line.second_end);
                }
                if (line.position == BOUNDING_LINE_TOP) {
                    property.top_index = i;
                } else {
                    property.bottom_index = i;
                }
                property.horizontal_indices.push_back(i);
                break;
            default:
                break;
        }
    }
}

float BoundingLinesOperator::getHorizontalAngle(const std::vector<BoundingLine>& lines,
                                                const BoundingLineProperty& property) {
    return mean_angle(lines, property.horizontal_indices);
}

float BoundingLinesOperator::getVerticalAngle(const std::vector<BoundingLine>& lines,
                                              const BoundingLineProperty& property) {
    return mean_angle(lines, property.vertical_indices);
}

void BoundingLinesOperator::obtainBoundingLineControlPoints(
    const std::vector<BoundingLine>& lines, const BoundingLineProperty& property,
    std::vector<Geocoordinate<float>>& corners) {
    corners.resize(4);
    corner_of(lines, property.left_index, property.top_index, corners[0]);
    corner_of(lines, property.top_index, property.right_index, corners[1]);
    corner_of(lines, property.right_index, property.bottom_index, corners[2]);
    corner_of(lines, property.bottom_index, property.left_index, corners[3]);
}

int BoundingLinesOperator::obtainSegmentLenSum(const std::vector<BoundingLine>& lines) {
    int sum = 0;
    for (const BoundingLine& line : lines) {
        sum += line.segment_length;
    }
    return sum;
}

float BoundingLinesOperator::obtainUnclosedDistance(const std::vector<BoundingLine>& lines,
                                                    const BoundingLineProperty& property) {
    const BoundingLine& left = lines[property.left_index];
    const BoundingLine& top = lines[property.top_index];
    const BoundingLine& right = lines[property.right_index];
    const BoundingLine& bottom = lines[property.bottom_index];
    float sum = 0.0f;
    sum += gap(top.first_end, left.first_end);
    sum += gap(top.second_end, right.first_end);
    sum += gap(right.second_end, bottom.second_end);
    sum += gap(bottom.first_end, left.second_end);
    return sum;
}

}  // namespace geometric
