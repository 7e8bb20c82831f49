#include "geometric/boundaries/bounding_line_anchor_corner_calculator.h"

namespace geometric {

namespace {

float clamp_into(float value, int size) {
    if (value < 0.0f) {
        value = 0.0f;
    }
    const float last = static_cast<float>(size - 1);
    if (value > last) {
        value = last;
    }
    return value;
}

}  // namespace

BoundingLineAnchorCornerCalculator::BoundingLineAnchorCornerCalculator(int width, int height)
    : image_width(width), image_height(height) {}

void BoundingLineAnchorCornerCalculator::obtainAnchorPoint(const GeolineBase& line,
                                                           BoundingLinePosition position,
                                                           Geocoordinate<float>& point) const {
    if (position == BOUNDING_LINE_LEFT || position == BOUNDING_LINE_RIGHT) {
        const int y = image_height / 2;
        const float x = static_cast<float>(-(y * line.b + line.c) / line.a);
        point.set(clamp_into(x, image_width), static_cast<float>(y));
    } else if (position == BOUNDING_LINE_TOP || position == BOUNDING_LINE_BOTTOM) {
        const int x = image_width / 2;
        const float y = static_cast<float>(-(x * line.a + line.c) / line.b);
        point.set(static_cast<float>(x), clamp_into(y, image_height));
    }
}

}  // namespace geometric
