#ifndef QUORIMP_GEOMETRIC_OPERATORS_GEO_MORPH_ITERATIVE_DILATION_H
#define QUORIMP_GEOMETRIC_OPERATORS_GEO_MORPH_ITERATIVE_DILATION_H

#include "common/basic_image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Repeated eight-neighbour dilation of a binary image.
class QUORIMP_EXPORT GeoMorphIterativeDilation {
public:
    GeoMorphIterativeDilation(int iterations, bool clear_padding);

    // Changes `image` in place, despite the const: its buffer is written through. Each pass ORs
    // the eight-neighbour dilation of the image into one temporary image, which is never cleared
    // between passes, and copies it back; so the first pass takes the centre off an isolated
    // pixel. With `clear_padding` the two bit columns behind the width are cleared at the end.
    void dilate_image_iterative(const common::BasicImage& image);

    int iterations;
    bool clear_padding;
};

}  // namespace geometric

#endif
