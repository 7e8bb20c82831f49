#include "quorimp/image_c_api_transformer.h"

namespace quorimp {

namespace {
constexpr int kBoundaryResolution = 300;
}

void ImageCApiTransformer::transform_c_api_image_to_image(const ImageCApi& source,
                                                          common::BasicImage& target) {
    common::ImageType type = common::IMAGE_TYPE_GREY;
    if (source.is_binary != 0) {
        type = common::IMAGE_TYPE_BINARY;
    } else if (source.channels == 3) {
        type = common::IMAGE_TYPE_RGB;
    } else if (source.channels == 4) {
        type = common::IMAGE_TYPE_BGRA;
    }
    target.wrap(source.data, source.height, source.width, type, kBoundaryResolution,
                kBoundaryResolution);
}

void ImageCApiTransformer::transform_image_to_c_api_image(const common::Image& source,
                                                          ImageCApi& target) {
    target.width = source.get_width();
    target.height = source.get_height();
    target.x_resolution = source.get_x_resolution();
    target.y_resolution = source.get_y_resolution();
    source.get_bytes_per_pixel(target.channels);
    target.data = source.get_row(0);
    target.is_binary = source.get_image_type() == common::IMAGE_TYPE_BINARY ? 1 : 0;
}

}  // namespace quorimp
