// A `common::Image` that is not a `common::BasicImage`: pixels live in a plain array, rows cannot
// be addressed byte-wise unless asked to, and the first pixel may sit at a bit offset. It drives
// the generic paths that the engine's own images never take.
#ifndef QUORIMP_TESTS_SUPPORT_FAKE_IMAGE_H
#define QUORIMP_TESTS_SUPPORT_FAKE_IMAGE_H

#include <cstddef>
#include <string>
#include <vector>

#include "common/image.h"

namespace test_support {

class FakeImage : public common::Image {
public:
    FakeImage(int height, int width, common::ImageType type, int bit_offset = 0)
        : height_(height),
          width_(width),
          type_(type),
          bit_offset_(bit_offset),
          pixels_(static_cast<std::size_t>(height > 0 && width > 0 ? height : 0) *
                  (width > 0 ? width : 0)) {}

    int get_height() const override { return height_; }
    int get_width() const override { return width_; }
    int get_row_stride() const override { return width_; }
    int get_x_resolution() const override { return 72; }
    int get_y_resolution() const override { return 96; }
    common::ImageType get_image_type() const override { return type_; }
    unsigned char* get_row(int) const override { return nullptr; }
    int get_bit_offset() const override { return bit_offset_; }
    unsigned int get_pixel(int x, int y) const override {
        return pixels_[static_cast<std::size_t>(y) * width_ + x];
    }
    void set_pixel(int x, int y, unsigned int value) override {
        pixels_[static_cast<std::size_t>(y) * width_ + x] = value;
    }

private:
    int height_;
    int width_;
    common::ImageType type_;
    int bit_offset_;
    std::vector<unsigned int> pixels_;
};

// The message of the constant string an image operation throws, or "" when it throws nothing.
template <typename Operation>
std::string thrown_message(Operation operation) {
    try {
        operation();
    } catch (const char* message) {
        return message;
    }
    return "";
}

}  // namespace test_support

#endif
