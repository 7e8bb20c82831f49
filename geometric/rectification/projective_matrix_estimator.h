#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_PROJECTIVE_MATRIX_ESTIMATOR_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_PROJECTIVE_MATRIX_ESTIMATOR_H

#include <vector>

#include "geometric/primitives/direction.h"
#include "geometric/primitives/geocoordinate.h"
#include "geometric/rectification/projective_matrix.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Solves projective mappings from point correspondences. `width` and `height` are the size of the
// image in which vanishing points are judged.
class QUORIMP_EXPORT ProjectiveMatrixEstimator {
public:
    ProjectiveMatrixEstimator(int width, int height);

    // The mapping that takes each point of `second` onto the point of `first` at the same
    // position: (x, y, 1) forward is proportional to (X, Y, 1). Exactly four pairs are needed.
    // False, with `matrix` untouched, when the points do not determine a mapping (three of them on
    // a line, say) or when the mapping cannot be inverted.
    bool estimate_matrix_via_correponding_points(const std::vector<Geocoordinate<float>>& first,
                                                 const std::vector<Geocoordinate<float>>& second,
                                                 ProjectiveMatrix& matrix) const;

    // The mapping from the image corners onto the virtual page that a single vanishing point of
    // `direction` implies. A vanishing point whose coordinate along `direction` lies within 0 to
    // the image width (height) is refused with `matrix` untouched; when no virtual page can be
    // built, `matrix` becomes the identity and the answer is false.
    bool estimate_projective_matrix(const Geocoordinate<double>& vanishing_point,
                                    Direction direction, ProjectiveMatrix& matrix) const;

    int width;
    int height;
};

}  // namespace geometric

#endif
