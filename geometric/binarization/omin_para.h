#ifndef QUORIMP_GEOMETRIC_BINARIZATION_OMIN_PARA_H
#define QUORIMP_GEOMETRIC_BINARIZATION_OMIN_PARA_H

#include <vector>

#include "quorimp/quorimp_export.h"

namespace geometric {

// Parameters of the multi-scale binarization; callers set single fields directly.
//
// Scale s is the page reduced by 2^s. Each scale keeps the blobs whose pixel count, counted at
// that scale, lies within its band of `scale_definitions`.
class QUORIMP_EXPORT OminPara {
public:
    struct ScaleDefinition {
        double minimum_area;
        double maximum_area;
    };

    OminPara();

    // Appends one band per scale from `minimum_scale` to `maximum_scale` for a window of `window`
    // pixels: the first scale keeps blobs from 2 pixels up to the window's area; each further one
    // overlaps the one before, starting somewhat below a quarter of its upper limit (the share
    // shrinks by a tenth per scale) and reaching four times that limit. The last band is open
    // upwards. Bands of earlier calls stay in front.
    void set_up_scale_definitions(int window);

    // Ask for the size of the text before binarizing. No code of the library switches it on.
    bool estimate_character_size;
    std::vector<ScaleDefinition> scale_definitions;
    int maximum_scale;
    int minimum_scale;
    int high_gray;             // a brighter pixel gets no local threshold
    double flat_ratio;         // a pixel whose local mean / deviation reaches this gets none either
    int small_page_dimension;  // pages whose longer side is at most this start at full size
    int pyramid_dimension;
    int pyramid_minimum_dimension;
    float k;
};

}  // namespace geometric

#endif
