#include "hybrid/hybrid_registration.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "geometric/binarization/omin_binarization.h"
#include "geometric/binarization/sauvola_binarization.h"
#include "geometric/boundaries/corner_examiner.h"
#include "geometric/operators/image_integer_down_sampling.h"
#include "geometric/rectification/control_points.h"
#include "geometric/rectification/control_points_transformer.h"
#include "geometric/rectification/projective_correction.h"
#include "geometric_test/quor_projective_evaluator.h"
#include "quorimp/image_c_api_transformer.h"

namespace hybrid {

namespace {

const char* const kBgraRefused = "BGRA to grey level conversion nog implemented yet in common";

typedef std::vector<geometric::Geocoordinate<float>> Corners;

Corners divided_by(const Corners& corners, int rate) {
    Corners divided = corners;
    const float factor = static_cast<float>(rate);
    for (geometric::Geocoordinate<float>& corner : divided) {
        corner.x = corner.x / factor;
        corner.y = corner.y / factor;
    }
    return divided;
}

}  // namespace

HybridRegistration::HybridRegistration()
    : binarization_method(0),
      binarization_k(0.1f),
      binarization_window(35),
      downsampling_rate(1),
      working_image(nullptr),
      input_image(new common::BasicImage()),
      corners_were_reset(false),
      owns_input_image(true),
      edge_registration(nullptr),
      hybrid_method(HYBRID_EDGE_AND_FEATURE),
      filling_color(nullptr) {}

HybridRegistration::HybridRegistration(common::BasicImage* image)
    : binarization_method(0),
      binarization_k(0.1f),
      binarization_window(35),
      downsampling_rate(1),
      working_image(nullptr),
      input_image(image),
      corners_were_reset(false),
      owns_input_image(false),
      edge_registration(nullptr),
      hybrid_method(HYBRID_EDGE_AND_FEATURE),
      filling_color(nullptr) {}

HybridRegistration::~HybridRegistration() {
    if (owns_input_image) {
        delete input_image;
    }
    delete edge_registration;
    delete working_image;
}

void HybridRegistration::set_input_image(const ImageCApi& image) {
    quorimp::ImageCApiTransformer::transform_c_api_image_to_image(image, *input_image);
}

int HybridRegistration::preprocessing() {
    if (working_image != nullptr) {
        return 2;
    }
    if (!geometric_test::QUORProjectiveEvaluator::is_camera_document_image(*input_image)) {
        return -1;
    }
    const common::ImageType type = input_image->get_image_type();
    if (type == common::IMAGE_TYPE_BGRA) {
        throw kBgraRefused;
    }
    common::BasicImage grey(*input_image);
    if (type == common::IMAGE_TYPE_RGB) {
        grey.to_grey_in_place(true);
    } else if (type == common::IMAGE_TYPE_BINARY) {
        grey.binary_to_grey_in_place();
    }
    obtain_downsampling_rate();

    std::unique_ptr<common::BasicImage> working;
    if (downsampling_rate >= 2) {
        working.reset(new common::BasicImage());
        geometric::ImageIntegerDownSampling::DownSamplingCombined(grey, *working,
                                                                  downsampling_rate);
    } else {
        working.reset(new common::BasicImage(std::move(grey)));
    }
    working_image = working.release();
    return 1;
}

bool HybridRegistration::obtain_downsampling_rate() {
    int height = input_image->get_height();
    int width = input_image->get_width();
    int rate = 1;
    while (height > maximum_image_dimension) {
        ++rate;
        height /= 2;
        width /= 2;
    }
    while (width > maximum_image_dimension) {
        ++rate;
        width /= 2;
    }
    downsampling_rate = rate;
    return true;
}

int HybridRegistration::return_hybrid_result(int type, bool check) {
    const bool test = use_edge_corners && check;
    if (type == geometric::REGISTRATION_RESERVED) {
        return 0;
    }
    if (type == geometric::REGISTRATION_NO_DISTORTION) {
        if (!test) {
            return 2;
        }
        const int judged = check_projective_output();
        return judged == 1 ? 2 : judged;
    }
    if (type >= 1) {
        return test ? check_projective_output() : 1;
    }
    return -1;
}

int HybridRegistration::check_projective_output() {
    obtain_internal_corners();
    const geometric_test::QUORProjectiveEvaluator evaluator(input_image, &corners);
    if (corners_within_image && !evaluator.is_corners_within_image()) {
        return -3;
    }
    if (!geometric::CornerExaminer::check_constrains(corners, minimum_quadrilateral_angle)) {
        return -5;
    }
    if (!evaluator.is_quadrangle_large(minimum_quadrilateral_area)) {
        return -4;
    }
    if (!evaluator.is_largest_dimension_percentage_large(minimum_largest_dimension_percentage)) {
        return -6;
    }
    return 1;
}

const Corners* HybridRegistration::search_corners() const {
    return edge_registration != nullptr ? &edge_registration->corners : nullptr;
}

void HybridRegistration::obtain_internal_corners() {
    if (!corners.empty()) {
        return;
    }
    if (const Corners* found = search_corners()) {
        const float factor = static_cast<float>(downsampling_rate);
        corners = *found;
        for (geometric::Geocoordinate<float>& corner : corners) {
            corner.x = corner.x * factor;
            corner.y = corner.y * factor;
        }
    }
    if (corners.empty()) {
        geometric::intialize_control_points(corners, input_image->get_width(),
                                            input_image->get_height());
    }
}

void HybridRegistration::obtain_four_corners(ControlPointCorners& out) {
    obtain_internal_corners();
    geometric::ControlPointsTransformer<float>::transform(corners, out);
}

void HybridRegistration::reset_four_corners(const ControlPointCorners& in) {
    corners_were_reset = !corners.empty();
    bool equal = false;
    geometric::ControlPointsTransformer<float>::reset_control_points(in, corners, equal);
    if (equal) {
        corners_were_reset = false;
    }
}

void HybridRegistration::obtain_vanishing_points(geometric::VanishingPointHorVerInfo& info) {
    if (edge_registration != nullptr) {
        info = edge_registration->vanishing_points;
    }
    const double factor = static_cast<double>(downsampling_rate);
    info.horizontal.point.x *= factor;
    info.horizontal.point.y *= factor;
    info.vertical.point.x *= factor;
    info.vertical.point.y *= factor;
}

void HybridRegistration::obtain_corrected_img_dimension(int& width, int& height) {
    geometric::calculate_output_dimension(corners, width, height);
}

void HybridRegistration::obtain_corrected_downsampled_img_dimension(int& width, int& height) {
    if (working_image == nullptr) {
        width = input_image->get_width();
        height = input_image->get_height();
        return;
    }
    obtain_internal_corners();
    geometric::calculate_output_dimension(divided_by(corners, downsampling_rate), width, height);
}

void HybridRegistration::choose_filling_pixel(int& filling_mode,
                                              unsigned char filling_pixel[4]) const {
    const common::ImageType type = input_image->get_image_type();
    int bytes = 0;
    input_image->get_bytes_per_pixel(bytes);
    if (filling_color != nullptr) {
        filling_mode = 0;
        std::copy(filling_color, filling_color + std::min(bytes, 4), filling_pixel);
        return;
    }
    if (!corners_were_reset) {
        return;
    }
    // The colour under the caller's corners that lie inside the image. BGRA has no rule for it
    // and keeps the automatic fill.
    if (type != common::IMAGE_TYPE_RGB && type != common::IMAGE_TYPE_GREY) {
        return;
    }
    const int width = input_image->get_width();
    const int height = input_image->get_height();
    std::vector<unsigned char> pixels;
    for (const geometric::Geocoordinate<float>& corner : corners) {
        const int x = static_cast<int>(corner.x);
        const int y = static_cast<int>(corner.y);
        if (corner.x < 0.0f || corner.y < 0.0f || x >= width || y >= height) {
            continue;
        }
        const unsigned char* pixel =
            input_image->data + (static_cast<std::size_t>(width) * static_cast<std::size_t>(y) +
                                 static_cast<std::size_t>(x)) *
                                    static_cast<std::size_t>(bytes);
        pixels.insert(pixels.end(), pixel, pixel + bytes);
    }
    if (pixels.empty()) {
        return;
    }
    filling_mode = 0;
    if (type == common::IMAGE_TYPE_RGB) {
        const common::BasicImage row(pixels.data(), 1, static_cast<int>(pixels.size() / 3),
                                     common::IMAGE_TYPE_RGB, 300, 300);
        row.find_brightest_colour(filling_pixel);
    } else {
        filling_pixel[0] = *std::max_element(pixels.begin(), pixels.end());
    }
}

bool HybridRegistration::perform_correction(common::BasicImage& output) {
    geometric::ProjectiveCorrection correction(input_image, &output);
    obtain_internal_corners();
    choose_filling_pixel(correction.filling_mode, correction.filling_pixel);
    correction.set_control_points(corners);
    return correction.run_correction();
}

bool HybridRegistration::perform_correction_on_downsampled_gray_image(common::BasicImage& output) {
    if (working_image == nullptr) {
        return false;
    }
    geometric::ProjectiveCorrection correction(working_image, &output);
    obtain_internal_corners();
    correction.set_control_points(divided_by(corners, downsampling_rate));
    return correction.run_correction();
}

bool HybridRegistration::obtain_binarized_corrected_image(const common::Image& input,
                                                          common::BasicImage& output) {
    if (binarization_method == 0) {
        geometric::SauvolaBinarization sauvola(&input, &output);
        sauvola.para.window_size = binarization_window;
        sauvola.para.k = binarization_k;
        return sauvola.run_binarization();
    }
    geometric::OminBinarization omin(&input, &output);
    omin.para.k = binarization_k;
    return omin.run_binarization();
}

void HybridRegistration::set_corner_type(bool edge_corners) {
    use_edge_corners = edge_corners;
}

void HybridRegistration::set_filling_color(unsigned char* color) {
    filling_color = color;
}

void HybridRegistration::set_hybrid_method(HybridMethod method) {
    hybrid_method = method;
}

}  // namespace hybrid
