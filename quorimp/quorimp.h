/* The C interface of quorimp. Compiles as C99 and as C++.
 *
 * Images are passed as ImageCApi records that describe buffers owned by the caller; the library
 * wraps them without copying and never frees them. Output buffers are sized and allocated by the
 * caller. */
#ifndef QUORIMP_QUORIMP_H
#define QUORIMP_QUORIMP_H

#include <stddef.h>

#include "quorimp/quorimp_export.h"
#include "quorimp/quorimp_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Version. Each returns a constant string that the caller must not free:
 * "version of library: 15.3.44.6", "git branch: LTS_15.3.44.xx" and "git sha: " followed by the
 * forty hexadecimal digits of the source revision. */
QUORIMP_EXPORT const char* quorimp_get_version_number(void);
QUORIMP_EXPORT const char* quorimp_get_branch_name(void);
QUORIMP_EXPORT const char* quorimp_get_sha(void);

/* Size of the page rectified from four corners: the mean length of the two opposite sides, counted
 * in pixels (a side of n pixel steps holds n + 1 pixels), rounded to nearest. Returns 0. */
QUORIMP_EXPORT int obtain_output_image_dimension(const ControlPointCorners* corners, int* width,
                                                 int* height);

/* Rectifies the page inside four corners of the input into the output by a projective mapping.
 * The output must already have the size given by obtain_output_image_dimension for the same
 * corners and the pixel format of the input (binary, grey, RGB or BGRA). Output pixels that map
 * outside the input take the page's background, measured just inside its edges; a binary input is
 * corrected as grey and thresholded back. The input's pixels are not changed. Returns 0. */
QUORIMP_EXPORT int perform_projective_correction(const ControlPointCorners* corners,
                                                 const ImageCApi* input, ImageCApi* output);

/* Corrector: a handle that holds one photographed page, its corners and the thresholds that judge
 * them, and rectifies and binarizes it. The handle keeps the caller's pixels without copying them
 * until another image is set or the handle is destroyed. Corners are in pixels of the image, in
 * the order top left, top right, bottom right, bottom left. */

/* A new corrector with the default thresholds, or 0 when it cannot be allocated. */
QUORIMP_EXPORT void* corrector_create(void);

/* Destroys a corrector; 0 does nothing. */
QUORIMP_EXPORT void destroy_corrector(void* corrector);

/* The corners of the page, rounded half up. Without a search and without corners set by
 * reset_four_corners they are those of the whole image; once there, they stay until reset. */
QUORIMP_EXPORT void obtain_four_corners(void* corrector, ControlPointCorners* corners);

/* Replaces the corners by the caller's. When corners were there before and the new ones differ,
 * the fill of obtain_corrected_image is taken from the image under the new corners. */
QUORIMP_EXPORT void reset_four_corners(void* corrector, const ControlPointCorners* corners);

/* The vanishing points of the last search, in pixels of the image. Without a search both
 * directions report nothing found, with the angles 0 and 90. */
QUORIMP_EXPORT void obtain_vanishing_point(void* corrector, VanishingPointCApi* point);

/* Size of the page rectified from the corrector's corners, as obtain_output_image_dimension. The
 * corners must be there: set by reset_four_corners or read once by obtain_four_corners. */
QUORIMP_EXPORT void obtain_corrected_img_dimension(void* corrector, int* width, int* height);

/* reset_four_corners, then obtain_corrected_img_dimension. */
QUORIMP_EXPORT void obtain_corrected_img_dimension_given_corners(void* corrector,
                                                                 const ControlPointCorners* corners,
                                                                 int* width, int* height);

/* Size of the page rectified from the reduced grey copy that a search works on; without a search,
 * the size of the image. */
QUORIMP_EXPORT void obtain_downsampled_corrected_img_dimension(void* corrector, int* width,
                                                               int* height);

/* Rectifies the corrector's image inside its corners into `output`, which the caller has sized by
 * obtain_corrected_img_dimension and given the input's pixel format. A binary image is corrected as
 * grey and thresholded back, and the corrector keeps its grey form from then on. Output pixels
 * outside the image take the colour set by set_filling_color; else, after reset_four_corners
 * replaced earlier corners, the brightest colour under the new corners inside the image; else the
 * page's own background, measured just inside its edges. Returns 0. */
QUORIMP_EXPORT int obtain_corrected_image(void* corrector, ImageCApi* output);

/* Points the corrector at `input`, sets the corners as reset_four_corners and rectifies as
 * obtain_corrected_image. Returns 0. */
QUORIMP_EXPORT int obtain_corrected_image_given_corners(void* corrector, const ImageCApi* input,
                                                        const ControlPointCorners* corners,
                                                        ImageCApi* output);

/* Rectifies the reduced grey copy of a search into a grey `output` sized by
 * obtain_downsampled_corrected_img_dimension; without a search nothing is written. Returns 0. */
QUORIMP_EXPORT int obtain_downsampled_corrected_image(void* corrector, ImageCApi* output);

/* Binarizes `input`, usually the rectified page, into the binary `output` of the same size (set
 * bits are dark): Sauvola with the corrector's window and k, or the multi-scale method with its k,
 * as set_binarization_method chose. A binary input is copied. Returns 0. */
QUORIMP_EXPORT int obtain_binarized_corrected_image(void* corrector, const ImageCApi* input,
                                                    ImageCApi* output);

/* Setters. Out-of-range values are clamped as each says; nothing else checks them. */

/* Below 1: the edge search alone; 1 and above: edge and feature searches (the default). */
QUORIMP_EXPORT void set_registration_method(void* corrector, int method);

/* 1: corners from the page's four boundary lines, judged as a quadrilateral (the default); any
 * other value: corners from the vanishing points alone, not judged. */
