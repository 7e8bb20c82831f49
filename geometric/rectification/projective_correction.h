#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_PROJECTIVE_CORRECTION_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_PROJECTIVE_CORRECTION_H

#include <vector>

#include "common/basic_image.h"
#include "geometric/primitives/geocoordinate.h"
#include "geometric/rectification/correction.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Rectifies the page inside four corners (top left, top right, bottom right, bottom left) into an
// upright output image by a projective mapping of the unit square onto the corners.
//
// Output pixels that map inside the input are interpolated, or copied as they are on a frame of
// one pixel left and above and two pixels right and below, where the kernel's neighbourhood is not
// complete. Output pixels that map outside the input take `filling_pixel`, which by default is
// measured from the page's own background just inside its four edges.
//
// A binary input is corrected as grey and thresholded back to binary: grey values up to 128 become
// black.
class QUORIMP_EXPORT ProjectiveCorrection : public Correction {
public:
    ProjectiveCorrection(common::BasicImage* input, common::BasicImage* output);

    void set_control_points(const std::vector<Geocoordinate<float>>& corners);

    // Writes the output. An output that owns its buffer is reset to the size of the rectified
    // page; otherwise the caller must have given it that size. Returns true.
    bool run_correction() override;

    // The size of the rectified page: the mean lengths of opposite sides, counted in pixels.
    void obtain_output_img_dimension(int& width, int& height) override;

    std::vector<Geocoordinate<float>> control_points;
    // 1: `filling_pixel` is measured from the page when an output pixel first maps outside the
    // input; 0: `filling_pixel` is used as set.
    int filling_mode;
    // Three colour bytes and a fourth that only BGRA outputs use.
    unsigned char filling_pixel[4];
    // When false, every interpolated pixel goes through the `Sampling` function object. The
    // default runs loops specialised for the common kernels and pixel sizes; both give the same
    // bytes.
    bool specialised_loops;
    // When false, the specialised loops keep to one pixel at a time instead of eight where the
    // processor offers AVX2. Both give the same bytes.
    bool wide_loops;

private:
    void perspective_transformation_general(const unsigned char* source, unsigned char* target,
                                            int source_width, int source_height, int target_width,
                                            int target_height,
                                            const std::vector<Geocoordinate<float>>& corners);
    // The background of the page just inside its four edges: the lighter half of samples taken a
    // margin inside each edge.
    void calculate_filling_pixel();
    // The mean colour of the `pixel_count / 2` samples of highest luma; the earlier sample wins
    // among equals.
    void find_above_median_color(int pixel_count, const unsigned char* samples,
                                 unsigned char* colour);
    // Samples along the edge from `first` to `second`, a margin below (`downward`) or above it.
    void get_pixels_on_hor_line(Geocoordinate<float>& first, Geocoordinate<float>& second,
                                std::vector<unsigned char>& samples, bool downward);
    // Samples along the edge from `first` to `second`, a margin right of (`rightward`) or left of
    // it.
    void get_pixels_on_ver_line(Geocoordinate<float>& first, Geocoordinate<float>& second,
                                std::vector<unsigned char>& samples, bool rightward);
};

}  // namespace geometric

#endif
