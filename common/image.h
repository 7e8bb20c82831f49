#ifndef QUORIMP_COMMON_IMAGE_H
#define QUORIMP_COMMON_IMAGE_H

#include "quorimp/quorimp_export.h"

namespace common {

// Pixel format. The numeric values are tested throughout the engine and never change.
enum ImageType {
    IMAGE_TYPE_NONE = 0,    // no image yet
    IMAGE_TYPE_BINARY = 1,  // 1 bit per pixel, leftmost pixel in the most significant bit, 1 black
    IMAGE_TYPE_GREY = 2,    // 8 bits per pixel
    IMAGE_TYPE_RGB = 3,     // 3 bytes per pixel, the first byte most significant in packed form
    IMAGE_TYPE_BGRA = 4,    // 4 bytes per pixel
};

// The raster interface every operator of the engine works on. Images throw a pointer to a
// constant string when they fail, never an exception object.
class QUORIMP_EXPORT Image {
public:
    virtual ~Image();

    virtual int get_height() const = 0;
    virtual int get_width() const = 0;
    virtual int get_row_stride() const = 0;
    virtual int get_x_resolution() const = 0;
    virtual int get_y_resolution() const = 0;
    virtual ImageType get_image_type() const = 0;

    // First byte of row y, or null where rows cannot be addressed byte-wise.
    virtual unsigned char* get_row(int y) const = 0;

    // Offset in bits of the first pixel inside the first byte of a row. An image that views part
    // of another could report a non-zero offset; generic row loops read it.
    virtual int get_bit_offset() const;

    // Bytes per pixel of grey (1), RGB (3) and BGRA (4) images. A binary image has none: false,
    // and `bytes` is left alone.
    virtual bool get_bytes_per_pixel(int& bytes) const;

    virtual unsigned int get_pixel(int x, int y) const = 0;
    virtual void set_pixel(int x, int y, unsigned int value) = 0;

    // Exchanges the contents of two images of the same concrete class.
    virtual void swap(Image& other);

    // Clamps both resolutions to `minimum` first, then to `maximum`.
    virtual void force_resolution_in_range(int minimum, int maximum);
};

}  // namespace common

#endif