QUORIMP_EXPORT void set_corner_type(void* corrector, int type);

/* Rejects pages with a corner outside the image. Cannot be turned off again. */
QUORIMP_EXPORT void set_within_the_image(void* corrector);

/* Smallest angle of the page quadrilateral, in degrees (45). */
QUORIMP_EXPORT void set_minimum_quadrilateral_angle(void* corrector, float degrees);

/* Smallest page area as a fraction of the image (0.05); a value of 0.001 or less is ignored. */
QUORIMP_EXPORT void set_minimum_aoi_area(void* corrector, float area);

/* Smallest share of the image width or height that the page must span (0.1). */
QUORIMP_EXPORT void set_minimum_largest_dimension_percentage_threshold(void* corrector,
                                                                       float threshold);

/* Degrees within which the horizontal (0.2) and vertical (0.4) lines count as aligned. */
QUORIMP_EXPORT void set_angle_disparity(void* corrector, float horizontal, float vertical);

/* The fill colour of obtain_corrected_image: as many bytes as a pixel of the image has (1 grey, 3
 * RGB, 4 BGRA; a binary image counts as grey). Not copied: the bytes must stay valid while the
 * corrector corrects. 0 is ignored, so a colour once set cannot be cleared. */
QUORIMP_EXPORT void set_filling_color(void* corrector, unsigned char* color);

/* 0 Sauvola (the default), 1 the multi-scale method; below 0 gives 0, 2 and above give 1. */
QUORIMP_EXPORT void set_binarization_method(void* corrector, int method);

/* Sauvola's k (0.1): below 0 gives 0.01, above 1 gives 0.99. */
QUORIMP_EXPORT void set_binarization_k(void* corrector, float k);

/* Side of Sauvola's window in pixels (35); below 1 gives 3. */
QUORIMP_EXPORT void set_binarization_window(void* corrector, int window);

/* Blobs: the connected components of a binary image (set bits), or of the non-white pixels of a
 * grey one. A blob calculator holds the components of its passes until it is deleted; the
 * functions that take an image run a pass on it only while the calculator holds nothing, and
 * otherwise answer from what it holds. Components come in the order in which their first stroke
 * was found, from the top of the image down. */

/* A new calculator with eight-neighbourhood, or 0 when it cannot be allocated. */
QUORIMP_EXPORT void* create_blob_calculator(void);

/* Destroys a calculator with everything it holds; 0 does nothing. */
QUORIMP_EXPORT void delete_blob_calculator(void* calculator);

/* 4 selects four-neighbourhood; any other value eight-neighbourhood. */
QUORIMP_EXPORT void set_neighborhood(void* calculator, int neighborhood);

/* Runs a pass on `image` and returns the number of components held. Every call adds its
 * components to those already held. */
QUORIMP_EXPORT int perform_blob_formulation(void* calculator, const ImageCApi* image);

/* Writes the label image: (width + 2 border) by (height + 2 border) ints, row by row, 0 for
 * background and i for the i-th component, the image shifted by `border` on both axes. The caller
 * provides the array. */
QUORIMP_EXPORT void calculate_label_image(void* calculator, const ImageCApi* image, int* labels,
                                          int border);

/* The outer contour of every component, one after another with no separator, clockwise from each
 * component's top point. The two arrays of 4 * count bytes come from `allocate`, which is called
 * twice, and belong to the caller. Returns the number of points. */
QUORIMP_EXPORT int obtain_blob_contours_one_by_one(void* calculator, const ImageCApi* image,
                                                   int** x, int** y,
                                                   void* (*allocate)(size_t bytes));

/* Box height and width of every component, in component order; the caller provides as many ints
 * as perform_blob_formulation returned. */
QUORIMP_EXPORT void obtain_blob_dimension_histogram(void* calculator, const ImageCApi* image,
                                                    int* heights, int* widths);

/* The top point of every component (the first pixel of its topmost stroke), in component order;
 * the arrays are sized like those of obtain_blob_dimension_histogram. */
QUORIMP_EXPORT void obtain_blob_top_points(void* calculator, const ImageCApi* image, int* x,
                                           int* y);

/* The runs of the calculator's last pass, as a pointer to its geometric::RunsInImage, valid while
 * the calculator lives. */
QUORIMP_EXPORT void* obtain_runs_image(void* calculator, const ImageCApi* image);

/* Scale map of the blobs of one scale. With the scale table 1, 2, 4, 8, 16, 32, runs a pass on
 * `binary_image` (adding to what the calculator holds) and walks all components held: a blob of
 * fewer pixels than `minimum_area` or more than `maximum_area` is erased from `binary_image`; when
 * `scale` differs from `base_scale`, a blob whose box height (`use_height` non-zero) or width is
 * below minimum_dimension / table[scale - base_scale] is erased too. Every other blob is painted
 * into the grey `scale_image` with the value scale + 1, each pixel magnified to a square of
 * table[scale] / table[base_scale]. Returns 1 if a blob was larger than `maximum_area`, else 0. */
QUORIMP_EXPORT unsigned char create_scale_img(void* calculator, double maximum_area,
                                              double minimum_area, int scale,
                                              ImageCApi* scale_image, ImageCApi* binary_image,
                                              int base_scale, int minimum_dimension,
                                              unsigned char use_height);

/* As create_scale_img, except that blobs outside the area limits stay in `binary_image`. */
QUORIMP_EXPORT unsigned char create_scale_img_only(void* calculator, double maximum_area,
                                                   double minimum_area, int scale,
                                                   ImageCApi* scale_image, ImageCApi* binary_image,
                                                   int base_scale, int minimum_dimension,
                                                   unsigned char use_height);

#ifdef __cplusplus
}
#endif

#endif
