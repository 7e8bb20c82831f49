#ifndef QUORIMP_HYBRID_HYBRID_REGISTRATION_H
#define QUORIMP_HYBRID_HYBRID_REGISTRATION_H

#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/primitives/geocoordinate.h"
#include "geometric/registration/projective_registration.h"
#include "geometric/registration/vanishing_point_hor_ver_info.h"
#include "hybrid/hybrid_method.h"
#include "hybrid/hybrid_reg_para.h"
#include "quorimp/quorimp_export.h"
#include "quorimp/quorimp_records.h"

namespace hybrid {

// The object behind a corrector handle. It keeps one image: a grey working copy of it, reduced
// by a whole factor so that the searches run on sides near `maximum_image_dimension`, the search
// that ran on that copy, and the page corners in pixels of the full image. It judges the corners
// and rectifies and binarizes the full image.
//
// The working copy is built once and kept for the object's life, so one object serves one image.
// Corners found on the working copy are multiplied by the reduction factor when they are handed
// out; corners a caller sets are in pixels of the full image.
//
// The feature search does not exist yet; the members that would prefer its findings read those of
// the edge search, as they do whenever no feature search has run.
class QUORIMP_EXPORT HybridRegistration : public HybridRegPara {
public:
    // Owns an empty input image, which `set_input_image` points at the caller's pixels.
    HybridRegistration();
    // Works on the caller's image object, which must outlive this one.
    explicit HybridRegistration(common::BasicImage* image);
    ~HybridRegistration();

    // The object owns plain pointers: copies would free them twice.
    HybridRegistration(const HybridRegistration&) = delete;
    HybridRegistration& operator=(const HybridRegistration&) = delete;

    // Points the input image at the record's pixels, without copying them; it claims 300 by 300
    // pixels per inch. The working copy, if any, stays that of the first image.
    void set_input_image(const ImageCApi& image);

    // Builds the grey working copy: 1 when built, 2 when it exists already, -1 when the input is
    // too thin or too small to be a page. Throws the constant string "BGRA to grey level
    // conversion nog implemented yet in common" for a BGRA input.
    int preprocessing();

    // The reduction factor for the working copy: one step for every halving of the height that
    // it takes to come within `maximum_image_dimension`, then one for every further halving of
    // the width. The factor is a block size: a height of 6000 gives 3 and a working height of
    // 2000. Always true.
    bool obtain_downsampling_rate();

    // The result of a search as the caller sees it: -2 gives 0; a verdict of 1 and above gives 1
    // (2 for a straight page), or with the corner test on (`use_edge_corners` and `check`) the
    // test's rejection; anything else -1.
    int return_hybrid_result(int type, bool check);

    // Judges the corners against the input image: -3 a corner outside (only with
    // `corners_within_image`), -5 not convex or an angle too sharp, -4 too small, -6 too short a
    // longest side, 1 when they pass.
    int check_projective_output();

    // Fills `corners` when empty: from the search, multiplied by the reduction factor, or with the
    // full rectangle of the input image when there are none. Corners once there stay.
    void obtain_internal_corners();

    // The corners, each coordinate rounded half up.
    void obtain_four_corners(ControlPointCorners& out);

    // Replaces the corners by the caller's. `corners_were_reset` says that corners were there
    // before and differ from the new ones.
    void reset_four_corners(const ControlPointCorners& in);

    // The vanishing points of the search in pixels of the full image; without a search `info`
    // keeps its own values, its points multiplied by the reduction factor.
    void obtain_vanishing_points(geometric::VanishingPointHorVerInfo& info);

    // Size of the page rectified from `corners`, which must be filled.
    void obtain_corrected_img_dimension(int& width, int& height);

    // Size of the page rectified from the working copy; the input's size without one.
    void obtain_corrected_downsampled_img_dimension(int& width, int& height);

    // Rectifies the input image inside the corners into `output`. A binary input is converted to
    // grey here, for good. Pixels outside the input take, in this order of preference, the
    // caller's colour, the brightest colour under the corners a caller reset, or the page's own
    // background.
    bool perform_correction(common::BasicImage& output);

    // Rectifies the grey working copy; false without one.
    bool perform_correction_on_downsampled_gray_image(common::BasicImage& output);

    // Binarizes `input` (usually the rectified page) into `output`: Sauvola with
    // `binarization_window` and `binarization_k` for method 0, the multi-scale method with
    // `binarization_k` for any other.
    bool obtain_binarized_corrected_image(const common::Image& input, common::BasicImage& output);

    void set_corner_type(bool use_edge_corners);
    // The colour is not copied: it must outlive its use. Its first bytes, as many as a pixel of
    // the input has, are taken.
    void set_filling_color(unsigned char* color);
    void set_hybrid_method(HybridMethod method);

    int binarization_method;  // 0 Sauvola, any other the multi-scale method
    float binarization_k;
    int binarization_window;
    int downsampling_rate;
    common::BasicImage* working_image;  // owned
    common::BasicImage* input_image;    // owned when `owns_input_image`
    bool corners_were_reset;
    bool owns_input_image;
    geometric::ProjectiveRegistration* edge_registration;  // owned
    HybridMethod hybrid_method;
    unsigned char* filling_color;                          // the caller's; not owned
    std::vector<geometric::Geocoordinate<float>> corners;  // in pixels of the input image

private:
    // The corners of the search on the working copy, or null without a search.
    const std::vector<geometric::Geocoordinate<float>>* search_corners() const;
    // Chooses the fill of a correction from the caller's colour or the reset corners.
    void choose_filling_pixel(int& filling_mode, unsigned char filling_pixel[4]) const;
};

}  // namespace hybrid

#endif
