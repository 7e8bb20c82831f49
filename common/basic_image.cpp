#include "common/basic_image.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace common {

namespace {

const char* const kConstructFailure =
    "error while constructing image, could not allocate enough memory";
const char* const kCopyFailure = "error while copying image, could not allocate enough memory";
const char* const kCopyConstructFailure =
    "error while copy-constructing image, could not allocate enough memory";
const char* const kResetFailure = "error while reseting image, could not allocate enough memory";
const char* const kAllocateFailure =
    "error while allocating image, could not allocate enough memory";

constexpr int kDefaultResolution = 300;

int stride_for(ImageType type, int width) {
    switch (type) {
        case IMAGE_TYPE_BINARY:
            return (width / 32) * 4 + (width % 32 != 0 ? 4 : 0);
        case IMAGE_TYPE_GREY:
            return width;
        case IMAGE_TYPE_RGB:
            return 3 * width;
        case IMAGE_TYPE_BGRA:
            return 4 * width;
        default:
            return 0;
    }
}

// The byte size of `height` rows of `row_stride` bytes, worked out in 64 bits so that a size that
// does not fit the 32-bit field is caught rather than wrapped.
bool byte_size(int row_stride, int height, std::uint32_t& size) {
    const long long bytes = static_cast<long long>(row_stride) * height;
    if (bytes < 0 || bytes > std::numeric_limits<std::uint32_t>::max()) {
        return false;
    }
    size = static_cast<std::uint32_t>(bytes);
    return true;
}

// Zero-filled storage from the C allocator; no storage at all for an empty image.
unsigned char* allocate_zeroed(std::uint32_t size, const char* failure) {
    if (size == 0) {
        return nullptr;
    }
    auto* buffer = static_cast<unsigned char*>(std::calloc(size, 1));
    if (buffer == nullptr) {
        throw failure;
    }
    return buffer;
}

std::uint32_t checked_byte_size(int row_stride, int height, const char* failure) {
    std::uint32_t size = 0;
    if (!byte_size(row_stride, height, size)) {
        throw failure;
    }
    return size;
}

// Row y of any image as bytes. A BGRA image reports no rows through the interface, but one of
// ours can still be copied block by block from its buffer.
unsigned char* row_address(const Image& image, int y) {
    unsigned char* row = image.get_row(y);
    if (row == nullptr) {
        if (const auto* basic = dynamic_cast<const BasicImage*>(&image); basic && basic->data) {
            row = basic->data + static_cast<std::size_t>(basic->row_stride) * y;
        }
    }
    return row;
}

// Eight grey bytes for every byte of a binary row: black (1) is 0, white (0) is 255.
constexpr std::array<std::array<unsigned char, 8>, 256> make_binary_to_grey_table() {
    std::array<std::array<unsigned char, 8>, 256> table{};
    for (int value = 0; value < 256; ++value) {
        for (int bit = 0; bit < 8; ++bit) {
            table[value][bit] = ((value >> (7 - bit)) & 1) ? 0 : 255;
        }
    }
    return table;
}
constexpr auto kBinaryToGrey = make_binary_to_grey_table();

constexpr unsigned char kBitMask[8] = {128, 64, 32, 16, 8, 4, 2, 1};

// Packs a grey image into a new binary one: a pixel is black when `is_black` says so. The unused
// low bits of the last byte of a row and the padding bytes stay 0.
template <typename IsBlack>
void pack_grey_to_binary(BasicImage& image, IsBlack is_black) {
    BasicImage binary(image.height, image.width, IMAGE_TYPE_BINARY, image.x_resolution,
                      image.y_resolution);
    for (int y = 0; y < image.height; ++y) {
        const unsigned char* grey_row = image.data + static_cast<std::size_t>(image.width) * y;
        unsigned char* bits = binary.data + static_cast<std::size_t>(binary.row_stride) * y;
        // Whole bytes without branches: the pixels of a scanned page are too noisy to predict.
        const int whole_bytes = image.width / 8;
        for (int i = 0; i < whole_bytes; ++i) {
            const unsigned char* pixel = grey_row + 8 * i;
            unsigned int byte = 0;
            for (int k = 0; k < 8; ++k) {
                byte = (byte << 1) | static_cast<unsigned int>(is_black(pixel[k]));
            }
            bits[i] = static_cast<unsigned char>(byte);
        }
        const int tail_pixels = image.width % 8;
        if (tail_pixels != 0) {
            unsigned char byte = 0;
            for (int k = 0; k < tail_pixels; ++k) {
                if (is_black(grey_row[8 * whole_bytes + k])) {
                    byte |= kBitMask[k];
                }
            }
            bits[whole_bytes] = byte;
        }
    }
    image.swap(binary);
    image.data_start = image.data;
}

}  // namespace

