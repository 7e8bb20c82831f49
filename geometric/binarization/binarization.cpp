#include "geometric/binarization/binarization.h"

#include "geometric/binarization/geometricexception.h"
#include "geometric/operators/geo_despeckle.h"

namespace geometric {

Binarization::Binarization()
    : input_image(nullptr), output_image(nullptr), despeckle_enabled(true) {}

Binarization::Binarization(const common::Image* input, common::BasicImage* output)
    : input_image(input), output_image(output), despeckle_enabled(true) {
    if (output == nullptr) {
        throw Geometricexception("the output image is empty");
    }
}

Binarization::~Binarization() = default;

bool Binarization::run_binarization() {
    // A deep copy with the input's size, type and resolutions; the previous copy goes here.
    if (const auto* basic = dynamic_cast<const common::BasicImage*>(input_image)) {
        grey_image.reset(new common::BasicImage(*basic));
    } else {
        grey_image.reset(new common::BasicImage(*input_image));
    }

    if (input_image->get_image_type() == common::IMAGE_TYPE_BINARY) {
        output_image->assign(*input_image);
        return true;
    }

    output_image->reset(input_image->get_height(), input_image->get_width(),
                        common::IMAGE_TYPE_BINARY, input_image->get_x_resolution(),
                        input_image->get_y_resolution());

    if (!convert_image_to_grey_level(grey_image)) {
        return false;
    }
    if (!run_binarization_imp(grey_image.get())) {
        return false;
    }
    perform_despeckling();
    return true;
}

void Binarization::obtain_grayscale_img(common::BasicImage** out) {
    if (grey_image) {
        *out = grey_image.get();
        return;
    }
    *out = const_cast<common::BasicImage*>(dynamic_cast<const common::BasicImage*>(input_image));
}

void Binarization::perform_despeckling() {
    if (despeckle_enabled) {
        GeoDespeckle::removeIsolatedPixel(*output_image, *output_image);
    }
}

bool Binarization::convert_image_to_grey_level(boost::shared_ptr<common::BasicImage> image) {
    switch (image->get_image_type()) {
        case common::IMAGE_TYPE_GREY:
            return true;
        case common::IMAGE_TYPE_RGB:
            image->to_grey_in_place(true);
            return true;
        default:
            return false;
    }
}

}  // namespace geometric
