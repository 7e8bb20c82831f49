#ifndef QUORIMP_COMMON_BASIC_IMAGE_H
#define QUORIMP_COMMON_BASIC_IMAGE_H

#include <cstdint>

#include "common/image.h"

namespace common {

// The one concrete raster class. It either owns its buffer (`owns_data` 1) and frees it, or wraps
// a buffer that belongs to somebody else (`owns_data` 0) and never frees it.
//
// Rows of a binary image are padded to whole 32-bit words; grey, RGB and BGRA rows are packed, so
// row y of a grey image always starts at `data + width * y`. Hot loops read the public fields
// directly instead of going through the virtual accessors.
//
// Byte sizes are held in 32 bits: a buffer of 4 GiB or more cannot be allocated and is refused
// like any other allocation failure.
class QUORIMP_EXPORT BasicImage : public Image {
public:
    // Empty: no data, all sizes 0, 300 by 300 pixels per inch, type none.
    BasicImage();

    // Allocates a zero-filled buffer of `row_stride * height` bytes.
    BasicImage(int height, int width, ImageType type, int x_resolution, int y_resolution);

    // Wraps `data` without copying it; the image never frees it.
    BasicImage(unsigned char* data, int height, int width, ImageType type, int x_resolution,
               int y_resolution);

    // Deep copies; the copy always owns its buffer, whatever the source's ownership.
    BasicImage(const BasicImage& source);
    explicit BasicImage(const Image& source);

    // Takes the buffer and its ownership; the source is left empty.
    BasicImage(BasicImage&& source) noexcept;

    // Copies the pixels and the header. A buffer of the same byte size is reused, so assigning to
    // an image that wraps a caller's buffer of the right size fills that buffer.
    BasicImage& operator=(const BasicImage& source);

    ~BasicImage() override;

    int get_height() const override { return height; }
    int get_width() const override { return width; }
    int get_row_stride() const override { return row_stride; }
    int get_x_resolution() const override { return x_resolution; }
    int get_y_resolution() const override { return y_resolution; }
    ImageType get_image_type() const override { return image_type; }
    unsigned char* get_row(int y) const override;
    unsigned int get_pixel(int x, int y) const override;
    void set_pixel(int x, int y, unsigned int value) override;
    void swap(Image& other) override;
    void force_resolution_in_range(int minimum, int maximum) override;
    virtual unsigned char* get_data() const { return data; }

    // Bytes per row for `width` pixels of this image's type; 0 for type none or a foreign type.
    int row_stride_for(int width) const;

    // Gives the image a new size and type with all pixels 0. A buffer of the same byte size is
    // kept (and keeps its ownership); otherwise a new one is allocated and an owned old one freed.
    void reset(int height, int width, ImageType type, int x_resolution, int y_resolution);

    // Points the image at `data`, which it will not free. An owned old buffer is freed.
    void wrap(unsigned char* data, int height, int width, ImageType type, int x_resolution,
              int y_resolution);

    // Copies any image into this one, reusing the buffer when the byte size matches.
    void assign(const Image& source);

    // Bitwise NOT of every byte of the buffer, row padding included.
    void invert();

    // RGB to grey: weighted (299 b0 + 587 b1 + 114 b2) / 1000, or the plain mean (b0 + b1 + b2) /
    // 3, in unsigned integers. Images of another type are left as they are.
    void to_grey_in_place(bool weighted);
    void to_grey_from(const Image& source, bool weighted);

    // Binary to grey: white (bit 0) gives 255, black (bit 1) gives 0. Other types are left alone.
    void binary_to_grey_in_place();

    // Grey to binary: any non-zero byte gives a black pixel. Other types are left alone.
    void grey_to_binary_in_place();

    // Grey to binary: a byte at or below `threshold` gives a black pixel. Padding bits are 0.
    // Other types are left alone.
    void threshold_to_binary_in_place(int threshold);

    // The RGB pixel with the highest score (598 b0 + 587 b1) / 1000; the first of equals wins and
    // an image with no positive score gives 0, 0, 0. The third byte is deliberately not scored.
    // Any other type gives 0, 0, 0.
    void find_brightest_colour(unsigned char colour[3]) const;

    unsigned char* data;
    std::uint32_t data_size;
    unsigned char* data_start;  // address of a buffer built by a conversion; informational only
    std::int32_t height;
    std::int32_t width;
    std::int32_t row_stride;
    std::int32_t x_resolution;
    std::int32_t y_resolution;
    ImageType image_type;
    unsigned char owns_data;

private:
    void release();
    // Frees an owned buffer and takes `buffer` (of `size` bytes) as an owned one.
    void adopt(unsigned char* buffer, std::uint32_t size);
    // Keeps the buffer when it has `size` bytes already, with its ownership, and says so;
    // otherwise replaces it by a new zero-filled owned one.
    bool keep_or_replace_buffer(std::uint32_t size, const char* failure);
    // Sets the header for a new size and type; the stride follows from the type.
    void set_header(int height, int width, ImageType type, int x_resolution, int y_resolution);
    void copy_rows_from(const Image& source);
};

}  // namespace common

#endif
