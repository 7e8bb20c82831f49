// PNG files through libpng.
//
// Reading: a 1-bit grey PNG becomes a binary image (PNG stores black as 0, the engine as 1, so the
// bits are inverted). Every other PNG becomes 8-bit grey or RGB: 2- and 4-bit grey are scaled up
// to 8 bits, 16-bit samples are scaled down to 8 bits, palette images become RGB, and alpha
// (an alpha channel or a transparent colour) is composited over white, the colour of paper.
// Gamma and colour profile chunks are ignored: samples are taken as stored.
//
// Writing: grey and RGB as 8-bit PNG, binary as 1-bit grey PNG, with no time stamp, so that the
// same pixels always give the same file.
#ifndef QUORIMP_TOOL_PNG_CODEC_H
#define QUORIMP_TOOL_PNG_CODEC_H

#include <cstdio>
#include <string>

#include "raster.h"

namespace quorimp_tool {

// `file` is positioned at the start of the PNG. Errors are ToolError "NAME: reason".
Raster read_png(std::FILE* file, const std::string& name);
void write_png(const Raster& raster, std::FILE* file, const std::string& name);

}  // namespace quorimp_tool

#endif