BasicImage::BasicImage()
    : data(nullptr),
      data_size(0),
      data_start(nullptr),
      height(0),
      width(0),
      row_stride(0),
      x_resolution(kDefaultResolution),
      y_resolution(kDefaultResolution),
      image_type(IMAGE_TYPE_NONE),
      owns_data(1) {}

BasicImage::BasicImage(int height, int width, ImageType type, int x_resolution, int y_resolution)
    : data(nullptr),
      data_size(0),
      data_start(nullptr),
      height(height),
      width(width),
      row_stride(stride_for(type, width)),
      x_resolution(x_resolution),
      y_resolution(y_resolution),
      image_type(type),
      owns_data(1) {
    data_size = checked_byte_size(row_stride, height, kConstructFailure);
    data = allocate_zeroed(data_size, kConstructFailure);
}

BasicImage::BasicImage(unsigned char* data, int height, int width, ImageType type, int x_resolution,
                       int y_resolution)
    : data(data),
      data_size(0),
      data_start(nullptr),
      height(height),
      width(width),
      row_stride(stride_for(type, width)),
      x_resolution(x_resolution),
      y_resolution(y_resolution),
      image_type(type),
      owns_data(0) {
    byte_size(row_stride, height, data_size);
}

BasicImage::BasicImage(const BasicImage& source)
    : Image(),
      data(nullptr),
      data_size(0),
      data_start(nullptr),
      height(source.height),
      width(source.width),
      row_stride(source.row_stride),
      x_resolution(source.x_resolution),
      y_resolution(source.y_resolution),
      image_type(source.image_type),
      owns_data(1) {
    if (source.data != nullptr) {
        data = allocate_zeroed(source.data_size, kCopyFailure);
        data_size = source.data_size;
        if (data_size != 0) {
            std::memcpy(data, source.data, data_size);
        }
    }
}

BasicImage::BasicImage(const Image& source)
    : data(nullptr),
      data_size(0),
      data_start(nullptr),
      height(source.get_height()),
      width(source.get_width()),
      row_stride(0),
      x_resolution(source.get_x_resolution()),
      y_resolution(source.get_y_resolution()),
      image_type(source.get_image_type()),
      owns_data(1) {
    row_stride = stride_for(image_type, width);
    if (row_stride == 0) {
        return;
    }
    data_size = checked_byte_size(row_stride, height, kCopyConstructFailure);
    data = allocate_zeroed(data_size, kCopyConstructFailure);
    copy_rows_from(source);
}

BasicImage::BasicImage(BasicImage&& source) noexcept
    : data(source.data),
      data_size(source.data_size),
      data_start(source.data_start),
      height(source.height),
      width(source.width),
      row_stride(source.row_stride),
      x_resolution(source.x_resolution),
      y_resolution(source.y_resolution),
      image_type(source.image_type),
      owns_data(source.owns_data) {
    source.data = nullptr;
    source.data_size = 0;
    source.data_start = nullptr;
    source.height = 0;
    source.width = 0;
    source.row_stride = 0;
    source.image_type = IMAGE_TYPE_NONE;
    source.owns_data = 1;
}

