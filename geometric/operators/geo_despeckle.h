#ifndef QUORIMP_GEOMETRIC_OPERATORS_GEO_DESPECKLE_H
#define QUORIMP_GEOMETRIC_OPERATORS_GEO_DESPECKLE_H

#include "common/basic_image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Removes isolated black pixels from a binary image: a set pixel survives when at least one of its
// eight neighbours is set. The first and last row and the first and last byte of every row are
// copied unchanged. Works on whole bytes of the stride, so the padding bits of a row take part.
class QUORIMP_EXPORT GeoDespeckle {
public:
    // An `output` without a buffer is first reset to the input's size as a binary image at 300 by
    // 300 pixels per inch. `input` and `output` may be the same image.
    static bool removeIsolatedPixel(const common::BasicImage& input, common::BasicImage& output);

    // `input` and `output` may be the same buffer: the pass then runs in place. `width` is not
    // used. Always true.
    static bool removeIsolatedPixel(unsigned char* input, int height, int width, int stride,
                                    unsigned char* output);
};

}  // namespace geometric

#endif
