// Image files in and out. The input format is told by the file's first bytes, whatever its name;
// the output format by the output's extension: .png, or .jpg / .jpeg (any letter case).
#ifndef QUORIMP_TOOL_IMAGE_FILES_H
#define QUORIMP_TOOL_IMAGE_FILES_H

#include <string>

#include "raster.h"

namespace quorimp_tool {

enum class FileFormat { png, jpeg };

// Throws ToolError naming the path when the extension is none of the above.
FileFormat output_format_for(const std::string& path);

// Throws ToolError "PATH: reason" for a missing, unreadable, empty, damaged or truncated file, a
// file that is no PNG or JPEG, or an image beyond the size limits.
Raster read_image_file(const std::string& path);

// Writes through a temporary file that is renamed into place, so that `path` holds either the
// whole image or whatever it held before. Throws ToolError "PATH: reason".
void write_image_file(const Raster& raster, const std::string& path);

}  // namespace quorimp_tool

#endif
