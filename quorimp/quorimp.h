/* The C interface of quorimp. Compiles as C99 and as C++.
 *
 * Images are passed as ImageCApi records that describe buffers owned by the caller; the library
 * wraps them without copying and never frees them. Output buffers are sized and allocated by the
 * caller. */
#ifndef QUORIMP_QUORIMP_H
#define QUORIMP_QUORIMP_H

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

#ifdef __cplusplus
}
#endif

#endif
