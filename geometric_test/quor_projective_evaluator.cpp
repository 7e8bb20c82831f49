#include "geometric_test/quor_projective_evaluator.h"

#include <algorithm>
#include <cmath>

namespace geometric_test {

namespace {

using Point = geometric::Geocoordinate<float>;

// Float differences, squared and summed in double, the root narrowed to float.
float side_length(const Point& from, const Point& to) {
    const double dx = from.x - to.x;
    const double dy = from.y - to.y;
    return static_cast<float>(std::sqrt(dx * dx + dy * dy));
}

int pixels_across(float first_side, float second_side) {
    return static_cast<int>(0.5 * static_cast<double>(first_side) +
                            0.5 * static_cast<double>(second_side) + 1.0 + 0.5);
}

void page_dimension(const std::vector<Point>& corners, int& width, int& height) {
    const float top = side_length(corners[0], corners[1]);
    const float bottom = side_length(corners[3], corners[2]);
    const float right = side_length(corners[1], corners[2]);
    const float left = side_length(corners[0], corners[3]);
    width = pixels_across(bottom, top);
    height = pixels_across(right, left);
}

}  // namespace

QUORProjectiveEvaluator::QUORProjectiveEvaluator(const common::Image* image,
                                                 const std::vector<Point>* corners)
    : image(image), corners(corners) {}

float QUORProjectiveEvaluator::calculate_aspect_ratio(const std::vector<Point>& corners) {
    int width = 0;
    int height = 0;
    page_dimension(corners, width, height);
    if (!(width > height)) {
        return static_cast<float>(height) / static_cast<float>(width);
    }
    return static_cast<float>(width) / static_cast<float>(height);
}

bool QUORProjectiveEvaluator::is_camera_document_image(const common::Image& image) {
    const int long_side = std::max(image.get_width(), image.get_height());
    const int short_side = std::min(image.get_width(), image.get_height());
    if (static_cast<float>(long_side) / static_cast<float>(short_side) > 7.0f) {
        return false;
    }
    return short_side >= 10;
}

bool QUORProjectiveEvaluator::is_corners_within_image() const {
    const std::vector<Point>& points = *corners;
    const float right = static_cast<float>(image->get_width() - 1);
    const float bottom = static_cast<float>(image->get_height() - 1);
    if (points[0].x < 0.0f || points[3].x < 0.0f) {
        return false;
    }
    if (points[1].x > right || points[2].x > right) {
        return false;
    }
    if (points[0].y < 0.0f || points[1].y < 0.0f) {
        return false;
    }
    return !(points[2].y > bottom || points[3].y > bottom);
}

bool QUORProjectiveEvaluator::is_largest_dimension_percentage_large(double threshold) const {
    int width = 0;
    int height = 0;
    page_dimension(*corners, width, height);
    const double width_ratio = static_cast<double>(width) / image->get_width();
    const double height_ratio = static_cast<double>(height) / image->get_height();
    return std::max(width_ratio, height_ratio) > threshold;
}

bool QUORProjectiveEvaluator::is_quadrangle_large(float threshold) const {
    const std::vector<Point>& points = *corners;
    const float aspect = calculate_aspect_ratio(points);
    float limit = threshold;
    // The ends of the band are compared in double, so the float ratios 1.2f and 1.4f, each a
    // little above and below its end, fall inside it.
    if (!(aspect > 1.2 && aspect < 1.4)) {
        limit = static_cast<float>(static_cast<double>(threshold) - 0.1);
    }
    // Shoelace sum in float, the closing term last.
    float sum = 0.0f;
    for (int i = 0; i < 4; ++i) {
        const Point& current = points[i];
        const Point& next = points[(i + 1) % 4];
        sum += current.x * next.y - next.x * current.y;
    }
    const float area = static_cast<float>(std::abs(sum) * 0.5);
    const float image_area = static_cast<float>(image->get_width() * image->get_height());
    return area / image_area > limit;
}

float QUORProjectiveEvaluator::obtain_aspect_ratio_from_input_corners() const {
    return calculate_aspect_ratio(*corners);
}

}  // namespace geometric_test
