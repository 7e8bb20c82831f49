#include "image_files.h"

#include <sys/stat.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "jpeg_codec.h"
#include "output_file.h"
#include "png_codec.h"
#include "tool_error.h"

namespace quorimp_tool {

namespace {

const unsigned char kPngSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

bool starts_with(const unsigned char* head, std::size_t length, const char* bytes,
                 std::size_t count) {
    return length >= count && std::memcmp(head, bytes, count) == 0;
}

// Formats the tool recognises only to name them in a refusal.
const char* other_format_name(const unsigned char* head, std::size_t length) {
    if (starts_with(head, length, "GIF8", 4)) {
        return "a GIF";
    }
    if (starts_with(head, length, "BM", 2)) {
        return "a BMP";
    }
    if (starts_with(head, length, "II*\0", 4) || starts_with(head, length, "MM\0*", 4)) {
        return "a TIFF";
    }
    if (starts_with(head, length, "RIFF", 4) && length >= 12 &&
        std::memcmp(head + 8, "WEBP", 4) == 0) {
        return "a WebP";
    }
    return nullptr;
}

class InputFile {
public:
    explicit InputFile(const std::string& path) : stream_(std::fopen(path.c_str(), "rb")) {}
    ~InputFile() {
        if (stream_ != nullptr) {
            std::fclose(stream_);
        }
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    std::FILE* stream() { return stream_; }

private:
    std::FILE* stream_;
};

std::string lower_extension(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) {
        return "";
    }
    std::string extension = path.substr(dot);
    for (char& c : extension) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return extension;
}

}  // namespace

FileFormat output_format_for(const std::string& path) {
    const std::string extension = lower_extension(path);
    if (extension == ".png") {
        return FileFormat::png;
    }
    if (extension == ".jpg" || extension == ".jpeg") {
        return FileFormat::jpeg;
    }
    throw ToolError(path +
                    ": cannot tell the output format from the name; end it in .png, .jpg or "
                    ".jpeg");
}

Raster read_image_file(const std::string& path) {
    InputFile file(path);
    if (file.stream() == nullptr) {
        throw ToolError(path + ": cannot open: " + std::strerror(errno));
    }
    struct stat status;
    if (::fstat(::fileno(file.stream()), &status) == 0 && S_ISDIR(status.st_mode)) {
        throw ToolError(path + ": is a directory, not an image file");
    }

    unsigned char head[12] = {};
    const std::size_t length = std::fread(head, 1, sizeof head, file.stream());
    if (std::ferror(file.stream())) {
        throw ToolError(path + ": cannot read: " + std::strerror(errno));
    }
    if (length == 0) {
        throw ToolError(path + ": the file is empty");
    }
    std::rewind(file.stream());

    const std::size_t png_length = length < sizeof kPngSignature ? length : sizeof kPngSignature;
    if (length >= 4 && std::memcmp(head, kPngSignature, png_length) == 0) {
        return read_png(file.stream(), path);
    }
    if (length >= 2 && head[0] == 0xFF && head[1] == 0xD8) {
        return read_jpeg(file.stream(), path);
    }
    if (const char* format = other_format_name(head, length)) {
        throw ToolError(path + ": " + format + " image; only PNG and JPEG are read");
    }
    throw ToolError(path + ": not a PNG or JPEG image");
}

void write_image_file(const Raster& raster, const std::string& path) {
    const FileFormat format = output_format_for(path);
    OutputFile output(path);
    if (format == FileFormat::png) {
        write_png(raster, output.stream(), path);
    } else {
        write_jpeg(raster, output.stream(), path);
    }
    output.commit();
}

}  // namespace quorimp_tool
