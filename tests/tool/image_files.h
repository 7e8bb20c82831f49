// Small PNG and JPEG files for the tool tests, written and read straight through libpng and
// libjpeg, independently of the tool's own reading and writing code.
#ifndef QUORIMP_TESTS_TOOL_IMAGE_FILES_H
#define QUORIMP_TESTS_TOOL_IMAGE_FILES_H

#include <string>
#include <vector>

namespace tool_test {

// Pixels as stored in the file: rows of packed samples (1-bit rows padded to whole bytes,
// 16-bit samples big-endian), as libpng and libjpeg hand them over without transformations.
struct StoredImage {
    int width = 0;
    int height = 0;
    int bit_depth = 8;
    int color_type = 0;  // a PNG_COLOR_TYPE_*; for JPEG 0 grey or 2 RGB
    std::vector<unsigned char> rows;
    std::vector<unsigned char> palette;       // RGB triples, for a palette PNG
    std::vector<unsigned char> transparency;  // tRNS bytes, when given

    int channels() const;
    std::size_t row_bytes() const;
    // The 8-bit sample of channel c at (x, y); for 1-bit images 0 or 1.
    unsigned sample(int x, int y, int c = 0) const;
};

void write_png(const std::string& path, const StoredImage& image);
StoredImage read_png(const std::string& path);

// color_type 0 grey or 2 RGB, 8-bit.
void write_jpeg(const std::string& path, const StoredImage& image, int quality);
StoredImage read_jpeg(const std::string& path);

}  // namespace tool_test

#endif
