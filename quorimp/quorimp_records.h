/* The plain records that cross the C interface. This header compiles as C99 and as C++. */
#ifndef QUORIMP_QUORIMP_RECORDS_H
#define QUORIMP_QUORIMP_RECORDS_H

#ifdef __cplusplus
extern "C" {
#endif

/* An image owned by the caller. Rows are stored top row first with no padding, except in a binary
 * image (is_binary non-zero), whose rows hold one bit per pixel, leftmost pixel in the most
 * significant bit, 1 for black, and are padded to whole 32-bit words. */
typedef struct ImageCApi {
    int width;
    int height;
    int x_resolution; /* written on output, ignored on input */
    int y_resolution; /* written on output, ignored on input */
    int channels;     /* 3 is RGB, 4 is BGRA, any other value is grey */
    int is_binary;
    unsigned char* data;
} ImageCApi;

/* The four corners of a page: top left, top right, bottom right, bottom left. All x come first,
 * then all y. */
typedef struct ControlPointCorners {
    int x[4];
    int y[4];
} ControlPointCorners;

/* The vanishing points of a page, one direction after the other. The found and parallel fields
 * are 0 or 1; a direction with parallel lines has no vanishing point but an angle, in degrees
 * from 0 to 180, 90 for vertical lines. */
typedef struct VanishingPointCApi {
    int horizontal_found;
    double horizontal_x;
    double horizontal_y;
    int horizontal_parallel;
    float horizontal_angle;
    int vertical_found;
    double vertical_x;
    double vertical_y;
    int vertical_parallel;
    float vertical_angle;
} VanishingPointCApi;

#ifdef __cplusplus
}
#endif

#endif
