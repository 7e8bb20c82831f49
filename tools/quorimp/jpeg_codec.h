// JPEG files through libjpeg(-turbo).
//
// Reading: grey JPEG becomes a grey image, colour JPEG (YCbCr or RGB) an RGB image. CMYK JPEG is
// refused. A damaged or truncated file is refused too, even where libjpeg would only warn and
// fill the missing part with grey: a rectified page with a grey band would pass unnoticed.
// Orientation tags are ignored: the pixels, and so the corners, are taken in stored order.
//
// Writing: grey or RGB at quality 90. A binary image is written as grey, black 0 and white 255,
// since JPEG has no 1-bit form.
#ifndef QUORIMP_TOOL_JPEG_CODEC_H
#define QUORIMP_TOOL_JPEG_CODEC_H

#include <cstdio>
#include <string>

#include "raster.h"

namespace quorimp_tool {

constexpr int kJpegQuality = 90;

// `file` is positioned at the start of the JPEG. Errors are ToolError "NAME: reason".
Raster read_jpeg(std::FILE* file, const std::string& name);
void write_jpeg(const Raster& raster, std::FILE* file, const std::string& name);

}  // namespace quorimp_tool

#endif
