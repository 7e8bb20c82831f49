#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_PROPERTY_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_BOUNDING_LINE_PROPERTY_H

#include <vector>

#include "quorimp/quorimp_export.h"

namespace geometric {

// Which line of a list of bounding lines is which side of the page, by index; -1 for a side
// that has no line.
class QUORIMP_EXPORT BoundingLineProperty {
public:
    BoundingLineProperty();
    BoundingLineProperty(const BoundingLineProperty& other) = default;
    BoundingLineProperty& operator=(const BoundingLineProperty& other) = default;
    ~BoundingLineProperty() = default;

    // True when the horizontal and vertical index lists hold four entries between them.
    bool is_four_boundaries_complete() const;

    double horizontal_distance;  // between top and bottom
    double vertical_distance;    // between left and right
    std::vector<int> horizontal_indices;
    std::vector<int> vertical_indices;
    int left_index;
    int right_index;
    int top_index;
    int bottom_index;
    double horizontal_angle_disparity;  // degrees between top and bottom
    double vertical_angle_disparity;    // degrees between left and right
};

}  // namespace geometric

#endif
