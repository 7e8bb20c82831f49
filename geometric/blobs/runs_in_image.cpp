#include "geometric/blobs/runs_in_image.h"

namespace geometric {

// Each line is scanned into one reused list and stored as an exact copy, so that a line costs one
// allocation at most and an empty line none.
RunsInImage::RunsInImage(const common::Image& image) {
    const int height = image.get_height();
    const int width = image.get_width();
    const bool binary = image.get_image_type() == common::IMAGE_TYPE_BINARY;
    reserve(height > 0 ? height : 0);
    RunsInLine scratch;
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = image.get_row(y);
        scratch.clear();
        // An image without byte-addressable rows (BGRA) has no runs.
        if (row != nullptr && width > 0) {
            if (binary) {
                scratch.formulate_runs(row, 0, width);
            } else {
                scratch.formulate_gray_runs(row, 0, width);
            }
        }
        emplace_back(scratch);
    }
}

}  // namespace geometric
