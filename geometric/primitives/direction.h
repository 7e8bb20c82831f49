#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_DIRECTION_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_DIRECTION_H

namespace geometric {

// The two directions of a page: its text lines and top and bottom edges run horizontally, its
// margins and left and right edges vertically.
enum Direction { DIRECTION_HORIZONTAL = 0, DIRECTION_VERTICAL = 1 };

}  // namespace geometric

#endif
