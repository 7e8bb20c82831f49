#include "png_codec.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstring>
#include <vector>

#include "tool_error.h"

namespace quorimp_tool {

namespace {

// State shared with the libpng callbacks. libpng reports an error by calling on_error, which keeps
// the text and jumps back to the setjmp of the stage that was running. The stage functions below
// hold no C++ object with a destructor, so the jump skips nothing that needs cleaning up; the
// libpng structures are freed by the guards of the callers.
struct PngSession {
    std::FILE* file = nullptr;
    png_structp png = nullptr;
    png_infop info = nullptr;
    bool truncated = false;
    int io_error = 0;  // errno of a failed read or write, 0 when the stream was fine
    char message[256] = {};
};

void on_error(png_structp png, png_const_charp text) {
    auto* session = static_cast<PngSession*>(png_get_error_ptr(png));
    std::snprintf(session->message, sizeof session->message, "%s", text);
    png_longjmp(png, 1);
}

// Warnings (a damaged ancillary chunk, for instance) do not stop the tool, and it prints only
// one line when it fails, so they are dropped.
void on_warning(png_structp, png_const_charp) {}

void read_bytes(png_structp png, png_bytep data, png_size_t length) {
    auto* session = static_cast<PngSession*>(png_get_io_ptr(png));
    if (std::fread(data, 1, length, session->file) != length) {
        if (std::ferror(session->file)) {
            session->io_error = errno != 0 ? errno : EIO;
            png_error(png, "read error");
        }
        session->truncated = true;
        png_error(png, "unexpected end of file");
    }
}

void write_bytes(png_structp png, png_bytep data, png_size_t length) {
    auto* session = static_cast<PngSession*>(png_get_io_ptr(png));
    if (std::fwrite(data, 1, length, session->file) != length) {
        session->io_error = errno != 0 ? errno : EIO;
        png_error(png, "write error");
    }
}

void flush_stream(png_structp png) {
    auto* session = static_cast<PngSession*>(png_get_io_ptr(png));
    if (std::fflush(session->file) != 0) {
        session->io_error = errno != 0 ? errno : EIO;
        png_error(png, "write error");
    }
}

struct ReadLayout {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    bool binary = false;
    int channels = 0;  // after the transformations: 1 grey, 2 grey + alpha, 3 RGB, 4 RGBA
    int bit_depth = 0;
    png_size_t row_bytes = 0;
};

bool read_header(PngSession& session, ReadLayout& layout) {
    if (setjmp(png_jmpbuf(session.png))) {
        return false;
    }
    png_set_read_fn(session.png, &session, read_bytes);
    png_read_info(session.png, session.info);
    const int color_type = png_get_color_type(session.png, session.info);
    const int bit_depth = png_get_bit_depth(session.png, session.info);
    const bool transparent_colour = png_get_valid(session.png, session.info, PNG_INFO_tRNS) != 0;
    layout.binary = color_type == PNG_COLOR_TYPE_GRAY && bit_depth == 1 && !transparent_colour;
    if (!layout.binary) {
        if (color_type == PNG_COLOR_TYPE_PALETTE) {
            png_set_palette_to_rgb(session.png);
        }
        if (color_type == PNG_COLOR_TYPE_GRAY && bit_depth < 8) {
            png_set_expand_gray_1_2_4_to_8(session.png);
        }
        if (transparent_colour) {
            png_set_tRNS_to_alpha(session.png);
        }
        if (bit_depth == 16) {
            png_set_scale_16(session.png);
        }
    }
    png_set_interlace_handling(session.png);
    png_read_update_info(session.png, session.info);
    layout.width = png_get_image_width(session.png, session.info);
    layout.height = png_get_image_height(session.png, session.info);
    layout.channels = png_get_channels(session.png, session.info);
    layout.bit_depth = png_get_bit_depth(session.png, session.info);
    layout.row_bytes = png_get_rowbytes(session.png, session.info);
    return true;
}

bool read_rows(PngSession& session, png_bytepp rows) {
    if (setjmp(png_jmpbuf(session.png))) {
        return false;
    }
    png_read_image(session.png, rows);
    png_read_end(session.png, nullptr);
    return true;
}

struct WriteLayout {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int bit_depth = 0;
    int color_type = 0;
};

bool write_rows(PngSession& session, const WriteLayout& layout, png_bytepp rows) {
    if (setjmp(png_jmpbuf(session.png))) {
        return false;
    }
    png_set_write_fn(session.png, &session, write_bytes, flush_stream);
    png_set_IHDR(session.png, session.info, layout.width, layout.height, layout.bit_depth,
                 layout.color_type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(session.png, session.info);
    png_write_image(session.png, rows);
    png_write_end(session.png, nullptr);
    return true;
}

std::string failure_text(const PngSession& session, const std::string& name, bool reading) {
    if (session.io_error != 0) {
        return name + (reading ? ": cannot read: " : ": cannot write: ") +
               std::strerror(session.io_error);
    }
    if (session.truncated) {
        return name + ": the file ends too early (truncated PNG)";
    }
    return name + (reading ? ": damaged PNG: " : ": cannot write the PNG: ") + session.message;
}

// Bits beyond the width in the last byte of a binary row are left 0.
unsigned char last_byte_mask(png_uint_32 width) {
    const unsigned used = width % 8;
    return used == 0 ? 0xFF : static_cast<unsigned char>(0xFF << (8 - used));
}

// Over white: value * alpha + 255 * (255 - alpha), divided by 255 with rounding.
unsigned char over_white(unsigned value, unsigned alpha) {
    return static_cast<unsigned char>((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

class ReadGuard {
public:
    explicit ReadGuard(PngSession& session) : session_(session) {}
    ~ReadGuard() { png_destroy_read_struct(&session_.png, &session_.info, nullptr); }

private:
    PngSession& session_;
};

class WriteGuard {
public:
    explicit WriteGuard(PngSession& session) : session_(session) {}
    ~WriteGuard() { png_destroy_write_struct(&session_.png, &session_.info); }

private:
    PngSession& session_;
};

}  // namespace

Raster read_png(std::FILE* file, const std::string& name) {
    PngSession session;
    session.file = file;
    session.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &session, on_error, on_warning);
    ReadGuard guard(session);
    if (session.png == nullptr || (session.info = png_create_info_struct(session.png)) == nullptr) {
        throw ToolError(name + ": out of memory while reading the PNG");
    }

    ReadLayout layout;
    if (!read_header(session, layout)) {
        throw ToolError(failure_text(session, name, true));
    }
    check_raster_size(name, layout.width, layout.height);
    if (layout.bit_depth != (layout.binary ? 1 : 8) || layout.channels < 1 || layout.channels > 4) {
        throw ToolError(name + ": unsupported PNG layout (" + std::to_string(layout.channels) +
                        " channels of " + std::to_string(layout.bit_depth) + " bits)");
    }

    const int width = static_cast<int>(layout.width);
    const int height = static_cast<int>(layout.height);
    const bool has_alpha = layout.channels == 2 || layout.channels == 4;
    Raster raster;
    if (layout.binary) {
        raster.allocate(PixelKind::binary, width, height);
    } else {
        raster.allocate(layout.channels >= 3 ? PixelKind::rgb : PixelKind::grey, width, height);
    }

    // Rows without alpha land straight in the raster; rows with alpha go through a scratch buffer.
    std::vector<unsigned char> with_alpha;
    std::vector<png_bytep> rows(layout.height);
    for (int y = 0; y < height; ++y) {
        if (has_alpha) {
            if (with_alpha.empty()) {
                with_alpha.resize(layout.row_bytes * layout.height);
            }
            rows[y] = with_alpha.data() + layout.row_bytes * y;
        } else {
            rows[y] = raster.row(y);
        }
    }
    if (!read_rows(session, rows.data())) {
        throw ToolError(failure_text(session, name, true));
    }

    if (layout.binary) {
        const std::size_t used_bytes = (layout.width + 7) / 8;
        for (int y = 0; y < height; ++y) {
            unsigned char* row = raster.row(y);
            for (std::size_t i = 0; i < used_bytes; ++i) {
                row[i] = static_cast<unsigned char>(~row[i]);
            }
            row[used_bytes - 1] &= last_byte_mask(layout.width);
        }
    } else if (has_alpha) {
        const int colours = layout.channels - 1;
        for (int y = 0; y < height; ++y) {
            const unsigned char* source = rows[y];
            unsigned char* target = raster.row(y);
            for (int x = 0; x < width; ++x) {
                const unsigned alpha = source[colours];
                for (int c = 0; c < colours; ++c) {
                    *target++ = over_white(source[c], alpha);
                }
                source += layout.channels;
            }
        }
    }
    return raster;
}

void write_png(const Raster& raster, std::FILE* file, const std::string& name) {
    WriteLayout layout;
    layout.width = static_cast<png_uint_32>(raster.width);
    layout.height = static_cast<png_uint_32>(raster.height);
    layout.bit_depth = raster.kind == PixelKind::binary ? 1 : 8;
    layout.color_type = raster.kind == PixelKind::rgb ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY;

    // A PNG stores black as 0: binary rows are written inverted, without their word padding.
    std::vector<unsigned char> inverted;
    std::vector<png_bytep> rows(layout.height);
    if (raster.kind == PixelKind::binary) {
        const std::size_t used_bytes = (layout.width + 7) / 8;
        inverted.resize(used_bytes * layout.height);
        for (int y = 0; y < raster.height; ++y) {
            const unsigned char* source = raster.row(y);
            unsigned char* target = inverted.data() + used_bytes * y;
            for (std::size_t i = 0; i < used_bytes; ++i) {
                target[i] = static_cast<unsigned char>(~source[i]);
            }
            target[used_bytes - 1] &= last_byte_mask(layout.width);
            rows[y] = target;
        }
    } else {
        for (int y = 0; y < raster.height; ++y) {
            rows[y] = const_cast<unsigned char*>(raster.row(y));
        }
    }

    PngSession session;
    session.file = file;
    session.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &session, on_error, on_warning);
    WriteGuard guard(session);
    if (session.png == nullptr || (session.info = png_create_info_struct(session.png)) == nullptr) {
        throw ToolError(name + ": out of memory while writing the PNG");
    }
    if (!write_rows(session, layout, rows.data())) {
        throw ToolError(failure_text(session, name, false));
    }
}

}  // namespace quorimp_tool
