#include "corner_list.h"

#include <vector>

#include "numbers.h"
#include "tool_error.h"

namespace quorimp_tool {

namespace {

// z of the cross product of the edges (a -> b) and (b -> c); positive when the turn at b is
// clockwise on screen. Exact: coordinates are bounded, so the products fit in 64 bits.
long long turn(const ControlPointCorners& c, int a, int b, int d) {
    const long long ux = static_cast<long long>(c.x[b]) - c.x[a];
    const long long uy = static_cast<long long>(c.y[b]) - c.y[a];
    const long long vx = static_cast<long long>(c.x[d]) - c.x[b];
    const long long vy = static_cast<long long>(c.y[d]) - c.y[b];
    return ux * vy - uy * vx;
}

}  // namespace

ControlPointCorners parse_corner_list(const std::string& option, const std::string& text) {
    const std::vector<std::string> items = split_list(text);
    if (items.size() != 8) {
        throw UsageError(option + ": expected 8 numbers x0,y0,x1,y1,x2,y2,x3,y3, got " +
                         std::to_string(items.size()) + " in '" + text + "'");
    }
    ControlPointCorners corners;
    for (int i = 0; i < 8; ++i) {
        double value = 0.0;
        if (!parse_decimal(items[i], value)) {
            throw UsageError(option + ": number " + std::to_string(i + 1) + ", '" + items[i] +
                             "', is not a number");
        }
        if (value < -kMaxCoordinate || value > kMaxCoordinate) {
            throw UsageError(option + ": number " + std::to_string(i + 1) + ", '" + items[i] +
                             "', is outside -1000000 to 1000000");
        }
        if (i % 2 == 0) {
            corners.x[i / 2] = round_half_up(value);
        } else {
            corners.y[i / 2] = round_half_up(value);
        }
    }

    int clockwise = 0;
    int anticlockwise = 0;
    for (int i = 0; i < 4; ++i) {
        const long long z = turn(corners, i, (i + 1) % 4, (i + 2) % 4);
        clockwise += z > 0;
        anticlockwise += z < 0;
    }
    if (anticlockwise == 4) {
        throw UsageError(option +
                         ": the corners go anticlockwise; give them top left, top right, bottom "
                         "right, bottom left");
    }
    if (clockwise != 4) {
        throw UsageError(option +
                         ": the corners do not make a convex quadrilateral (top left, top right, "
                         "bottom right, bottom left)");
    }
    return corners;
}

}  // namespace quorimp_tool
