#include "geometric/binarization/omin_para.h"

namespace geometric {

OminPara::OminPara()
    : estimate_character_size(false),
      maximum_scale(3),
      minimum_scale(1),
      high_gray(200),
      flat_ratio(20.0),
      small_page_dimension(1000),
      pyramid_dimension(750),
      pyramid_minimum_dimension(650),
      k(0.1f) {}

void OminPara::set_up_scale_definitions(int window) {
    double area = static_cast<double>(window) * static_cast<double>(window);
    scale_definitions.push_back({2.0, area});
    // The shrinking share is counted in single precision, so 0.9 - t is not exactly 0.8, 0.7...
    float t = 0.1f;
    for (int scale = minimum_scale + 1; scale <= maximum_scale; ++scale) {
        scale_definitions.push_back({0.25 * (0.9 - t) * area, 4 * area});
        area = 4 * area;
        t += 0.1f;
    }
    scale_definitions.back().maximum_area = 1e16;
}

}  // namespace geometric
