#ifndef QUORIMP_GEOMETRIC_OPERATORS_CANNY_EDGE_DETECTOR_H
#define QUORIMP_GEOMETRIC_OPERATORS_CANNY_EDGE_DETECTOR_H

#include "common/basic_image.h"
#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Edge map of a grey image: Sobel gradients scaled to -127 .. 127, thin ridges by non-maximum
// suppression, and hysteresis between two magnitude thresholds.
class QUORIMP_EXPORT CannyEdgeDetector {
public:
    // Writes a new grey buffer of the input's size into `output` (stride equal to the width,
    // owned): 255 on edges, 0 elsewhere. An owned buffer that `output` held is freed; its
    // resolutions are kept. If memory runs out, `output` is left as it was.
    static void perform_edge_detect(int low_threshold, int high_threshold,
                                    const common::Image& input, common::BasicImage& output);
};

}  // namespace geometric

#endif
