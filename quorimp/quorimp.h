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
