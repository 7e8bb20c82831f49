#ifndef QUORIMP_GEOMETRIC_REGISTRATION_PROJECTIVE_REGISTRATION_H
#define QUORIMP_GEOMETRIC_REGISTRATION_PROJECTIVE_REGISTRATION_H

#include <vector>

#include "geometric/boundaries/bounding_line.h"
#include "geometric/boundaries/bounding_line_property.h"
#include "geometric/primitives/geocoordinate.h"
#include "geometric/registration/registration.h"
#include "geometric/registration/registration_output_type.h"
#include "geometric/registration/vanishing_point_hor_ver_info.h"
#include "hybrid/projective_registration_para.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A search that finds out how the lines of a page converge, and turns that into four corners:
// the real corners where four boundary lines meet, or virtual corners built from the vanishing
// points alone. Results stay in pixels of the searched image.
class QUORIMP_EXPORT ProjectiveRegistration : public Registration {
public:
    explicit ProjectiveRegistration(const common::Image* image);
    ~ProjectiveRegistration() override;

    virtual RegistrationOutputType run_registration() = 0;

    // Edge corners or virtual corners, as the para says. On failure `corners` is emptied. Either
    // road may drop a direction whose page would be implausibly large or small for the image.
    bool obtain_corners();

    // The verdict says the page is seen in perspective or rotated.
    bool has_distortion_detected() const;

    hybrid::ProjectiveRegistrationPara para;
    VanishingPointHorVerInfo vanishing_points;
    // What the outer boundary pairs would give, kept for a later stage.
    VanishingPointHorVerInfo candidate_vanishing_points;
    std::vector<Geocoordinate<float>> corners;
    BoundingLineProperty boundary_property;
    std::vector<BoundingLine> boundary_lines;
    RegistrationOutputType registration_output;
    int page_width;
    int page_height;

protected:
    // Corners from the vanishing points alone, judged with a 23 degree angle limit.
    bool obtain_virtual_corners();
    // Corners from the boundary lines, judged with a 40 degree angle limit.
    bool otain_edge_corners();
    // Builds `corners` from the vanishing points, or from the parallel angles when there is no
    // vanishing point at all.
    bool transform_vp_2_vc();

    // The corners where the boundary lines meet, a missing side standing at the image border.
    // False without any boundary line.
    virtual bool perform_edge_corner_searching();

private:
    int image_width() const;
    int image_height() const;
    // Whether a page of `page_size` pixels is implausible along an image side of `image_size`.
    bool is_size_implausible(int page_size, int image_size) const;
};

}  // namespace geometric

#endif