BasicImage& BasicImage::operator=(const BasicImage& source) {
    if (this == &source) {
        return *this;
    }
    const bool source_has_data = source.data != nullptr;
    if (data_size != source.data_size || (data != nullptr) != source_has_data) {
        adopt(source_has_data ? allocate_zeroed(source.data_size, kCopyFailure) : nullptr,
              source_has_data ? source.data_size : 0);
    }
    // A kept buffer keeps its ownership: a wrapped caller buffer is filled, never adopted.
    if (data != nullptr && data != source.data && data_size != 0) {
        std::memcpy(data, source.data, data_size);
    }
    data_start = nullptr;
    height = source.height;
    width = source.width;
    row_stride = source.row_stride;
    x_resolution = source.x_resolution;
    y_resolution = source.y_resolution;
    image_type = source.image_type;
    return *this;
}

BasicImage::~BasicImage() {
    release();
}

void BasicImage::release() {
    if (data != nullptr && owns_data == 1) {
        std::free(data);
    }
    data = nullptr;
    data_size = 0;
}

void BasicImage::adopt(unsigned char* buffer, std::uint32_t size) {
    release();
    data = buffer;
    data_size = size;
    owns_data = 1;
}

bool BasicImage::keep_or_replace_buffer(std::uint32_t size, const char* failure) {
    // A kept buffer keeps its ownership: the engine never adopts, and so never frees, a
    // caller's buffer. The new buffer is allocated before the old one goes, so that a failure
    // leaves the image as it was.
    if (size == data_size && data != nullptr) {
        return true;
    }
    adopt(allocate_zeroed(size, failure), size);
    return false;
}

void BasicImage::set_header(int new_height, int new_width, ImageType type, int new_x_resolution,
                            int new_y_resolution) {
    image_type = type;
    height = new_height;
    width = new_width;
    row_stride = stride_for(type, new_width);
    x_resolution = new_x_resolution;
    y_resolution = new_y_resolution;
    data_start = nullptr;
}

int BasicImage::row_stride_for(int width) const {
    return stride_for(image_type, width);
}

unsigned char* BasicImage::get_row(int y) const {
    if (data == nullptr) {
        return nullptr;
    }
    switch (image_type) {
        case IMAGE_TYPE_BINARY:
            return data + static_cast<std::size_t>(row_stride) * y;
        case IMAGE_TYPE_GREY:
            return data + static_cast<std::size_t>(width) * y;
        case IMAGE_TYPE_RGB:
            return data + static_cast<std::size_t>(3) * width * y;
        default:
            return nullptr;
    }
}

unsigned int BasicImage::get_pixel(int x, int y) const {
    switch (image_type) {
        case IMAGE_TYPE_BINARY:
            return (data[static_cast<std::size_t>(row_stride) * y + x / 8] >> (7 - x % 8)) & 1u;
        case IMAGE_TYPE_GREY:
            return data[static_cast<std::size_t>(width) * y + x];
        case IMAGE_TYPE_RGB: {
            const unsigned char* pixel = data + static_cast<std::size_t>(3) * width * y + 3 * x;
            return (static_cast<unsigned int>(pixel[0]) << 16) |
                   (static_cast<unsigned int>(pixel[1]) << 8) | pixel[2];
        }
        default:
            return 0;
    }
}

void BasicImage::set_pixel(int x, int y, unsigned int value) {
    switch (image_type) {
        case IMAGE_TYPE_BINARY: {
            unsigned char& byte = data[static_cast<std::size_t>(row_stride) * y + x / 8];
            const unsigned char mask = kBitMask[x % 8];
            byte = value != 0 ? (byte | mask) : (byte & ~mask);
            break;
        }
        case IMAGE_TYPE_GREY:
            data[static_cast<std::size_t>(width) * y + x] = static_cast<unsigned char>(value);
            break;
        case IMAGE_TYPE_RGB: {
            unsigned char* pixel = data + static_cast<std::size_t>(3) * width * y + 3 * x;
            pixel[0] = static_cast<unsigned char>(value >> 16);
            pixel[1] = static_cast<unsigned char>(value >> 8);
            pixel[2] = static_cast<unsigned char>(value);
            break;
        }
        default:
            break;
    }
}

