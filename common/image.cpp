#include "common/image.h"

namespace common {

Image::~Image() = default;

int Image::get_bit_offset() const {
    return 0;
}

bool Image::get_bytes_per_pixel(int& bytes) const {
    switch (get_image_type()) {
        case IMAGE_TYPE_GREY:
            bytes = 1;
            return true;
        case IMAGE_TYPE_RGB:
            bytes = 3;
            return true;
        case IMAGE_TYPE_BGRA:
            bytes = 4;
            return true;
        default:
            return false;
    }
}

void Image::swap(Image&) {
    throw "Function Swap can not works on image of type different from BasicImage.";
}

void Image::force_resolution_in_range(int, int) {
    throw "force_resolution_in_range not implemented for generic type";
}

}  // namespace common
