#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_COORDINATE_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_COORDINATE_H

#include <cstdint>

namespace geometric {

// A bare pair of 32-bit coordinates, for records that only copy points around.
struct Coordinate {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

}  // namespace geometric

#endif