void BasicImage::swap(Image& other) {
    auto* basic = dynamic_cast<BasicImage*>(&other);
    if (basic == nullptr) {
        throw "The images you want to swap must be both of type BasicImage.";
    }
    std::swap(data, basic->data);
    std::swap(data_size, basic->data_size);
    std::swap(data_start, basic->data_start);
    std::swap(height, basic->height);
    std::swap(width, basic->width);
    std::swap(row_stride, basic->row_stride);
    std::swap(x_resolution, basic->x_resolution);
    std::swap(y_resolution, basic->y_resolution);
    std::swap(image_type, basic->image_type);
    std::swap(owns_data, basic->owns_data);
}

void BasicImage::force_resolution_in_range(int minimum, int maximum) {
    x_resolution = std::max(x_resolution, minimum);
    y_resolution = std::max(y_resolution, minimum);
    x_resolution = std::min(x_resolution, maximum);
    y_resolution = std::min(y_resolution, maximum);
}

void BasicImage::reset(int new_height, int new_width, ImageType type, int new_x_resolution,
                       int new_y_resolution) {
    const std::uint32_t new_size =
        checked_byte_size(stride_for(type, new_width), new_height, kResetFailure);
    if (keep_or_replace_buffer(new_size, kResetFailure)) {
        std::memset(data, 0, data_size);
    }
    set_header(new_height, new_width, type, new_x_resolution, new_y_resolution);
}

void BasicImage::wrap(unsigned char* new_data, int new_height, int new_width, ImageType type,
                      int new_x_resolution, int new_y_resolution) {
    release();
    set_header(new_height, new_width, type, new_x_resolution, new_y_resolution);
    byte_size(row_stride, new_height, data_size);
    data = new_data;
    owns_data = 0;
}

void BasicImage::assign(const Image& source) {
    if (&source == this) {
        return;
    }
    const ImageType new_type = source.get_image_type();
    const std::uint32_t new_size = checked_byte_size(stride_for(new_type, source.get_width()),
                                                     source.get_height(), kResetFailure);
    keep_or_replace_buffer(new_size, kResetFailure);
    set_header(source.get_height(), source.get_width(), new_type, source.get_x_resolution(),
               source.get_y_resolution());
    if (data != nullptr) {
        copy_rows_from(source);
    }
}

// Rows are copied in one block when both images start their rows at the same bit; otherwise pixel
// by pixel, after clearing the words at both ends of a binary row that the pixels only partly
// cover.
void BasicImage::copy_rows_from(const Image& source) {
    const int source_stride = source.get_row_stride();
    const std::size_t block =
        static_cast<std::size_t>(std::max(0, std::min(source_stride, row_stride)));
    const bool same_bit_offset = source.get_bit_offset() == get_bit_offset();
    for (int y = 0; y < height; ++y) {
        unsigned char* target = data + static_cast<std::size_t>(row_stride) * y;
        if (same_bit_offset) {
            const unsigned char* source_row = row_address(source, y);
            if (source_row != nullptr && source_row != target) {
                std::memcpy(target, source_row, block);
            }
            continue;
        }
        if (image_type == IMAGE_TYPE_BINARY && width > 0) {
            std::memset(target, 0, 4);
            std::memset(target + ((width - 1) / 32) * 4, 0, 4);
        }
        for (int x = 0; x < width; ++x) {
            set_pixel(x, y, source.get_pixel(x, y));
        }
    }
}

void BasicImage::invert() {
    for (std::uint32_t i = 0; i < data_size; ++i) {
        data[i] = static_cast<unsigned char>(~data[i]);
    }
}

void BasicImage::to_grey_in_place(bool weighted) {
    if (image_type != IMAGE_TYPE_RGB) {
        return;
    }
    BasicImage grey;
    grey.to_grey_from(*this, weighted);
    swap(grey);
    data_start = data;
}

