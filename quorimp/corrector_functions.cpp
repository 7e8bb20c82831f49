// C functions of the corrector: a handle on a hybrid::HybridRegistration.

#include <new>

#include "common/basic_image.h"
#include "geometric/registration/vanishing_point_hor_ver_info.h"
#include "hybrid/hybrid_registration.h"
#include "quorimp/image_c_api_transformer.h"
#include "quorimp/quorimp.h"

namespace {

using hybrid::HybridRegistration;

HybridRegistration& corrector_of(void* handle) {
    return *static_cast<HybridRegistration*>(handle);
}

void wrap(const ImageCApi* source, common::BasicImage& target) {
    quorimp::ImageCApiTransformer::transform_c_api_image_to_image(*source, target);
}

// The area limit is the single-precision 0.001 widened, so a caller's 0.001 is not above it.
const double kSmallestAoiArea = static_cast<double>(0.001f);

}  // namespace

extern "C" {

void* corrector_create(void) {
    return new (std::nothrow) HybridRegistration();
}

void destroy_corrector(void* corrector) {
    delete static_cast<HybridRegistration*>(corrector);
}

void obtain_four_corners(void* corrector, ControlPointCorners* corners) {
    corrector_of(corrector).obtain_four_corners(*corners);
}

void reset_four_corners(void* corrector, const ControlPointCorners* corners) {
    corrector_of(corrector).reset_four_corners(*corners);
}

void obtain_vanishing_point(void* corrector, VanishingPointCApi* point) {
    geometric::VanishingPointHorVerInfo info;
    corrector_of(corrector).obtain_vanishing_points(info);
    point->horizontal_found = info.horizontal.has_point ? 1 : 0;
    point->horizontal_x = info.horizontal.point.x;
    point->horizontal_y = info.horizontal.point.y;
    point->horizontal_parallel = info.horizontal.is_parallel ? 1 : 0;
    point->horizontal_angle = info.horizontal.angle;
    point->vertical_found = info.vertical.has_point ? 1 : 0;
    point->vertical_x = info.vertical.point.x;
    point->vertical_y = info.vertical.point.y;
    point->vertical_parallel = info.vertical.is_parallel ? 1 : 0;
    point->vertical_angle = info.vertical.angle;
}

void obtain_corrected_img_dimension(void* corrector, int* width, int* height) {
    corrector_of(corrector).obtain_corrected_img_dimension(*width, *height);
}

void obtain_corrected_img_dimension_given_corners(void* corrector,
                                                  const ControlPointCorners* corners, int* width,
                                                  int* height) {
    HybridRegistration& registration = corrector_of(corrector);
    registration.reset_four_corners(*corners);
    registration.obtain_corrected_img_dimension(*width, *height);
}

void obtain_downsampled_corrected_img_dimension(void* corrector, int* width, int* height) {
    corrector_of(corrector).obtain_corrected_downsampled_img_dimension(*width, *height);
}

int obtain_corrected_image(void* corrector, ImageCApi* output) {
    common::BasicImage output_image;
    wrap(output, output_image);
    corrector_of(corrector).perform_correction(output_image);
    return 0;
}

int obtain_corrected_image_given_corners(void* corrector, const ImageCApi* input,
                                         const ControlPointCorners* corners, ImageCApi* output) {
    HybridRegistration& registration = corrector_of(corrector);
    registration.set_input_image(*input);
    registration.reset_four_corners(*corners);
    common::BasicImage output_image;
    wrap(output, output_image);
    registration.perform_correction(output_image);
    return 0;
}

int obtain_downsampled_corrected_image(void* corrector, ImageCApi* output) {
    common::BasicImage output_image;
    wrap(output, output_image);
    corrector_of(corrector).perform_correction_on_downsampled_gray_image(output_image);
    return 0;
}

int obtain_binarized_corrected_image(void* corrector, const ImageCApi* input, ImageCApi* output) {
    common::BasicImage input_image;
    common::BasicImage output_image;
    wrap(input, input_image);
    wrap(output, output_image);
    corrector_of(corrector).obtain_binarized_corrected_image(input_image, output_image);
    return 0;
}

void set_registration_method(void* corrector, int method) {
    corrector_of(corrector).set_hybrid_method(method < 1 ? hybrid::HYBRID_EDGE_ONLY
                                                         : hybrid::HYBRID_EDGE_AND_FEATURE);
}

void set_corner_type(void* corrector, int type) {
    corrector_of(corrector).set_corner_type(type == 1);
}

void set_within_the_image(void* corrector) {
    corrector_of(corrector).corners_within_image = true;
}

void set_minimum_quadrilateral_angle(void* corrector, float degrees) {
    corrector_of(corrector).minimum_quadrilateral_angle = degrees;
}

void set_minimum_aoi_area(void* corrector, float area) {
    if (static_cast<double>(area) > kSmallestAoiArea) {
        corrector_of(corrector).minimum_quadrilateral_area = area;
    }
}

void set_minimum_largest_dimension_percentage_threshold(void* corrector, float threshold) {
    corrector_of(corrector).minimum_largest_dimension_percentage = threshold;
}

void set_angle_disparity(void* corrector, float horizontal, float vertical) {
    HybridRegistration& registration = corrector_of(corrector);
    registration.angle_disparity_horizontal = horizontal;
    registration.angle_disparity_vertical = vertical;
}

void set_filling_color(void* corrector, unsigned char* color) {
    if (color != nullptr) {
        corrector_of(corrector).set_filling_color(color);
    }
}

void set_binarization_method(void* corrector, int method) {
    int stored = method;
    if (method < 0) {
        stored = 0;
    } else if (method >= 2) {
        stored = 1;
    }
    corrector_of(corrector).binarization_method = stored;
}

void set_binarization_k(void* corrector, float k) {
    float stored = k;
    if (k < 0.0f) {
        stored = 0.01f;
    } else if (k > 1.0f) {
        stored = 0.99f;
    }
    corrector_of(corrector).binarization_k = stored;
}

void set_binarization_window(void* corrector, int window) {
    corrector_of(corrector).binarization_window = window < 1 ? 3 : window;
}
}
