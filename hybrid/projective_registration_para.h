#ifndef QUORIMP_HYBRID_PROJECTIVE_REGISTRATION_PARA_H
#define QUORIMP_HYBRID_PROJECTIVE_REGISTRATION_PARA_H

#include "quorimp/quorimp_export.h"

namespace hybrid {

// The thresholds shared by every registration and by the judgment of its corners.
class QUORIMP_EXPORT ProjectiveRegistrationPara {
public:
    ProjectiveRegistrationPara();

    // Largest plausible factor between the page and the image, each way.
    float maximum_distortion_ratio;
    // True: corners from the four boundary lines, and the quadrilateral is judged. False: virtual
    // corners from the vanishing points alone, not judged.
    bool use_edge_corners;
    // Longest side of the working copy that the searches run on.
    int maximum_image_dimension;
    float angle_disparity_reference;
    // Degrees of tolerance for a direction to count as aligned with the image axes.
    float angle_disparity_horizontal;
    float angle_disparity_vertical;
    // Reject pages with a corner outside the image.
    bool corners_within_image;
    float minimum_quadrilateral_angle;  // degrees
    float minimum_quadrilateral_area;   // fraction of the image area
    double minimum_largest_dimension_percentage;
};

}  // namespace hybrid

#endif
