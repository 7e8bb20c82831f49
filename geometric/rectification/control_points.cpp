#include "geometric/rectification/control_points.h"

#include <cmath>

namespace geometric {

namespace {

// Length of a side: differences and squares in float, their sum and root in double, the root
// narrowed back to float.
float side_length(const Geocoordinate<float>& from, const Geocoordinate<float>& to) {
    const float dx = from.x - to.x;
    const float dy = from.y - to.y;
    const float dx2 = dx * dx;
    const float dy2 = dy * dy;
    return static_cast<float>(std::sqrt(static_cast<double>(dx2) + static_cast<double>(dy2)));
}

int pixels_across(float first_side, float second_side) {
    return static_cast<int>(0.5 * static_cast<double>(first_side) +
                            0.5 * static_cast<double>(second_side) + 1.0 + 0.5);
}

}  // namespace

void intialize_control_points(std::vector<Geocoordinate<float>>& corners, int width, int height) {
    corners.resize(4);
    const float right = static_cast<float>(width - 1);
    const float bottom = static_cast<float>(height - 1);
    corners[0].set(0.0f, 0.0f);
    corners[1].set(right, 0.0f);
    corners[2].set(right, bottom);
    corners[3].set(0.0f, bottom);
}

void clean_control_points(ControlPointCorners& corners) {
    for (int i = 0; i < 4; ++i) {
        corners.x[i] = 0;
        corners.y[i] = 0;
    }
}

bool operator==(const ControlPointCorners& first, const ControlPointCorners& second) {
    for (int i = 0; i < 4; ++i) {
        if (first.x[i] != second.x[i] || first.y[i] != second.y[i]) {
            return false;
        }
    }
    return true;
}

void calculate_output_dimension(const std::vector<Geocoordinate<float>>& corners, int& width,
                                int& height) {
    if (corners.size() < 4) {
        width = 0;
        height = 0;
        return;
    }
    const float top = side_length(corners[0], corners[1]);
    const float bottom = side_length(corners[3], corners[2]);
    const float right = side_length(corners[1], corners[2]);
    const float left = side_length(corners[0], corners[3]);
    width = pixels_across(top, bottom);
    height = pixels_across(right, left);
}

}  // namespace geometric
