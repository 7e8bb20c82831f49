#include "jpeg_codec.h"

// jpeglib.h needs FILE and size_t declared before it.
#include <cstddef>
#include <cstdio>

#include <jerror.h>
#include <jpeglib.h>

#include <csetjmp>
#include <vector>

#include "tool_error.h"

namespace quorimp_tool {

namespace {

// libjpeg's own error handler would print and exit. This one keeps the text and jumps back to the
// setjmp of the stage that was running; the stage functions hold no C++ object with a
// destructor, so the jump skips nothing that needs cleaning up. libjpeg structures are freed by
// the guards of the callers.
struct JpegErrorManager {
    jpeg_error_mgr base;
    std::jmp_buf jump;
    bool truncated = false;
    char message[JMSG_LENGTH_MAX] = {};
};

void on_error_exit(j_common_ptr info) {
    auto* manager = reinterpret_cast<JpegErrorManager*>(info->err);
    (*info->err->format_message)(info, manager->message);
    std::longjmp(manager->jump, 1);
}

// Level -1 is a warning about damaged data, such as a file that ends early; the tool treats it as
// an error. Other levels are trace messages and are dropped.
void on_message(j_common_ptr info, int level) {
    if (level < 0) {
        auto* manager = reinterpret_cast<JpegErrorManager*>(info->err);
        manager->truncated = info->err->msg_code == JWRN_JPEG_EOF;
        on_error_exit(info);
    }
}

void install_error_manager(JpegErrorManager& manager, jpeg_common_struct& info) {
    info.err = jpeg_std_error(&manager.base);
    manager.base.error_exit = on_error_exit;
    manager.base.emit_message = on_message;
}

struct Decoder {
    jpeg_decompress_struct info;
    JpegErrorManager errors;
    std::FILE* file = nullptr;
    bool created = false;
    bool cmyk = false;
};

bool read_header(Decoder& decoder) {
    install_error_manager(decoder.errors, *reinterpret_cast<jpeg_common_struct*>(&decoder.info));
    if (setjmp(decoder.errors.jump)) {
        return false;
    }
    jpeg_create_decompress(&decoder.info);
    decoder.created = true;
    jpeg_stdio_src(&decoder.info, decoder.file);
    jpeg_read_header(&decoder.info, TRUE);
    const J_COLOR_SPACE space = decoder.info.jpeg_color_space;
    decoder.cmyk = space == JCS_CMYK || space == JCS_YCCK;
    decoder.info.out_color_space = space == JCS_GRAYSCALE ? JCS_GRAYSCALE : JCS_RGB;
    return true;
}

bool read_rows(Decoder& decoder, JSAMPROW* rows, JDIMENSION height) {
    if (setjmp(decoder.errors.jump)) {
        return false;
    }
    jpeg_start_decompress(&decoder.info);
    while (decoder.info.output_scanline < height) {
        jpeg_read_scanlines(&decoder.info, rows + decoder.info.output_scanline,
                            height - decoder.info.output_scanline);
    }
    jpeg_finish_decompress(&decoder.info);
    return true;
}

struct Encoder {
    jpeg_compress_struct info;
    JpegErrorManager errors;
    std::FILE* file = nullptr;
    bool created = false;
};

bool write_rows(Encoder& encoder, JDIMENSION width, JDIMENSION height, bool colour,
                JSAMPROW* rows) {
    install_error_manager(encoder.errors, *reinterpret_cast<jpeg_common_struct*>(&encoder.info));
    if (setjmp(encoder.errors.jump)) {
        return false;
    }
    jpeg_create_compress(&encoder.info);
    encoder.created = true;
    jpeg_stdio_dest(&encoder.info, encoder.file);
    encoder.info.image_width = width;
    encoder.info.image_height = height;
    encoder.info.input_components = colour ? 3 : 1;
    encoder.info.in_color_space = colour ? JCS_RGB : JCS_GRAYSCALE;
    jpeg_set_defaults(&encoder.info);
    jpeg_set_quality(&encoder.info, kJpegQuality, TRUE);
    jpeg_start_compress(&encoder.info, TRUE);
    while (encoder.info.next_scanline < height) {
        jpeg_write_scanlines(&encoder.info, rows + encoder.info.next_scanline,
                             height - encoder.info.next_scanline);
    }
    jpeg_finish_compress(&encoder.info);
    return true;
}

std::string read_failure(const Decoder& decoder, const std::string& name) {
    if (decoder.errors.truncated) {
        return name + ": the file ends too early (truncated JPEG)";
    }
    return name + ": damaged JPEG: " + decoder.errors.message;
}

}  // namespace

Raster read_jpeg(std::FILE* file, const std::string& name) {
    Decoder decoder;
    decoder.file = file;
    struct Guard {
        Decoder& decoder;
        ~Guard() {
            if (decoder.created) {
                jpeg_destroy_decompress(&decoder.info);
            }
        }
    } guard{decoder};

    if (!read_header(decoder)) {
        throw ToolError(read_failure(decoder, name));
    }
    if (decoder.cmyk) {
        throw ToolError(name + ": CMYK JPEG images are not supported; use grey or RGB");
    }
    check_raster_size(name, decoder.info.image_width, decoder.info.image_height);

    Raster raster;
    raster.allocate(
        decoder.info.out_color_space == JCS_GRAYSCALE ? PixelKind::grey : PixelKind::rgb,
        static_cast<int>(decoder.info.image_width), static_cast<int>(decoder.info.image_height));
    std::vector<JSAMPROW> rows(raster.height);
    for (int y = 0; y < raster.height; ++y) {
        rows[y] = raster.row(y);
    }
    if (!read_rows(decoder, rows.data(), decoder.info.image_height)) {
        throw ToolError(read_failure(decoder, name));
    }
    return raster;
}

void write_jpeg(const Raster& raster, std::FILE* file, const std::string& name) {
    const Raster grey = raster.kind == PixelKind::binary ? binary_to_grey(raster) : Raster();
    const Raster& source = raster.kind == PixelKind::binary ? grey : raster;
    std::vector<JSAMPROW> rows(source.height);
    for (int y = 0; y < source.height; ++y) {
        rows[y] = const_cast<unsigned char*>(source.row(y));
    }

    Encoder encoder;
    encoder.file = file;
    struct Guard {
        Encoder& encoder;
        ~Guard() {
            if (encoder.created) {
                jpeg_destroy_compress(&encoder.info);
            }
        }
    } guard{encoder};
    if (!write_rows(encoder, static_cast<JDIMENSION>(source.width),
                    static_cast<JDIMENSION>(source.height), source.kind == PixelKind::rgb,
                    rows.data())) {
        throw ToolError(name + ": cannot write the JPEG: " + encoder.errors.message);
    }
}

}  // namespace quorimp_tool
