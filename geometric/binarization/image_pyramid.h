#ifndef QUORIMP_GEOMETRIC_BINARIZATION_IMAGE_PYRAMID_H
#define QUORIMP_GEOMETRIC_BINARIZATION_IMAGE_PYRAMID_H

#include <boost/shared_ptr.hpp>
#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A grey image halved again and again: `levels[i]` is the image reduced by 2^(i + 1), each level
// the two-by-two block mean of the one before. Copies share the level images.
//
// The number of levels brings the longer side near `limit`: it is the fewest halvings, at most 6,
// that take the longer side to `limit` or below, less one when that would leave the last level's
// longer side below `minimum`.
class QUORIMP_EXPORT ImagePyramid {
public:
    ImagePyramid(const common::Image& image, int limit, int minimum);

    // Only counts the levels that an image of this size would get; builds none.
    ImagePyramid(int limit, int minimum, int height, int width);

    // The number of levels for an image whose longer side is `longer_side`.
    static int calculate_level_count(int longer_side, int limit, int minimum);

    int level_count;
    std::vector<boost::shared_ptr<common::BasicImage>> levels;
};

}  // namespace geometric

#endif
