#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_CONTROL_POINTS_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_CONTROL_POINTS_H

#include <vector>

#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"
#include "quorimp/quorimp_records.h"

// Corners of a page inside the engine are four points in the order top left, top right, bottom
// right, bottom left, in pixels of the image they were found on.

namespace geometric {

// The corners of the whole image: (0, 0), (width - 1, 0), (width - 1, height - 1), (0, height - 1).
QUORIMP_EXPORT void intialize_control_points(std::vector<Geocoordinate<float>>& corners, int width,
                                             int height);

// Sets all eight coordinates to 0.
QUORIMP_EXPORT void clean_control_points(ControlPointCorners& corners);

QUORIMP_EXPORT bool operator==(const ControlPointCorners& first, const ControlPointCorners& second);

// The size of the page rectified from `corners`. Width is the mean of the top and bottom sides,
// height the mean of the left and right sides, each counted in pixels (a side of n steps holds
// n + 1 pixels) and rounded to nearest. Fewer than four corners give 0 by 0.
QUORIMP_EXPORT void calculate_output_dimension(const std::vector<Geocoordinate<float>>& corners,
                                               int& width, int& height);

}  // namespace geometric

#endif
