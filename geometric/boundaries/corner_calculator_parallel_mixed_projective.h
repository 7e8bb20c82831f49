#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_PARALLEL_MIXED_PROJECTIVE_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_PARALLEL_MIXED_PROJECTIVE_H

#include <vector>

#include "geometric/primitives/direction.h"
#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A virtual page for one direction with a vanishing point and the other with parallel lines at
// an angle.
class QUORIMP_EXPORT CornerCalculatorParallelMixedProjective {
public:
    CornerCalculatorParallelMixedProjective(int width, int height);

    // `direction` names the direction of the vanishing point `vp`; `angle` is that of the other
    // direction. The sides at `angle` are anchored at the two image corners a line of that lean
    // would pass. False when the vanishing point lies where no anchors are defined.
    bool estimate_mixed_virtual_corners(Direction direction, const Geocoordinate<double>& vp,
                                        double angle,
                                        std::vector<Geocoordinate<float>>& corners) const;

    int image_width;
    int image_height;
};

}  // namespace geometric

#endif
