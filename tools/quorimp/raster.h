// The pixels of one image file, in the row layout of the engine's image record: grey and RGB rows
// packed, binary rows one bit per pixel (leftmost pixel in the most significant bit, 1 for black)
// padded to whole 32-bit words.
#ifndef QUORIMP_TOOL_RASTER_H
#define QUORIMP_TOOL_RASTER_H

#include <cstddef>
#include <string>
#include <vector>

#include "quorimp/quorimp.h"

namespace quorimp_tool {

enum class PixelKind { binary, grey, rgb };

const char* pixel_kind_name(PixelKind kind);  // "binary", "grey", "RGB"

// The largest image the tool reads or makes: 2^28 pixels (16384 x 16384), no side above 2^20.
constexpr long long kMaxPixels = 1LL << 28;
constexpr long long kMaxSide = 1LL << 20;

// Throws ToolError "NAME: the image is W x H pixels, ..." when the size is beyond the limits
// above or not positive.
void check_raster_size(const std::string& name, long long width, long long height);

struct Raster {
    int width = 0;
    int height = 0;
    PixelKind kind = PixelKind::grey;
    std::vector<unsigned char> pixels;

    static std::size_t row_bytes_for(PixelKind kind, int width);

    // Sets the size and kind and zero-fills the pixels.
    void allocate(PixelKind new_kind, int new_width, int new_height);
    std::size_t row_bytes() const { return row_bytes_for(kind, width); }
    unsigned char* row(int y) { return pixels.data() + row_bytes() * static_cast<std::size_t>(y); }
    const unsigned char* row(int y) const {
        return pixels.data() + row_bytes() * static_cast<std::size_t>(y);
    }

    // The record that lends these pixels to the engine; valid while the raster lives unchanged.
    ImageCApi c_api_record();
};

// Binary pixels as grey bytes: black 0, white 255.
Raster binary_to_grey(const Raster& binary);

}  // namespace quorimp_tool

#endif
