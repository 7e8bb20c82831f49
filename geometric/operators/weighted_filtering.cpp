#include "geometric/operators/weighted_filtering.h"

#include <cstring>

namespace geometric {

namespace {
constexpr int kDefaultResolution = 300;
}

void WeightedFiltering::perform_filtering_3_by_3(const common::Image& input,
                                                 common::BasicImage& output, int weight) {
    common::BasicImage copy;
    const common::Image* source = &input;
    if (source == static_cast<const common::Image*>(&output)) {
        copy.assign(input);
        source = &copy;
    }
    const int width = source->get_width();
    const int height = source->get_height();
    output.reset(height, width, common::IMAGE_TYPE_GREY, kDefaultResolution, kDefaultResolution);
    const int divisor = 8 + weight;
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = source->get_row(y);
        unsigned char* target = output.get_row(y);
        if (y == 0 || y == height - 1 || width < 3) {
            std::memcpy(target, row, static_cast<std::size_t>(width));
            continue;
        }
        const unsigned char* above = source->get_row(y - 1);
        const unsigned char* below = source->get_row(y + 1);
        target[0] = row[0];
        target[width - 1] = row[width - 1];
        for (int x = 1; x < width - 1; ++x) {
            const int neighbours = above[x - 1] + above[x] + above[x + 1] + row[x - 1] +
                                   row[x + 1] + below[x - 1] + below[x] + below[x + 1];
            target[x] = static_cast<unsigned char>((neighbours + weight * row[x]) / divisor);
        }
    }
}

void WeightedFiltering::perform_filtering_5_by_5(const common::Image& /*input*/,
                                                 common::BasicImage& /*output*/, int /*weight*/) {}

}  // namespace geometric
