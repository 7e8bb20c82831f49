#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_COLOR_TRANSFORM_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_COLOR_TRANSFORM_H

#include "common/basic_image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Converts a three-byte image in place between RGB and a luma and colour-difference form, in fixed
// point with 16 fractional bits. In the transformed form byte 0 is the luma, byte 1 the colour
// difference built on the first RGB byte and byte 2 the one built on the third. A round trip
// returns each pixel within a few units.
//
// Rows are taken as packed and the image's type is not tested.
class QUORIMP_EXPORT ColorTransform {
public:
    // Fixed to int, so that a value outside the two is representable and simply does nothing.
    enum TransformType : int {
        RGB_TO_YUV = 0,
        YUV_TO_RGB = 1,
    };

    ColorTransform() : transform_type(RGB_TO_YUV) {}
    explicit ColorTransform(TransformType type) : transform_type(type) {}

    void set_transform_type(TransformType type) { transform_type = type; }

    // Runs the direction chosen by `transform_type`; any other value does nothing.
    void color_transform(common::BasicImage& image) const;

    // One direction, whatever `transform_type` says.
    void trans_RGB2YUV(common::BasicImage& image) const;
    // Each byte is clamped to 0 to 255.
    void trans_YUV2RGB(common::BasicImage& image) const;

    TransformType transform_type;
};

}  // namespace geometric

#endif
