#ifndef QUORIMP_GEOMETRIC_REGISTRATION_VANISHING_POINT_OUTPUT_H
#define QUORIMP_GEOMETRIC_REGISTRATION_VANISHING_POINT_OUTPUT_H

namespace geometric {

// The verdict of a vanishing point search in one direction.
enum VanishingPointOutput {
    VP_NONE = 0,             // nothing found
    VP_POINT = 1,            // a vanishing point
    VP_PARALLEL = 2,         // the lines are parallel
    VP_KEEP_PREVIOUS = 3,    // nothing new: what an earlier stage found stands
    VP_NEARLY_PARALLEL = 4,  // parallel within tolerance
    VP_MORE_LINES = 5,       // more than two lines: the general solver has to decide
};

}  // namespace geometric

#endif
