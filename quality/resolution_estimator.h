#ifndef QUORIMP_QUALITY_RESOLUTION_ESTIMATOR_H
#define QUORIMP_QUALITY_RESOLUTION_ESTIMATOR_H

#include "quorimp/quorimp_export.h"

namespace geometric {

// The estimate of the size of body text characters, measured from the blobs of a page rather than
// taken from the resolution an image claims.
//
// Only the record of an estimate is here so far; the measuring operations will join it. Until
// then nothing in the library produces an estimate, and the users of the record keep the values
// they start from.
class QUORIMP_EXPORT ResolutionEstimator {
public:
    // The verdict on a page's characters and their size in pixels of the full image.
    struct EstimatedCharacter {
        enum CharacterEstOutput {
            CHARACTER_NOT_FOUND = 0,    // no estimate; a fallback size may stand
            CHARACTER_WEAK = 1,         // a size with little support
            CHARACTER_FROM_HEIGHT = 2,  // from the heights of the blobs
            CHARACTER_FROM_WIDTH = 3,   // from the widths of the blobs
            CHARACTER_FROM_BOTH = 4,    // heights and widths agree in strength
        };

        explicit EstimatedCharacter(CharacterEstOutput output = CHARACTER_NOT_FOUND, int size = 0)
            : output(output), size(size) {}

        CharacterEstOutput output;
        int size;  // odd, or 0 when unknown
    };
};

}  // namespace geometric

#endif
