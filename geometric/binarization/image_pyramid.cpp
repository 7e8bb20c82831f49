#include "geometric/binarization/image_pyramid.h"

#include <algorithm>

#include "geometric/operators/image_integer_down_sampling.h"

namespace geometric {

namespace {

constexpr int kMostLevels = 6;

}  // namespace

int ImagePyramid::calculate_level_count(int longer_side, int limit, int minimum) {
    int count = kMostLevels;
    for (int n = 0; n < kMostLevels; ++n) {
        if (static_cast<long long>(longer_side) <= static_cast<long long>(limit) << n) {
            count = n;
            break;
        }
    }
    if (longer_side / (1 << count) < minimum) {
        --count;
    }
    return std::max(count, 0);
}

ImagePyramid::ImagePyramid(int limit, int minimum, int height, int width)
    : level_count(calculate_level_count(std::max(height, width), limit, minimum)) {}

ImagePyramid::ImagePyramid(const common::Image& image, int limit, int minimum)
    : level_count(
          calculate_level_count(std::max(image.get_height(), image.get_width()), limit, minimum)) {
    levels.reserve(static_cast<std::size_t>(level_count));
    const common::Image* previous = &image;
    for (int level = 0; level < level_count; ++level) {
        boost::shared_ptr<common::BasicImage> halved(new common::BasicImage());
        ImageIntegerDownSampling::DownSampling2(*previous, *halved);
        levels.push_back(halved);
        previous = halved.get();
    }
}

}  // namespace geometric
