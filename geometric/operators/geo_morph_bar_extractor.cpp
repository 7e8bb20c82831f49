#include "geometric/operators/geo_morph_bar_extractor.h"

#include "common/basic_image.h"
#include "geometric/operators/geo_morphological.h"

namespace geometric {

GeoMorphBarExtractor::BarPara::BarPara() : small_length(16), dilation_length(1), bar_length(128) {}

GeoMorphBarExtractor::GeoMorphBarExtractor()
    : small_length(16), dilation_length(1), bar_length(128) {}

GeoMorphBarExtractor::GeoMorphBarExtractor(const BarPara& para)
    : small_length(para.small_length),
      dilation_length(para.dilation_length),
      bar_length(para.bar_length) {}

void GeoMorphBarExtractor::obtain_horizontal_bar(const common::Image& input,
                                                 common::Image& output) const {
    GeoMorphological::open_x(output, small_length);
    GeoMorphological::open_y(output, small_length);
    GeoMorphological::xor2(output, input);
    GeoMorphological::dilate_y(output, dilation_length);
    GeoMorphological::open_x(output, bar_length);
}

void GeoMorphBarExtractor::obtain_vertical_bar(const common::Image& input,
                                               common::Image& output) const {
    GeoMorphological::open_x(output, small_length);
    GeoMorphological::open_y(output, small_length);
    GeoMorphological::xor2(output, input);
    GeoMorphological::dilate_x(output, dilation_length);
    GeoMorphological::open_y(output, bar_length);
}

void GeoMorphBarExtractor::obtain_bars(const common::Image& input, common::Image& output) const {
    common::BasicImage horizontal(input);
    obtain_horizontal_bar(input, horizontal);
    obtain_vertical_bar(input, output);
    GeoMorphological::or2(output, horizontal);
}

void GeoMorphBarExtractor::obtain_image_without_bars(const common::Image& input,
                                                     common::Image& output) const {
    common::BasicImage bars(input);
    obtain_bars(input, bars);
    GeoMorphological::remove_denotation(output, bars);
}

}  // namespace geometric
