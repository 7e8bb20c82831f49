// Images and a hand-made search for the corrector tests.
#ifndef QUORIMP_TESTS_CORRECTOR_CORRECTOR_TEST_SUPPORT_H
#define QUORIMP_TESTS_CORRECTOR_CORRECTOR_TEST_SUPPORT_H

#include <cstddef>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "geometric/rectification/projective_correction.h"
#include "geometric/registration/projective_registration.h"

namespace corrector_test {

using Point = geometric::Geocoordinate<float>;
using Points = std::vector<Point>;

// A search whose findings are written by hand.
class HandSearch : public geometric::ProjectiveRegistration {
public:
    explicit HandSearch(const common::Image* image) : ProjectiveRegistration(image) {}
    geometric::RegistrationOutputType run_registration() override { return registration_output; }
};

// Seeded noise, each byte from `low` to 255.
inline common::BasicImage noise_image(int width, int height, common::ImageType type,
                                      unsigned int seed, int low = 0) {
    common::BasicImage image(height, width, type, 300, 300);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> value(low, 255);
    for (std::uint32_t i = 0; i < image.data_size; ++i) {
        image.data[i] = static_cast<unsigned char>(value(random));
    }
    return image;
}

// The correction of a copy of `input` with the given fill: mode 1 measures it from the page.
inline common::BasicImage corrected(const common::BasicImage& input, const Points& corners,
                                    int filling_mode, const unsigned char* filling_pixel = nullptr,
                                    int bytes = 0) {
    common::BasicImage copy(input);
    common::BasicImage output;
    geometric::ProjectiveCorrection correction(&copy, &output);
    correction.filling_mode = filling_mode;
    for (int i = 0; i < bytes; ++i) {
        correction.filling_pixel[i] = filling_pixel[i];
    }
    correction.set_control_points(corners);
    correction.run_correction();
    return output;
}

inline std::vector<unsigned char> bytes_of(const common::BasicImage& image) {
    return std::vector<unsigned char>(image.data, image.data + image.data_size);
}

}  // namespace corrector_test

#endif
