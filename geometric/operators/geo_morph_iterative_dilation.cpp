#include "geometric/operators/geo_morph_iterative_dilation.h"

#include <cstddef>
#include <cstring>

#include "geometric/operators/geo_morphological.h"

namespace geometric {

GeoMorphIterativeDilation::GeoMorphIterativeDilation(int iterations, bool clear_padding)
    : iterations(iterations), clear_padding(clear_padding) {}

void GeoMorphIterativeDilation::dilate_image_iterative(const common::BasicImage& image) {
    common::BasicImage accumulated(image.height, image.width, common::IMAGE_TYPE_BINARY,
                                   image.x_resolution, image.y_resolution);
    for (int pass = 0; pass < iterations; ++pass) {
        GeoMorphological::dilate_xy(image.data, accumulated.data, image.height, image.row_stride);
        if (image.data_size != 0) {
            std::memcpy(image.data, accumulated.data, image.data_size);
        }
    }
    if (!clear_padding) {
        return;
    }
    for (int column = image.width; column <= image.width + 1; ++column) {
        if (column / 8 >= image.row_stride) {
            continue;
        }
        const unsigned char mask = static_cast<unsigned char>(~(0x80u >> (column % 8)));
        for (int y = 0; y < image.height; ++y) {
            image.data[static_cast<std::ptrdiff_t>(image.row_stride) * y + column / 8] &= mask;
        }
    }
}

}  // namespace geometric
