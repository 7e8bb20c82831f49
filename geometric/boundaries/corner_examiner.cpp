#include "geometric/boundaries/corner_examiner.h"

#include <cmath>

namespace geometric {

bool CornerExaminer::check_angles(const std::vector<Geocoordinate<float>>& corners,
                                  double minimum_angle_degrees) {
    if (corners.size() < 4) {
        return false;
    }
    const double limit = std::cos(minimum_angle_degrees * 3.141592653589793 / 180.0);
    for (int i = 1; i < 4; ++i) {
        const Geocoordinate<float>& vertex = corners[i];
        const Geocoordinate<float>& previous = corners[(i + 3) % 4];
        const Geocoordinate<float>& next = corners[(i + 1) % 4];
        const double ax = static_cast<double>(previous.x) - static_cast<double>(vertex.x);
        const double ay = static_cast<double>(previous.y) - static_cast<double>(vertex.y);
        const double bx = static_cast<double>(next.x) - static_cast<double>(vertex.x);
        const double by = static_cast<double>(next.y) - static_cast<double>(vertex.y);
        const double dot = ax * bx + ay * by;
        const double norms = std::sqrt((ax * ax + ay * ay) * (bx * bx + by * by) + 1e-10);
        if (std::abs(dot / norms) > limit) {
            return false;
        }
    }
    return true;
}

bool CornerExaminer::is_convex(const std::vector<Geocoordinate<float>>& corners) {
    if (corners.size() != 4) {
        return false;
    }
    bool negative = false;
    bool positive = false;
    for (int i = 0; i < 4; ++i) {
        const Geocoordinate<float>& first = corners[i];
        const Geocoordinate<float>& second = corners[(i + 1) % 4];
        const Geocoordinate<float>& third = corners[(i + 2) % 4];
        const float ux = second.x - first.x;
        const float uy = second.y - first.y;
        const float vx = third.x - second.x;
        const float vy = third.y - second.y;
        const float cross = ux * vy - uy * vx;
        if (cross < 0.0f) {
            negative = true;
        } else if (cross > 0.0f) {
            positive = true;
        }
        if (negative && positive) {
            return false;
        }
    }
    return negative || positive;
}

bool CornerExaminer::check_constrains(const std::vector<Geocoordinate<float>>& corners,
                                      double minimum_angle_degrees) {
    return is_convex(corners) && check_angles(corners, minimum_angle_degrees);
}

}  // namespace geometric