void BasicImage::to_grey_from(const Image& source, bool weighted) {
    if (source.get_image_type() != IMAGE_TYPE_RGB) {
        return;
    }
    const int new_height = source.get_height();
    const int new_width = source.get_width();
    const std::uint32_t new_size = checked_byte_size(new_width, new_height, kAllocateFailure);
    // Converted into the target buffer before the old one goes, so that a source that shares
    // storage with this image is still readable.
    const bool keep_buffer = new_size == data_size && data != nullptr && &source != this;
    unsigned char* grey = keep_buffer ? data : allocate_zeroed(new_size, kAllocateFailure);
    for (int y = 0; y < new_height; ++y) {
        const unsigned char* rgb = source.get_row(y);
        unsigned char* out = grey + static_cast<std::size_t>(new_width) * y;
        if (weighted) {
            for (int x = 0; x < new_width; ++x, rgb += 3) {
                out[x] = static_cast<unsigned char>(
                    (299u * rgb[0] + 587u * rgb[1] + 114u * rgb[2]) / 1000u);
            }
        } else {
            for (int x = 0; x < new_width; ++x, rgb += 3) {
                out[x] = static_cast<unsigned char>(
                    (static_cast<unsigned int>(rgb[0]) + rgb[1] + rgb[2]) / 3u);
            }
        }
    }
    if (!keep_buffer) {
        adopt(grey, new_size);
    }
    set_header(new_height, new_width, IMAGE_TYPE_GREY, source.get_x_resolution(),
               source.get_y_resolution());
    if (!keep_buffer) {
        data_start = data;
    }
}

void BasicImage::binary_to_grey_in_place() {
    if (image_type != IMAGE_TYPE_BINARY) {
        return;
    }
    BasicImage grey;
    const std::uint32_t grey_size = checked_byte_size(width, height, kCopyConstructFailure);
    grey.adopt(allocate_zeroed(grey_size, kCopyConstructFailure), grey_size);
    grey.set_header(height, width, IMAGE_TYPE_GREY, x_resolution, y_resolution);

    const int whole_bytes = width / 8;
    const int tail_pixels = width % 8;
    for (int y = 0; y < height; ++y) {
        const unsigned char* bits = data + static_cast<std::size_t>(row_stride) * y;
        unsigned char* out = grey.data + static_cast<std::size_t>(width) * y;
        for (int i = 0; i < whole_bytes; ++i, out += 8) {
            std::memcpy(out, kBinaryToGrey[bits[i]].data(), 8);
        }
        if (tail_pixels != 0) {
            std::memcpy(out, kBinaryToGrey[bits[whole_bytes]].data(), tail_pixels);
        }
    }
    swap(grey);
    data_start = data;
}

void BasicImage::grey_to_binary_in_place() {
    if (image_type != IMAGE_TYPE_GREY) {
        return;
    }
    pack_grey_to_binary(*this, [](unsigned char value) { return value != 0; });
}

void BasicImage::threshold_to_binary_in_place(int threshold) {
    if (image_type != IMAGE_TYPE_GREY) {
        return;
    }
    pack_grey_to_binary(*this, [threshold](unsigned char value) { return value <= threshold; });
}

void BasicImage::find_brightest_colour(unsigned char colour[3]) const {
    colour[0] = colour[1] = colour[2] = 0;
    if (image_type != IMAGE_TYPE_RGB || data == nullptr) {
        return;
    }
    unsigned int best = 0;
    for (int y = 0; y < height; ++y) {
        const unsigned char* pixel = data + static_cast<std::size_t>(3) * width * y;
        for (int x = 0; x < width; ++x, pixel += 3) {
            const unsigned int score = (598u * pixel[0] + 587u * pixel[1]) / 1000u;
            if (score > best) {
                best = score;
                colour[0] = pixel[0];
                colour[1] = pixel[1];
                colour[2] = pixel[2];
                // A row is abandoned once the best score reaches 255; the rows below are still
                // scanned, so a brighter pixel further down can win.
                if (best >= 255) {
                    break;
                }
            }
        }
    }
}

}  // namespace common
