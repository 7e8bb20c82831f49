#include "geometric/boundaries/line_angle_comparator.h"

#include <algorithm>
#include <cmath>

namespace geometric {

namespace {

double folded_difference(double first, double second) {
    double difference = std::abs(first - second);
    if (difference > 90.0) {
        difference = 180.0 - difference;
    }
    return difference;
}

}  // namespace

double LineAngleComparator::calculate_angle_standard_derivation(
    const std::vector<GeolineBase>& lines) {
    const std::size_t count = lines.size();
    if (count < 2) {
        return 0.0;
    }
    double sum = 0.0;
    for (const GeolineBase& line : lines) {
        sum += line.angle();
    }
    const double mean = sum / static_cast<double>(count);
    double squares = 0.0;
    for (const GeolineBase& line : lines) {
        const double deviation = line.angle() - mean;
        squares += deviation * deviation;
    }
    return std::sqrt(squares / static_cast<double>(count - 1));
}

float LineAngleComparator::calculate_vertical_disparity_difference(float first, float second,
                                                                   bool& same_side) {
    const float first_lean = first - 90.0f;
    const float second_lean = second - 90.0f;
    if (first_lean * second_lean >= 0.0f) {
        same_side = true;
        return std::abs(first_lean - second_lean);
    }
    same_side = false;
    return std::abs(first_lean + second_lean);
}

bool LineAngleComparator::is_large_disparity(double first, double second, double threshold) {
    return folded_difference(first, second) > threshold;
}

bool LineAngleComparator::is_large_disparity(const GeolineBase& first, const GeolineBase& second,
                                             double threshold) {
    return is_large_disparity(first.angle(), second.angle(), threshold);
}

bool LineAngleComparator::is_small_disparity(double first, double second, double threshold) {
    return !(folded_difference(first, second) > threshold);
}

bool LineAngleComparator::is_near_coordinate_axes(const GeolineBase& line, double threshold,
                                                  int direction) {
    const double angle = line.angle();
    if (direction == 0) {
        return std::min(std::abs(180.0 - angle), std::abs(angle)) < threshold;
    }
    return std::abs(angle - 90.0) < threshold;
}

bool LineAngleComparator::is_near_coordinate_axes(double first, double second, double value,
                                                  int direction) {
    if (direction == 1) {
        const double low = std::min(first, second);
        const double high = std::max(first, second);
        return low <= value && value <= high;
    }
    if (first <= 90.0 || second > 90.0) {
        return second <= value && value <= first;
    }
    return (first <= value && value <= 180.0) || (0.0 <= value && value <= second);
}

}  // namespace geometric
