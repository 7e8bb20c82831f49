#ifndef QUORIMP_GEOMETRIC_OPERATORS_GEO_MORPH_BAR_EXTRACTOR_H
#define QUORIMP_GEOMETRIC_OPERATORS_GEO_MORPH_BAR_EXTRACTOR_H

#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Finds long thin bars (rules, table lines) in a binary image.
//
// The single-direction operations work on `output`, which the caller has filled with a copy of
// `input`. `obtain_bars` and `obtain_image_without_bars` follow the same rule for `output` and
// make their own copies of `input` for their temporary images.
class QUORIMP_EXPORT GeoMorphBarExtractor {
public:
    struct QUORIMP_EXPORT BarPara {
        BarPara();

        int small_length;     // length of the first opening, in both directions
        int dilation_length;  // dilation across the bar
        int bar_length;       // shortest bar
    };

    GeoMorphBarExtractor();
    explicit GeoMorphBarExtractor(const BarPara& para);

    // Takes the solid blocks out (pixels in runs of at least `small_length` in both directions),
    // closes one-pixel gaps across the line and keeps the runs of at least `bar_length`.
    void obtain_horizontal_bar(const common::Image& input, common::Image& output) const;
    void obtain_vertical_bar(const common::Image& input, common::Image& output) const;

    // Both directions, ORed together.
    void obtain_bars(const common::Image& input, common::Image& output) const;

    // Clears the bars of `input` from `output`.
    void obtain_image_without_bars(const common::Image& input, common::Image& output) const;

    int small_length;
    int dilation_length;
    int bar_length;
};

}  // namespace geometric

#endif
