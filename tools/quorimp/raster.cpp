#include "raster.h"

#include "tool_error.h"

namespace quorimp_tool {

const char* pixel_kind_name(PixelKind kind) {
    switch (kind) {
        case PixelKind::binary:
            return "binary";
        case PixelKind::grey:
            return "grey";
        case PixelKind::rgb:
            return "RGB";
    }
    return "?";
}

void check_raster_size(const std::string& name, long long width, long long height) {
    if (width < 1 || height < 1 || width > kMaxSide || height > kMaxSide ||
        width * height > kMaxPixels) {
        throw ToolError(name + ": the image would be " + std::to_string(width) + " x " +
                        std::to_string(height) + " pixels; the tool handles 1 to " +
                        std::to_string(kMaxPixels) + " pixels, at most " +
                        std::to_string(kMaxSide) + " a side");
    }
}

std::size_t Raster::row_bytes_for(PixelKind kind, int width) {
    const std::size_t columns = static_cast<std::size_t>(width);
    switch (kind) {
        case PixelKind::binary:
            return (columns + 31) / 32 * 4;
        case PixelKind::grey:
            return columns;
        case PixelKind::rgb:
            return 3 * columns;
    }
    return 0;
}

void Raster::allocate(PixelKind new_kind, int new_width, int new_height) {
    kind = new_kind;
    width = new_width;
    height = new_height;
    pixels.assign(row_bytes() * static_cast<std::size_t>(height), 0);
}

ImageCApi Raster::c_api_record() {
    ImageCApi record;
    record.width = width;
    record.height = height;
    record.x_resolution = 300;
    record.y_resolution = 300;
    record.channels = kind == PixelKind::rgb ? 3 : 1;
    record.is_binary = kind == PixelKind::binary ? 1 : 0;
    record.data = pixels.data();
    return record;
}

Raster binary_to_grey(const Raster& binary) {
    Raster grey;
    grey.allocate(PixelKind::grey, binary.width, binary.height);
    for (int y = 0; y < binary.height; ++y) {
        const unsigned char* bits = binary.row(y);
        unsigned char* bytes = grey.row(y);
        for (int x = 0; x < binary.width; ++x) {
            const bool black = (bits[x / 8] >> (7 - x % 8)) & 1;
            bytes[x] = black ? 0 : 255;
        }
    }
    return grey;
}

}  // namespace quorimp_tool
