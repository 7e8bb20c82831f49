#ifndef QUORIMP_QUORIMP_IMAGE_C_API_TRANSFORMER_H
#define QUORIMP_QUORIMP_IMAGE_C_API_TRANSFORMER_H

#include "common/basic_image.h"
#include "quorimp/quorimp_export.h"
#include "quorimp/quorimp_records.h"

namespace quorimp {

// Moves images across the C interface without copying pixels.
class QUORIMP_EXPORT ImageCApiTransformer {
public:
    // Makes `target` wrap the caller's pixels. The type is binary when `is_binary` is set, else RGB
    // for 3 channels, BGRA for 4 and grey for anything else. The record's resolutions are not
    // read: an image that comes in always claims 300 by 300 pixels per inch, because resolution is
    // estimated from the content, never taken from the caller.
    static void transform_c_api_image_to_image(const ImageCApi& source, common::BasicImage& target);

    // Describes `source` in `target`. A binary image leaves `channels` as it was; a BGRA image has
    // no addressable rows and gives null `data`.
    static void transform_image_to_c_api_image(const common::Image& source, ImageCApi& target);
};

}  // namespace quorimp

#endif
