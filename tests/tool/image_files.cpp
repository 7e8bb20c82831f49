#include "tool/image_files.h"

#include <png.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

// jpeglib.h wants FILE and size_t first.
#include <jpeglib.h>

namespace tool_test {

namespace {

struct File {
    explicit File(const std::string& path, const char* mode) : f(std::fopen(path.c_str(), mode)) {
        if (f == nullptr) {
            throw std::runtime_error("cannot open " + path);
        }
    }
    ~File() { std::fclose(f); }
    std::FILE* f;
};

}  // namespace

int StoredImage::channels() const {
    switch (color_type) {
        case PNG_COLOR_TYPE_RGB:
            return 3;
        case PNG_COLOR_TYPE_RGB_ALPHA:
            return 4;
        case PNG_COLOR_TYPE_GRAY_ALPHA:
            return 2;
        default:
            return 1;
    }
}

std::size_t StoredImage::row_bytes() const {
    return (static_cast<std::size_t>(width) * channels() * bit_depth + 7) / 8;
}

unsigned StoredImage::sample(int x, int y, int c) const {
    const unsigned char* row = rows.data() + row_bytes() * y;
    if (bit_depth == 1) {
        return (row[x / 8] >> (7 - x % 8)) & 1;
    }
    return row[x * channels() + c];
}

// The tests make only valid images, so libpng's and libjpeg's default error handling (abort or
// exit) is enough here.
void write_png(const std::string& path, const StoredImage& image) {
    File file(path, "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file.f);
    png_set_IHDR(png, info, image.width, image.height, image.bit_depth, image.color_type,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    std::vector<png_color> palette;
    for (std::size_t i = 0; i + 2 < image.palette.size(); i += 3) {
        palette.push_back({image.palette[i], image.palette[i + 1], image.palette[i + 2]});
    }
    if (!palette.empty()) {
        png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
    }
    if (!image.transparency.empty()) {
        png_set_tRNS(png, info, image.transparency.data(),
                     static_cast<int>(image.transparency.size()), nullptr);
    }
    png_write_info(png, info);
    for (int y = 0; y < image.height; ++y) {
        png_write_row(png, image.rows.data() + image.row_bytes() * y);
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
}

StoredImage read_png(const std::string& path) {
    File file(path, "rb");
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file.f);
    png_read_info(png, info);
    StoredImage image;
    image.width = static_cast<int>(png_get_image_width(png, info));
    image.height = static_cast<int>(png_get_image_height(png, info));
    image.bit_depth = png_get_bit_depth(png, info);
    image.color_type = png_get_color_type(png, info);
    image.rows.resize(image.row_bytes() * image.height);
    for (int y = 0; y < image.height; ++y) {
        png_read_row(png, image.rows.data() + image.row_bytes() * y, nullptr);
    }
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return image;
}

void write_jpeg(const std::string& path, const StoredImage& image, int quality) {
    File file(path, "wb");
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    jpeg_stdio_dest(&info, file.f);
    info.image_width = image.width;
    info.image_height = image.height;
    info.input_components = image.channels();
    info.in_color_space = image.channels() == 3 ? JCS_RGB : JCS_GRAYSCALE;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    jpeg_start_compress(&info, TRUE);
    for (int y = 0; y < image.height; ++y) {
        JSAMPROW row = const_cast<unsigned char*>(image.rows.data() + image.row_bytes() * y);
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
}

StoredImage read_jpeg(const std::string& path) {
    File file(path, "rb");
    jpeg_decompress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file.f);
    jpeg_read_header(&info, TRUE);
    jpeg_start_decompress(&info);
    StoredImage image;
    image.width = static_cast<int>(info.output_width);
    image.height = static_cast<int>(info.output_height);
    image.color_type = info.output_components == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY;
    image.rows.resize(image.row_bytes() * image.height);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = image.rows.data() + image.row_bytes() * info.output_scanline;
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    return image;
}

}  // namespace tool_test
